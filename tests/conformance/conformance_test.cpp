// Every row of worksheet_functions.txt is a test: its formula, called as Excel calls it, shows what the row
// says.
#include "sheet/cli/cell_values.h"
#include "sheet/cli/text.h"
#include "tests/conformance/table_file.h"
#include "tests/scripted_package/package_object.h"
#include "tests/scripted_package/script_text.h"
#include "tests/src/server/worksheet.h"

#include <algorithm>
#include <set>
#include <sstream>

namespace conformance {

namespace {

using sheet::cli::toWide;
using sheet::excel::Range;

// --- The table itself

TEST(ConformanceTable, CanBeUnderstood) { EXPECT_EQ(table().problems, std::vector<std::string>{}); }

TEST(ConformanceTable, HasMoreThanFourHundredFiftyRows) { EXPECT_GE(table().rows.size(), 450U); }

TEST(ConformanceTable, GivesEachRowANameOfItsOwn) {
    std::set<std::string> names;
    for (const Row& row : table().rows) {
        EXPECT_TRUE(names.insert(row.name).second) << row.name << " in line " << row.line;
    }
}

TEST(ConformanceTable, AsksEachQuestionOnce) {
    std::set<std::string> questions;
    for (const Row& row : table().rows) {
        std::string question = row.text + " in " + nameOf(row.range) + ' ' + row.workbook;
        EXPECT_TRUE(questions.insert(question + (row.isMacro ? " by a macro" : "")).second)
            << question << " in line " << row.line;
    }
}

TEST(ConformanceTable, ShowsEveryMessage) {
    EXPECT_GE(table().messages.size(), 100U);
    for (const auto& entry : table().messages) {
        EXPECT_TRUE(std::ranges::any_of(
            table().rows,
            [&](const Row& row) { return row.shown.failed && matches(row.shown.message, entry.second); }))
            << "no row shows the message \"" << entry.second << '"';
    }
}

TEST(ConformanceTable, ShowsOnlyMessagesOfItsList) {
    for (const Row& row : table().rows) {
        EXPECT_TRUE(
            !row.shown.failed ||
            std::ranges::any_of(table().messages,
                                [&](const auto& entry) { return matches(row.shown.message, entry.second); }))
            << row.shown.message << " in line " << row.line;
    }
}

TEST(ConformanceTable, CallsEveryFunction) {
    std::set<std::string> functions;
    for (const Row& row : table().rows) {
        functions.insert(row.formula.function);
    }
    EXPECT_EQ(functions.size(), 9U);
}

// --- The rows

com::variant arrayOf(const Matrix& cells) {
    com::unique_safearray array = com::makeMatrix(VT_VARIANT, cells.rows, cells.columns);
    {
        const com::array_lock<VARIANT> lock{array.get()};
        for (std::size_t i = 0; i < cells.values.size(); ++i) {
            lock.elements()[i / cells.columns + i % cells.columns * cells.rows] =
                sheet::cli::toVariant(cells.values[i]).release();
        }
    }
    return com::variant::array(std::move(array), VT_VARIANT);
}

com::variant toVariant(const sheet::formula::Argument& argument) {
    static const sheet::formula::Grid grid{{table().inputs, {}}};
    struct Visitor {
        com::variant operator()(sheet::formula::Omitted) const { return com::variant::missing(); }
        com::variant operator()(double number) const { return com::variant{number}; }
        com::variant operator()(const std::string& text) const { return com::variant{toWide(text)}; }
        com::variant operator()(bool truth) const { return com::variant{truth}; }
        com::variant operator()(const sheet::formula::Block& block) const {
            const Matrix* const array = table().arrayAt(block);
            return array != nullptr ? arrayOf(*array) : tests::range(sheet::cli::rangeOf(grid, block));
        }
    };
    return std::visit(Visitor{}, argument);
}

class Conformance : public tests::Worksheet, public ::testing::WithParamInterface<const Row*> {
  protected:
    void TearDown() override {
        Worksheet::TearDown();
        registrations_.clear();
    }

