// The fixture of the worksheet tests: Excel's stand-in with a workbook, the front end, the built add-in
// connected to them, and a scripted package. A test types arguments and looks at what the cell shows.
#pragma once

#include "sheet/excel/application.h"
#include "sheet/excel/front_end.h"
#include "tests/scripted_package/registered.h"
#include "tests/src/server/add_in.h"

#include <gtest/gtest.h>

namespace tests {

/// An argument as a worksheet passes it.
inline com::variant text(const wchar_t* value) { return com::variant{value}; }
inline com::variant number(double value) { return com::variant{value}; }
inline com::variant truth(bool value) { return com::variant{value}; }
inline com::variant omitted() { return com::variant::missing(); }
inline com::variant errorCell() {
    com::variant value;
    value.vt = VT_ERROR;
    value.scode = static_cast<SCODE>(0x800A07FAU); // #N/A
    return value;
}
inline com::variant range(const com::com_ptr<sheet::excel::Range>& cells) {
    return com::variant::object(cells->dispatch());
}
template <typename Value>
com::variant cell(Value&& value) {
    return range(sheet::excel::Range::cell(std::forward<Value>(value)));
}
inline com::variant emptyCell() { return cell(com::variant{}); }
/// Cells in one row.
com::variant cells(std::initializer_list<double> values);

/// What the cells show: "a | b" for a row, "a / b" for a column, "a | b / c | d" for a block, "list: a | b"
/// for a one-dimensional array, which Excel shows as a row. An empty text shows as "".
std::string shown(const VARIANT& value);

class Worksheet : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// Attaches a scripted package to the active workbook.
    void attach(const wchar_t* name = L"P");
    HRESULT create(IUnknown* workbook, const wchar_t* name);

    /// Calls a function by name through IDispatch, as Excel does, and tells what the cell shows.
    template <typename... Arguments>
    std::string show(const wchar_t* function, Arguments&&... arguments) {
        std::vector<com::variant> given;
        (given.push_back(std::forward<Arguments>(arguments)), ...);
        return shown(call(function, std::move(given)));
    }
    com::variant call(const wchar_t* function, std::vector<com::variant> arguments);
    /// Arguments are passed by reference, as scripts pass their variables: Automation then makes the call.
    bool asVariables = false;

    /// A flash of the package P; what is not given has its default.
    struct Flash {
        com::variant package = text(L"P");
        com::variant composition = cells({1.0, 1.0, 2.0});
        com::variant condition1 = text(L"temperature");
        com::variant value1 = number(300.0);
        com::variant condition2 = text(L"pressure");
        com::variant value2 = number(100000.0);
        com::variant basis = omitted();
        com::variant options = omitted();
        com::variant noNumber = omitted();
        com::variant orientation = omitted();
        com::variant normalize = omitted();
    };
    std::string flash(Flash given);

    /// The error information that the last call left for the thread, "source: description"; empty when there
    /// is none.
    static std::string errorInfo();

    IUnknown* book() { return workbook->dispatch(); }

    scripted::Package package;
    scripted::Manager manager{package};
    com::com_ptr<sheet::excel::Workbook> workbook = com::make<sheet::excel::Workbook>(L"Book1");
    com::com_ptr<sheet::excel::Application> excel = com::make<sheet::excel::Application>();
    com::com_ptr<sheet::excel::FrontEnd> frontEnd = com::make<sheet::excel::FrontEnd>();
    com::com_ptr<IQuorvaneVSTOServices> addIn;
    com::com_ptr<_IDTExtensibility2> events;
};

} // namespace tests
