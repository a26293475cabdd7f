#include "tests/random/world.h"

#include "com/safe_array.h"
#include "tests/random/calling_cell.h"
#include "tests/src/server/worksheet.h"

#include <algorithm>
#include <cstddef>
#include <ranges>

namespace chance {

namespace {

using sheet::excel::Range;

constexpr std::size_t workbookCount = 4;

std::wstring pathBeside(const std::wstring& dll, const wchar_t* file) {
    return dll.substr(0, dll.rfind(L'\\') + 1) + file;
}

com::com_ptr<Range> oddCaller(const wchar_t* member, com::variant answer) {
    com::com_ptr<Range> range = Range::empty(3, 1);
    range->answer(member, std::move(answer));
    return range;
}

} // namespace

std::string shownText(const VARIANT& value) {
    return holdsWhatItSays(value) ? tests::shown(value) : "an array that is none";
}

World::World(std::uint64_t seed, Reach reach)
    : reach_{reach}, dice_{seed}, packages_{pathBeside(tests::AddIn::instance().path(), L"PengRobinson.dll")},
      lastingAddIn_{tests::AddIn::instance().create()}, addIn_{tests::AddIn::instance().create()},
      events_{addIn_.tryAs<_IDTExtensibility2>()} {
    for (std::size_t i = 0; i < workbookCount; ++i) {
        workbooks_.push_back(com::make<sheet::excel::Workbook>(L"Book" + std::to_wstring(i + 1)));
    }
    excel_->addIns().add(sheet::excel::frontEndName, frontEnd_->dispatch());
    makeCallers();
    connect();
    furnishLasting();
    furnish();
}

World::~World() {
    lastingAddIn_->CloseWorkbook(lastingWorkbook_->dispatch());
    events_->OnBeginShutdown(nullptr);
    events_->OnDisconnection(ext_dm_HostShutdown, nullptr);
    frontEnd_->letGo();
    SetErrorInfo(0, nullptr);
}

void World::makeCallers() {
    const auto add = [&](const com::com_ptr<Range>& range, bool isColumn) {
        ranges_.push_back(range);
        callers_.push_back({com::variant::object(range->dispatch()), isColumn});
    };
    for (int i = 0; i < 3; ++i) { // the ordinary ones are met most
        add(Range::empty(1, 1), false);
        add(Range::empty(1, 3), false);
        add(Range::empty(3, 1), true);
        add(Range::empty(3, 4), false);
    }
    add(Range::empty(2, 1), true);
    const com::com_ptr<Range> wholeColumn = Range::empty(2, 1);
    wholeColumn->rowLines().answer(L"Count", com::variant{1048576L});
    add(wholeColumn, true);
    const com::com_ptr<Range> wholeSheet = Range::empty(2, 2);
    wholeSheet->rowLines().answer(L"Count", com::variant{1048576L});
    wholeSheet->columnLines().answer(L"Count", com::variant{16384L});
    add(wholeSheet, false);
    // Of several areas Excel tells the rows and columns of the first, and no value of the others.
    const com::com_ptr<Range> areas = Range::empty(2, 1);
    areas->answer(L"Value", com::variant{});
    areas->answer(L"Count", com::variant{7L});
    add(areas, true);
    add(oddCaller(L"Rows", com::variant{}), false);
    add(oddCaller(L"Columns", com::variant{L"A"}), false);
    add(oddCaller(L"Rows", com::variant::object(nullptr)), false);
    const com::com_ptr<Range> uncounted = Range::empty(3, 1);
    uncounted->rowLines().fail(L"Count", E_FAIL);
    add(uncounted, false);
    const com::com_ptr<Range> hidden = Range::empty(3, 1);
    hidden->hide(L"Columns");
    add(hidden, false);
    com::variant nobody;
    nobody.vt = VT_ERROR;
    nobody.scode = static_cast<SCODE>(0x800A07E7U); // #REF!
    callers_.push_back({std::move(nobody), false});
    callers_.push_back({com::variant{L"Button 1"}, false});
    callers_.push_back({com::variant::object(nullptr), false});
    callers_.push_back({com::variant::object(workbooks_.front()->dispatch()), false});
}

void World::connect() { events_->OnConnection(excel_->dispatch(), ext_cm_Startup, nullptr, nullptr); }

void World::furnish() {
    for (const auto& workbook : workbooks_) {
        for (const Kind& kind : packages_.kinds()) {
            create(workbook->dispatch(), kind, kind.name);
        }
    }
    excel_->setActiveWorkbook(workbooks_.front());
}

void World::furnishLasting() {
    const long before = scripted::liveObjects();
    std::swap(addIn_, lastingAddIn_);
    for (const Kind& kind : packages_.kinds()) {
        if (!packages_.isDisturbed(kind)) {
            create(lastingWorkbook_->dispatch(), kind, kind.name);
            lastingKinds_.push_back(kind);
        }
    }
    std::swap(addIn_, lastingAddIn_);
    lastingObjects_ = scripted::liveObjects() - before;
}

void World::closeWorkbooks() {
    for (const auto& workbook : workbooks_) {
        addIn_->CloseWorkbook(workbook->dispatch());
        workbook->forget();
    }
    settleLasting();
    saved_.clear();
    lastingWorkbook_->forget();
    packages_.forget();
    excel_->forget();
    excel_->addIns().forget();
    for (const auto& range : ranges_) {
        range->forget();
        range->rowLines().forget();
        range->columnLines().forget();
    }
    SetErrorInfo(0, nullptr);
}

IUnknown* World::someWorkbook() {
    return dice_.percent(2) ? nullptr : static_cast<IUnknown*>(dice_.of(workbooks_)->dispatch());
}

void World::activate() {
    excel_->setActiveWorkbook(dice_.percent(3) ? com::com_ptr<sheet::excel::Workbook>{}
                                               : dice_.of(workbooks_));
}

// A package's method runs, and Excel or the front end does something that touches it.
void World::insideOfACall() {
    if (isInside_) {
        return;
    }
    isInside_ = true;
    const com::unique_bstr name = com::makeBstr(L"Faulty");
    switch (dice_.below(6)) {
    case 0:
        addIn_->DeleteWorkbookPP(someWorkbook(), name.get());
        break;
    case 1:
        addIn_->CloseWorkbook(someWorkbook());
        break;
    case 2: {
        VARIANT_BOOL changed = VARIANT_FALSE;
        addIn_->EditWorkbookPP(someWorkbook(), name.get(), &changed);
        break;
    }
    default: {
        const Call call = anyCall(dice_, packages_.kinds());
        com::variant result;
        if (reach_ == Reach::everything || !hasUnheardOfType(call)) {
            invoke(call, &result);
        }
    }
    }
    SetErrorInfo(0, nullptr); // what it said is not about the call that it was inside of
    isInside_ = false;
}

// One of the ranges that the call is given does the same while it is read.
void World::letACellCall(Call& call) {
    for (Value& argument : call.arguments) {
        VARIANT& value = argument.value;
        if (value.vt == VT_DISPATCH && com::queryFor<ExcelRange>(value.pdispVal)) {
            const auto cell = com::make<CallingCell>(com::com_ptr<IDispatch>::share(value.pdispVal),
                                                     [this] { insideOfACall(); });
            argument.value = com::variant::object(cell->dispatch());
            return;
        }
    }
}

// Something with the packages that stay.
std::string World::lastingStep() {
    std::swap(addIn_, lastingAddIn_);
    excel_->setActiveWorkbook(lastingWorkbook_);
    std::string wrong = dice_.percent(95) ? worksheetCall(lastingKinds_) : lastingService();
    std::swap(addIn_, lastingAddIn_);
    activate();
    return wrong;
}

std::string World::step() {
    if (++steps_ % 500 == 0) {
        closeWorkbooks();
        furnish();
    }
    if (dice_.percent(85)) {
        return dice_.percent(15) ? lastingStep() : worksheetCall(packages_.kinds());
    }
    if (dice_.percent(70)) {
        return service();
    }
    switch (dice_.below(30)) {
    case 0:
        events_->OnBeginShutdown(nullptr);
        connect();
        break;
    case 1:
        events_->OnDisconnection(ext_dm_UserClosed, nullptr);
        connect();
        break;
    case 2:
        events_->OnStartupComplete(nullptr);
        events_->OnAddInsUpdate(nullptr);
        break;
    default:
        if (dice_.percent(50)) {
            packages_.disturb(dice_, [this] { insideOfACall(); });
        } else {
            activate();
        }
    }
    return {};
}

std::string World::worksheetCall(const std::vector<Kind>& kinds) {
    Call call = anyCall(dice_, kinds);
    if (reach_ != Reach::everything && hasUnheardOfType(call)) {
        return {};
    }
    if (dice_.percent(3)) {
        letACellCall(call);
    }
    const Caller& caller = dice_.of(callers_);
    excel_->setCaller(com::variant::copyOf(caller.value));
    SetErrorInfo(0, nullptr);
    com::variant result;
    const HRESULT code = dice_.percent(15) && call.arguments.size() == call.function->parameters.size()
                             ? callThroughSlot(call, &result)
                             : invoke(call, &result);
    const std::optional<std::wstring> failure = ownFailure();
    ++tally_.calls;
    ++(failure ? tally_.failed : tally_.succeeded)[call.function->name];
    if (failure && reach_ == Reach::everything) { // where memory is looked at nothing is collected
        tally_.messages.insert(*failure);
    }
    const std::string shown = shownText(result);
    digest_.add(shown);
    digest_.add(&code, sizeof code);
    const std::string wrong = judge_.complaint(call, caller.isColumn, code, result, failure);
    return wrong.empty() ? wrong : wrong + "\n  " + textOf(call) + "\n  shows " + shown.substr(0, 400);
}

HRESULT World::invoke(const Call& call, VARIANT* result) {
    std::wstring name{call.function->method};
    wchar_t* names[] = {name.data()};
    DISPID member = 0;
    if (const HRESULT code = addIn_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member);
        FAILED(code)) {
        return code;
    }
    std::vector<VARIANT> arguments; // borrowed, the last first
    arguments.reserve(call.arguments.size());
    for (const auto& argument : std::views::reverse(call.arguments)) {
        arguments.push_back(argument.value);
    }
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    return addIn_->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, result,
                          nullptr, nullptr);
}

