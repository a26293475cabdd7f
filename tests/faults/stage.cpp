#include "tests/faults/stage.h"

#include "com/safe_array.h"

#include <stdexcept>

namespace faults {

using scripted::narrow;

namespace {

constexpr std::size_t mostShown = 40;

std::string elementText(const void* data, VARTYPE type, std::size_t at) {
    switch (type) {
    case VT_R8:
        return scripted::textOf(com::variant{static_cast<const double*>(data)[at]});
    case VT_BSTR:
        return narrow(com::viewOf(static_cast<const BSTR*>(data)[at]));
    case VT_VARIANT:
        return seen(static_cast<const VARIANT*>(data)[at]);
    default:
        return "?";
    }
}

std::string arrayText(SAFEARRAY* array, VARTYPE type) {
    const com::array_lock<char> lock{array};
    std::size_t rows = 1;
    std::size_t columns = array->rgsabound[0].cElements;
    if (array->cDims == 2) {
        rows = array->rgsabound[1].cElements; // kept in reverse order
    }
    std::string text;
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < columns && column < mostShown; ++column) {
            text += (column > 0 ? " | "
                     : row > 0  ? " / "
                                : "") +
                    elementText(array->pvData, type, row + column * rows);
        }
    }
    return columns <= mostShown ? text : text + " ... of " + std::to_string(columns);
}

std::string replaced(std::string text, const std::string& part, const std::string& by) {
    if (const auto at = text.find(part); at != std::string::npos) {
        text.replace(at, part.size(), by);
    }
    return text;
}

struct Named {
    const char* name;
    IID iid;
};

const Named interfaces[] = {
    {"IUnknown", IID_IUnknown},
    {"IDispatch", IID_IDispatch},
    {"IErrorInfo", IID_IErrorInfo},
    {"IPersistStream", IID_IPersistStream},
    {"IPersistStreamInit", IID_IPersistStreamInit},
    {"ICapeUtilities", __uuidof(ICapeUtilities)},
    {"ICapeThermoPropertyPackageManager", __uuidof(ICapeThermoPropertyPackageManager)},
    {"ICapeThermoCompounds", __uuidof(ICapeThermoCompounds)},
    {"ICapeThermoPhases", __uuidof(ICapeThermoPhases)},
    {"ICapeThermoPropertyRoutine", __uuidof(ICapeThermoPropertyRoutine)},
    {"ICapeThermoEquilibriumRoutine", __uuidof(ICapeThermoEquilibriumRoutine)},
    {"ICapeThermoMaterialContext", __uuidof(ICapeThermoMaterialContext)},
    {"ECapeUser", __uuidof(ECapeUser)},
    {"ECapeRoot", __uuidof(ECapeRoot)},
    {"ExcelApplication", __uuidof(ExcelApplication)},
    {"ExcelRange", __uuidof(ExcelRange)},
    {"IQuorvaneVSTOContext", __uuidof(IQuorvaneVSTOContext)},
};

} // namespace

std::string seen(const VARIANT& value) {
    if ((value.vt & VT_BYREF) != 0) {
        return "reference to type " + std::to_string(value.vt & ~VT_BYREF);
    }
    if ((value.vt & VT_ARRAY) != 0 && (value.vt & VT_BYREF) == 0 && value.parray != nullptr) {
        return arrayText(value.parray, static_cast<VARTYPE>(value.vt & VT_TYPEMASK));
    }
    return value.vt == VT_BSTR ? narrow(com::viewOf(value.bstrVal)) : scripted::textOf(value);
}

scripted::Failure refusalOf(ICapeThermoMaterial* material) {
    com::unique_bstr text;
    const auto user = com::queryFor<ECapeUser>(material);
    user->get_description(text.put());
    return {static_cast<HRESULT>(ECapeComputationHR), std::wstring{com::viewOf(text)}, {}};
}

IID iidNamed(const std::string& interfaceName) {
    for (const Named& known : interfaces) {
        if (known.name == interfaceName) {
            return known.iid;
        }
    }
    throw std::invalid_argument{"An interface without identifier here: " + interfaceName};
}

void Stage::put(const std::string& name, IDispatch* inner, REFIID face) {
    objects_[name] = com::make<FaultyObject>(com::com_ptr<IDispatch>::share(inner), face);
}

com::com_ptr<FaultyObject> Stage::objectNamed(const std::string& name) const { return objects_.at(name); }

scripted::Script& Stage::scriptOf(const std::string& object) {
    return object.starts_with("manager") ? *manager : *package;
}