    void openWorkbook(const Row& row) {
        constexpr std::string_view holding = "a workbook with ";
        if (row.workbook == "no workbook") {
            excel->setActiveWorkbook({});
        } else if (row.workbook == "an unknown workbook") {
            excel->fail(L"ActiveWorkbook", E_FAIL);
        } else if (row.workbook == "no Excel") {
            events->OnDisconnection(ext_dm_UserClosed, nullptr);
        } else if (row.workbook == "an empty workbook") {
            return;
        } else if (row.workbook.starts_with(holding)) {
            std::istringstream names{row.workbook.substr(holding.size())};
            for (std::string name; names >> name;) {
                attach(name, "");
            }
        } else {
            ASSERT_EQ(row.workbook, "");
            attachNamed(row.formula);
        }
    }

    void enter(const Row& row) {
        excel->setCaller(Range::empty(row.range.rows, row.range.columns));
        if (row.isMacro) {
            excel->setCaller();
        }
    }

    Shown result(const Row& row) {
        std::vector<com::variant> arguments;
        for (const sheet::formula::Argument& argument : row.formula.arguments) {
            arguments.push_back(toVariant(argument));
        }
        const com::variant value = call(toWide(row.formula.function).c_str(), std::move(arguments));
        const std::string failure = errorInfo();
        if (failure.empty()) {
            return {false, {}, sheet::cli::fromResult(value)};
        }
        Shown shown{true, tests::shown(value), {}};
        EXPECT_EQ(failure, "Quorvane.Excel: " + shown.message);
        return shown;
    }

    void expectShown(const Row& row) {
        ASSERT_NO_FATAL_FAILURE(openWorkbook(row));
        enter(row);
        const Shown found = result(row);
        EXPECT_TRUE(isSame(found, row.shown)) << "line " << row.line << ": " << row.text << "\n   shows "
                                              << written(found) << "\nexpected " << written(row.shown);
    }

  private:
    // The package that the formula names, when the table declares it.
    void attachNamed(const sheet::formula::Formula& formula) {
        const auto* const name =
            formula.arguments.empty() ? nullptr : std::get_if<std::string>(&formula.arguments.front());
        std::string made;
        const std::string* const script = name == nullptr ? nullptr : table().script(*name, made);
        if (script != nullptr) {
            attach(*name, *script);
        } else {
            attach("Scripted", *table().script("Scripted", made));
        }
    }

    // A class of its own, so that each package of a workbook has a script of its own.
    void attach(const std::string& name, const std::string& script) {
        CLSID clsid = scripted::packageInProcess;
        clsid.Data1 += 0x100 + static_cast<unsigned long>(registrations_.size());
        registrations_.push_back(std::make_unique<scripted::Registration>(
            clsid, [clsid, parsed = scripted::parseScripts(toWide(script)).package]() -> IUnknown* {
                return static_cast<ICapeIdentification*>(
                    com::make<scripted::PackageObject>(parsed, clsid).release());
            }));
        const com::unique_bstr managerName = com::makeBstr(L"Scripted package");
        const com::unique_bstr packageName = com::makeBstr(toWide(name));
        ASSERT_EQ(addIn->CreateWorkbookPP(book(), managerName.get(), clsid, StandAlonePackage11, nullptr,
                                          packageName.get()),
                  S_OK);
    }

    std::vector<std::unique_ptr<scripted::Registration>> registrations_;
};

TEST_P(Conformance, Shows) { expectShown(*GetParam()); }

TEST_P(Conformance, ShowsTheSameThroughAutomationsDispatcher) {
    asVariables = true;
    expectShown(*GetParam());
}

std::vector<const Row*> allRows() {
    std::vector<const Row*> rows;
    std::ranges::transform(table().rows, std::back_inserter(rows), [](const Row& row) { return &row; });
    return rows;
}

INSTANTIATE_TEST_SUITE_P(Table, Conformance, ::testing::ValuesIn(allRows()),
                         [](const auto& row) { return row.param->name; });

} // namespace

} // namespace conformance