// As a client compiled against the type library calls: types are what the parameters say.
HRESULT World::callThroughSlot(const Call& call, VARIANT* result) {
    constexpr ULONG_PTR slotsOfDispatch = 7;
    const auto& functions = conformance::functions();
    const auto slot = slotsOfDispatch + static_cast<ULONG_PTR>(call.function - functions.data());
    std::vector<VARIANT> given;
    std::vector<VARTYPE> types;
    for (std::size_t i = 0; i < call.arguments.size(); ++i) {
        const VARTYPE type = call.function->parameters[i].type;
        VARIANT value = call.arguments[i].value;
        if (type == VT_BSTR && value.vt != VT_BSTR) {
            value.vt = VT_BSTR;
            value.bstrVal = nullptr;
        } else if (type == VT_R8 && value.vt != VT_R8) {
            value.vt = VT_R8;
            value.dblVal = std::numeric_limits<double>::lowest();
        }
        given.push_back(value);
        types.push_back(type);
    }
    // The unit of measure is a text; all others give a VARIANT.
    const bool givesText = std::string_view{call.function->name} == "UnitOfMeasure";
    VARIANT out{};
    out.vt = givesText ? VT_BYREF | VT_BSTR : VT_BYREF | VT_VARIANT;
    out.byref = givesText ? static_cast<void*>(&result->bstrVal) : result;
    if (givesText) {
        result->vt = VT_BSTR;
        result->bstrVal = nullptr;
    }
    given.push_back(out);
    types.push_back(VT_PTR);
    std::vector<VARIANT*> pointers;
    pointers.reserve(given.size());
    for (VARIANT& value : given) {
        pointers.push_back(&value);
    }
    VARIANT answer{};
    const HRESULT code =
        DispCallFunc(addIn_.get(), slot * sizeof(void*), CC_STDCALL, VT_I4, static_cast<UINT>(given.size()),
                     types.data(), pointers.data(), &answer);
    return FAILED(code) ? code : static_cast<HRESULT>(answer.lVal);
}

} // namespace chance