void Stage::SetUp() {
    Worksheet::SetUp();
    using sheet::excel::Range;
    const auto caller = Range::empty(3, 1);
    put("application", excel->dispatch(), __uuidof(ExcelApplication));
    put("book", workbook->dispatch(), IID_IDispatch);
    put("caller", caller->dispatch(), __uuidof(ExcelRange));
    put("rows", caller->rowLines().dispatch(), __uuidof(ExcelRange));
    put("columns", caller->columnLines().dispatch(), __uuidof(ExcelRange));
    put("cell", Range::cell(2.0)->dispatch(), __uuidof(ExcelRange));
    put("cells", Range::row(1.0, 1.0, 2.0)->dispatch(), __uuidof(ExcelRange));
    put("element", Range::cell(1.0)->dispatch(), IID_IDispatch);
    objects_["element"]->answers(L"Invoke", [] { return com::variant{1.0}; });
    put("addIns", excel->addIns().dispatch(), IID_IDispatch);
    const auto entry = com::make<sheet::excel::COMAddIn>(L"Quorvane");
    put("entry", entry->dispatch(), IID_IDispatch);
    frontEndObject_ = com::make<FaultyFrontEnd>();
    objects_["application"]->answers(L"ActiveWorkbook", objects_["book"]->dispatch());
    objects_["application"]->answers(L"COMAddIns", objects_["addIns"]->dispatch());
    objects_["caller"]->answers(L"Rows", objects_["rows"]->dispatch());
    objects_["caller"]->answers(L"Columns", objects_["columns"]->dispatch());
    objects_["addIns"]->answers(L"Item", objects_["entry"]->dispatch());
    objects_["entry"]->answers(L"Object", frontEndObject_.get());
    // The services went to Excel's own front end; from here on Excel is the faulty one.
    ASSERT_EQ(connect(), "not handed over");
}

void Stage::TearDown() {
    frontEndObject_->services.reset();
    for (auto& [name, object] : objects_) {
        object->letGo();
    }
    savedTable.clear();
    Worksheet::TearDown();
}

std::string Stage::connect() {
    events->OnConnection(objects_["application"]->dispatch(), ext_cm_Startup, nullptr, nullptr);
    return frontEndObject_->services.get() == addIn.get() ? "handed over" : "not handed over";
}

void Stage::startAnew() {
    events->OnDisconnection(ext_dm_UserClosed, nullptr);
    frontEndObject_->services.reset();
    frontEnd->letGo();
    addIn = tests::AddIn::instance().create();
    events = addIn.tryAs<_IDTExtensibility2>();
}

const std::string& Stage::healthy(const std::string& way) { return resultsWithoutFault().at(way); }

std::string Stage::go(const std::string& name, const std::function<void()>& fault) {
    const Way& way = wayNamed(name);
    way.prepare(*this);
    fault();
    return way.go(*this);
}

void Stage::expectHealthyAgain(const std::string& name, const std::string& result, Memory memory) {
    const Way& way = wayNamed(name);
    const bool remembered =
        memory == Memory::ofEverything || (memory == Memory::ofResults && !result.starts_with("! "));
    if (way.again && !remembered && result != healthy(name)) {
        EXPECT_EQ(way.again(*this), healthy(name)) << "the same objects once more";
    }
    EXPECT_EQ(go(name, [] {}), healthy(name)) << "with new objects";
}

std::string Stage::expected(const std::string& outcome, const std::string& way, HRESULT code,
                            const std::string& reason) {
    if (outcome == "-") {
        return healthy(way);
    }
    if (outcome.starts_with("= ")) {
        return outcome.substr(2);
    }
    std::string text = replaced(outcome, "<reason>", reason);
    text = replaced(text, "<system>", systemText(code));
    if (const auto at = text.find("<system "); at != std::string::npos) {
        const std::string digits = text.substr(at + 8, 8);
        text.replace(at, 17, systemText(static_cast<HRESULT>(std::stoul(digits, nullptr, 16))));
    }
    return "! " + text;
}

void Stage::remove() { addIn->DeleteWorkbookPP(faultyBook(), com::makeBstr(L"P").get()); }

void Stage::attachNew() {
    remove();
    ASSERT_EQ(create(faultyBook(), L"P"), S_OK);
}

std::string Stage::worksheet(const wchar_t* function, std::vector<com::variant> arguments) {
    const com::variant result = call(function, std::move(arguments));
    const std::string told = errorInfo();
    if (told.empty()) {
        return seen(result);
    }
    EXPECT_EQ(told, "Quorvane.Excel: " + seen(result)) << "the cell and the error information differ";
    return "! " + seen(result);
}

std::string Stage::service(HRESULT code, const std::function<std::string()>& result, HRESULT ofFailures) {
    const std::string told = errorInfo();
    constexpr std::string_view source = "Quorvane.Excel: ";
    char codeText[40];
    std::snprintf(codeText, sizeof codeText, " (with the code 0x%08lX)", static_cast<unsigned long>(code));
    if (told.starts_with(source)) {
        return "! " + told.substr(source.size()) + (code == ofFailures ? "" : codeText);
    }
    return code == S_OK ? result() : std::string{"failed without words"} + codeText;
}

} // namespace faults
