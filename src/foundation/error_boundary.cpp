#include "src/foundation/error_boundary.h"

#include "com/com_ptr.h"
#include "src/foundation/exceptions.h"
#include "src/foundation/text.h"

#include <exception>
#include <new>

namespace quorvane {

namespace {

com::unique_bstr narrowMessage(const std::exception& failure) noexcept {
    try {
        return com::makeBstr(utf8ToWide(failure.what()));
    } catch (...) {
        return {};
    }
}

} // namespace

com::unique_bstr currentFailureMessage() noexcept {
    try {
        throw;
    } catch (const std::exception& failure) {
        return narrowMessage(failure);
    } catch (const WException& failure) {
        return com::unique_bstr{SysAllocString(failure.message())};
    } catch (...) {
        return com::unique_bstr{SysAllocString(L"Unknown exception")};
    }
}

bool currentFailureHasText() noexcept {
    try {
        throw;
    } catch (const WException& failure) {
        return failure.message() != nullptr;
    } catch (...) {
        return true;
    }
}

SpareMessage::SpareMessage() {
    refill();
    if (!text_) {
        throw std::bad_alloc{};
    }
}

void SpareMessage::refill() noexcept {
    if (text_) {
        return;
    }
    try {
        throw std::bad_alloc{};
    } catch (...) {
        text_ = currentFailureMessage();
    }
}

void installErrorInfo(BSTR description, REFIID iid) noexcept {
    com::com_ptr<ICreateErrorInfo> creator;
    if (FAILED(CreateErrorInfo(creator.put()))) {
        return;
    }
    wchar_t source[] = L"Quorvane.Excel";
    creator->SetDescription(description);
    creator->SetGUID(iid);
    creator->SetSource(source);
    if (const auto info = creator.tryAs<IErrorInfo>()) {
        SetErrorInfo(0, info.get());
    }
}

} // namespace quorvane
