#include "src/workbook/session.h"

#include "src/foundation/late_binding.h"

#include <office_idl.h>
#include <utility>

namespace quorvane {

namespace {

// Never destroyed: at process end Excel's object must not be called any more.
com::com_ptr<IDispatch>& heldApplication() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): there is one Excel
    static auto* const held = new com::com_ptr<IDispatch>;
    return *held;
}

} // namespace

com::com_ptr<IDispatch> Session::application() noexcept { return heldApplication(); }

void Session::connect(IDispatch* application) {
    heldApplication().reset();
    heldApplication() = com::queryFor<ExcelApplication>(application);
}

void Session::disconnect() {
    heldApplication().reset();
    store_.clear();
}

void Session::beginShutdown() {
    store_.clear();
    heldApplication().reset();
}

PackageTable& Session::currentWorkbook() {
    com::com_ptr<IDispatch> workbook;
    try {
        workbook = readObject(application().get(), L"ActiveWorkbook");
    } catch (const WException&) {
        throw CWStrException{L"Cannot determine current workbook"};
    }
    if (!workbook) {
        throw CWStrException{L"No current workbook"};
    }
    return store_.tableOf(workbookKey(workbook.get()));
}

std::vector<double> Session::lendReals() noexcept {
    for (std::vector<double>& spare : spareReals_) {
        if (spare.capacity() != 0) {
            return std::exchange(spare, {});
        }
    }
    return {};
}

void Session::takeBackReals(std::vector<double> reals) noexcept {
    // Whoever passes a whole column by mistake does not bind its memory for good.
    constexpr std::size_t mostKept = 4096;
    for (std::vector<double>& spare : spareReals_) {
        if (spare.capacity() == 0 && reals.capacity() <= mostKept) {
            spare = std::move(reals);
            return;
        }
    }
}

void Session::handOver(IQuorvaneVSTOServices* services) noexcept {
    if (handedOver_ || handingOver_) {
        return; // a front end may call the add-in as soon as it has the services
    }
    handingOver_ = true;
    try {
        const auto addIns = readObject(application().get(), L"COMAddIns");
        const auto addIn = readItem(addIns.get(), L"Quorvane");
        const auto frontEnd = readObject(addIn.get(), L"Object");
        if (const auto context = frontEnd.tryAs<IQuorvaneVSTOContext>()) {
            handedOver_ = SUCCEEDED(context->SetServices(services));
        }
    } catch (...) {
        // Excel without the front end is a normal state, not a failure.
    }
    handingOver_ = false;
}

} // namespace quorvane
