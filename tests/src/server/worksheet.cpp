#include "tests/src/server/worksheet.h"

#include "com/safe_array.h"

#include <algorithm>

namespace tests {

using scripted::narrow;

com::variant cells(std::initializer_list<double> values) {
    std::vector<com::variant> row;
    for (const double value : values) {
        row.emplace_back(value);
    }
    return range(com::make<sheet::excel::Range>(1U, values.size(), std::move(row)));
}

namespace {

std::vector<std::string> elementTexts(SAFEARRAY* array, VARTYPE element) {
    std::vector<std::string> texts;
    const auto add = [&](com::variant value) { texts.push_back(shown(value)); };
    if (element == VT_R8) {
        for (const double value : com::array_lock<double>{array}.elements()) {
            add(com::variant{value});
        }
    } else if (element == VT_BSTR) {
        for (const BSTR value : com::array_lock<BSTR>{array}.elements()) {
            add(com::variant{com::viewOf(value)});
        }
    } else if (element == VT_VARIANT) {
        for (const VARIANT& value : com::array_lock<VARIANT>{array}.elements()) {
            texts.push_back(shown(value));
        }
    }
    return texts;
}

std::string arrayText(const VARIANT& value) {
    SAFEARRAY* const array = value.parray;
    const auto elements = elementTexts(array, static_cast<VARTYPE>(value.vt & VT_TYPEMASK));
    LONG lower[2] = {};
    LONG upper[2] = {};
    const UINT dimensions = SafeArrayGetDim(array);
    for (UINT i = 0; i < dimensions && i < 2; ++i) {
        SafeArrayGetLBound(array, i + 1, &lower[i]);
        SafeArrayGetUBound(array, i + 1, &upper[i]);
    }
    const bool isList = dimensions == 1;
    if (dimensions > 2 || lower[0] != (isList ? 0 : 1) || (!isList && lower[1] != 1)) {
        return "(an array with unexpected bounds)";
    }
    const auto rows = isList ? 1U : static_cast<std::size_t>(upper[0]);
    const std::size_t columns = elements.size() / rows;
    std::string text = isList ? "list: " : "";
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            text += (column > 0 ? " | " : row > 0 ? " / " : "") + elements[row + column * rows];
        }
    }
    return text;
}

} // namespace

std::string shown(const VARIANT& value) {
    if ((value.vt & VT_ARRAY) != 0) {
        return arrayText(value);
    }
    if (value.vt == VT_BSTR) {
        return value.bstrVal == nullptr || *value.bstrVal == L'\0' ? "\"\""
                                                                   : narrow(com::viewOf(value.bstrVal));
    }
    return scripted::textOf(value);
}

void Worksheet::SetUp() {
    excel->setActiveWorkbook(workbook);
    excel->addIns().add(sheet::excel::frontEndName, frontEnd->dispatch());
    addIn = AddIn::instance().create();
    events = addIn.tryAs<_IDTExtensibility2>();
    ASSERT_EQ(events->OnConnection(excel->dispatch(), ext_cm_Startup, nullptr, nullptr), S_OK);
}

void Worksheet::TearDown() {
    events->OnBeginShutdown(nullptr);
    events->OnDisconnection(ext_dm_HostShutdown, nullptr);
    frontEnd->letGo();
    events.reset();
    addIn.reset();
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(AddIn::instance().canUnloadNow(), S_OK) << "an object of the add-in is still alive";
    EXPECT_EQ(scripted::liveObjects(), 0) << "a package is still alive";
}

HRESULT Worksheet::create(IUnknown* wb, const wchar_t* name) {
    const com::unique_bstr managerName = com::makeBstr(L"Scripted");
    const com::unique_bstr ppName = com::makeBstr(name);
    return addIn->CreateWorkbookPP(wb, managerName.get(), scripted::packageInProcess, StandAlonePackage11,
                                   nullptr, ppName.get());
}

void Worksheet::attach(const wchar_t* name) { ASSERT_EQ(create(book(), name), S_OK); }

com::variant Worksheet::call(const wchar_t* function, std::vector<com::variant> arguments) {
    SetErrorInfo(0, nullptr);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): it is only read
    wchar_t* names[] = {const_cast<wchar_t*>(function)};
    DISPID member = 0;
    com::variant result;
    if (FAILED(addIn->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member))) {
        ADD_FAILURE() << "unknown function";
        return result;
    }
    std::vector<VARIANT> lastFirst{arguments.rbegin(), arguments.rend()};
    for (std::size_t i = 0; asVariables && i < lastFirst.size(); ++i) {
        lastFirst[i] = {};
        lastFirst[i].vt = VT_BYREF | VT_VARIANT;
        lastFirst[i].pvarVal = &arguments[arguments.size() - 1 - i];
    }
    DISPPARAMS parameters{lastFirst.data(), nullptr, static_cast<UINT>(lastFirst.size()), 0};
    EXPECT_EQ(addIn->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &result,
                            nullptr, nullptr),
              S_OK);
    return result;
}

std::string Worksheet::flash(Flash given) {
    return show(L"CapeOpenPhaseEquilibrium", std::move(given.package), std::move(given.composition),
                std::move(given.condition1), std::move(given.value1), std::move(given.condition2),
                std::move(given.value2), std::move(given.basis), std::move(given.options),
                std::move(given.noNumber), std::move(given.orientation), std::move(given.normalize));
}

std::string Worksheet::errorInfo() {
    com::com_ptr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) != S_OK) {
        return {};
    }
    com::unique_bstr source;
    com::unique_bstr description;
    info->GetSource(source.put());
    info->GetDescription(description.put());
    return narrow(com::viewOf(source)) + ": " + narrow(com::viewOf(description));
}

} // namespace tests
