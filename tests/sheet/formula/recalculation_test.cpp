// The functions here are made up: CapeOpenGive returns a block of the wanted size, CapeOpenSum adds numbers
// up. What is tested is the order in which formulas are calculated and where their results stand.
#include "sheet/formula/recalculation.h"

#include <gtest/gtest.h>
#include <numeric>

namespace sheet::formula {
namespace {

class Sheet {
  public:
    explicit Sheet(const CsvTable& table, const std::vector<Block>& arrays = {})
        : sheet_{readWorksheet(table, arrays)} {}

    Recalculated recalculated() {
        return recalculate(sheet_, [this](const EnteredFormula& entered, const Grid& grid) {
            calls.push_back(nameOf(entered.block));
            return call(entered.formula, grid);
        });
    }

    // "1 2|3 4": rows by bars, cells by blanks, an empty cell is a dot
    std::string shown() {
        const Grid grid = recalculated().grid;
        std::string text;
        for (std::size_t row = 0; row < grid.rows(); ++row) {
            text += row > 0 ? "|" : "";
            for (std::size_t column = 0; column < grid.columns(); ++column) {
                const std::string cell = displayText(grid.at({row, column}));
                text += (column > 0 ? " " : "") + (cell.empty() ? "." : cell);
            }
        }
        return text;
    }

    std::string problem() {
        try {
            recalculated();
        } catch (const InputError& error) {
            return error.problems().at(0).inFile("t.csv");
        }
        return "(calculated)";
    }

    std::vector<std::string> calls;

  private:
    static double sum(const Argument& argument, const Grid& grid) {
        if (const double* const number = std::get_if<double>(&argument)) {
            return *number;
        }
        double total = 0.0;
        for (const Value& value : grid.values(std::get<Block>(argument)).values) {
            total += std::holds_alternative<double>(value) ? std::get<double>(value) : 0.0;
        }
        return total;
    }

    static Result call(const Formula& formula, const Grid& grid) {
        std::vector<double> numbers;
        for (const Argument& argument : formula.arguments) {
            numbers.push_back(std::holds_alternative<std::string>(argument) ? 0.0 : sum(argument, grid));
        }
        if (formula.function == "CapeOpenSum") {
            return {Matrix::of(std::accumulate(numbers.begin(), numbers.end(), 0.0))};
        }
        if (formula.function == "CapeOpenFail") {
            return {Matrix::of("it failed"), true};
        }
        Matrix block{static_cast<std::size_t>(numbers.at(0)), static_cast<std::size_t>(numbers.at(1)), {}};
        const double more = std::accumulate(numbers.begin() + 2, numbers.end(), 0.0);
        for (std::size_t i = 0; i < block.rows * block.columns; ++i) {
            block.values.emplace_back(static_cast<double>(i + 1) + more);
        }
        return {block};
    }

    Worksheet sheet_;
};

TEST(Recalculation, AFormulaIsCalculatedAfterTheOnesItRefersTo) {
    Sheet sheet{{{"=CapeOpenSum(A2,1)"}, {"=CapeOpenSum(A3,1)"}, {"5"}}};
    EXPECT_EQ(sheet.shown(), "7|6|5");
    EXPECT_EQ(sheet.calls, (std::vector<std::string>{"A2", "A1"}));
}

TEST(Recalculation, FormulasWithoutReferencesAreCalculatedInRowOrder) {
    Sheet sheet{{{"=CapeOpenSum(1)", "=CapeOpenSum(2)"}, {"=CapeOpenSum(3)"}}};
    EXPECT_EQ(sheet.shown(), "1 2|3 .");
    EXPECT_EQ(sheet.calls, (std::vector<std::string>{"A1", "B1", "A2"}));
}

TEST(Recalculation, AResultSpillsOverEmptyCells) {
    EXPECT_EQ((Sheet{{{"x", "=CapeOpenGive(2,3)"}}}.shown()), "x 1 2 3|. 4 5 6");
}

TEST(Recalculation, AReferenceIntoASpillSeesTheSpilledValues) {
    Sheet sheet{{{"=CapeOpenSum(C2)", ""}, {"=CapeOpenGive(1,3)"}}};
    EXPECT_EQ(sheet.shown(), "3 . .|1 2 3");
    EXPECT_EQ(sheet.calls, (std::vector<std::string>{"A2", "A1"}));
}

TEST(Recalculation, AFormulaCalculatedTooEarlyIsCalculatedAgain) {
    // Both look at empty cells; A1 comes first, but the result of A3 spills into B3.
    Sheet sheet{{{"=CapeOpenSum(B3)"}, {""}, {"=CapeOpenGive(1,2,F9)"}}};
    EXPECT_EQ(sheet.shown(), "2 .|. .|1 2");
    EXPECT_EQ(sheet.calls, (std::vector<std::string>{"A1", "A3", "A1"}));
}

TEST(Recalculation, ASpillIsBlockedByAnEnteredCell) {
    Sheet sheet{{{"=CapeOpenGive(2,2)"}, {"", "x"}}};
    const Recalculated result = sheet.recalculated();
    EXPECT_EQ(result.grid.at({0, 0}), Value{CellError::spill});
    EXPECT_TRUE(isEmpty(result.grid.at({0, 1})));
    ASSERT_EQ(result.failures.size(), 1U);
    EXPECT_EQ(result.failures[0].text, "#SPILL! (the result needs A1:B2, and B2 is not empty)");
}

TEST(Recalculation, ASpillIsBlockedByAnotherFormulasCell) {
    EXPECT_EQ((Sheet{{{"=CapeOpenGive(1,2)", "=CapeOpenSum(7)"}}}.shown()), "#SPILL! 7");
}

TEST(Recalculation, WhereTwoSpillsMeetTheFirstOneStays) {
    EXPECT_EQ((Sheet{{{"", "=CapeOpenGive(2,1)"}, {"=CapeOpenGive(1,3)"}}}.shown()), ". 1|#SPILL! 2");
}

TEST(Recalculation, ASpillThatShrinksClearsItsOldCells) {
    // A1 is first three columns wide (the sum of B3:D3), and one when A3 has spilled -2 into B3.
    Sheet sheet{{{"=CapeOpenGive(1,B3:D3)"}, {""}, {"=CapeOpenGive(1,2,-4,F9)", "", "", "3"}}};
    EXPECT_EQ(sheet.shown(), "1 . . .|. . . .|-3 -2 . 3");
    EXPECT_EQ(sheet.calls, (std::vector<std::string>{"A1", "A3", "A1"}));
}

TEST(Recalculation, ABlockedResultSpillsWhenTheCellsBecomeFree) {
    // A2 first covers A2:C2 and so blocks B1; then A4 makes it shrink.
    Sheet sheet{{{"", "=CapeOpenGive(2,1,A3)"},
                 {"=CapeOpenGive(1,B4:D4)"},
                 {"=CapeOpenGive(1,1,F9)"},
                 {"=CapeOpenGive(1,2,-4,F9)", "", "", "3"}}};
    EXPECT_EQ(sheet.shown(), ". 2 . .|1 3 . .|1 . . .|-3 -2 . 3");
    EXPECT_EQ(sheet.calls, (std::vector<std::string>{"A2", "A3", "B1", "A4", "A2", "B1"}));
}

TEST(Recalculation, AResultLargerThanTheWorksheetIsBlocked) {
    CsvTable table{1};
    table[0].resize(maximumColumns);
    table[0].back() = "=CapeOpenGive(1,2)";
    Sheet sheet{table};
    EXPECT_EQ(sheet.recalculated().failures.at(0).text,
              "#SPILL! (the result needs XFD1:XFE1, and the worksheet ends before)");
}

TEST(Recalculation, AnArrayFormulaShowsNotAvailableBeyondItsResult) {
    EXPECT_EQ((Sheet{{{"=CapeOpenGive(2,2)"}}, {Block{{0, 0}, 3, 3}}}.shown()),
              "1 2 #N/A|3 4 #N/A|#N/A #N/A #N/A");
}

TEST(Recalculation, AnArrayFormulaCutsItsResultOff) {
    EXPECT_EQ((Sheet{{{"=CapeOpenGive(3,3)"}}, {Block{{0, 0}, 2, 2}}}.shown()), "1 2|4 5");
}

TEST(Recalculation, AnArrayFormulaRepeatsASingleRowOrColumn) {
    EXPECT_EQ((Sheet{{{"=CapeOpenGive(1,2)"}}, {Block{{0, 0}, 2, 3}}}.shown()), "1 2 #N/A|1 2 #N/A");
    EXPECT_EQ((Sheet{{{"=CapeOpenGive(2,1)"}}, {Block{{0, 0}, 3, 2}}}.shown()), "1 1|2 2|#N/A #N/A");
    EXPECT_EQ((Sheet{{{"=CapeOpenSum(7)"}}, {Block{{0, 0}, 2, 2}}}.shown()), "7 7|7 7");
}

TEST(Recalculation, AnArrayFormulaIsCalculatedOnceForItsRange) {
    Sheet sheet{{{"=CapeOpenGive(2,1)", "=CapeOpenSum(A2)"}}, {Block{{0, 0}, 2, 1}}};
    EXPECT_EQ(sheet.shown(), "1 2|2 .");
    EXPECT_EQ(sheet.calls, (std::vector<std::string>{"A1:A2", "B1"}));
}

TEST(Recalculation, AReferenceAloneShowsWhatItRefersTo) {
    EXPECT_EQ((Sheet{{{"=B1", "text", "=A3:B3"}, {}, {"1", ""}}}.shown()), "text text 1 0|. . . .|1 . . .");
}

TEST(Recalculation, FailuresAreToldFromOrdinaryTexts) {
    const std::vector<Failure> failures =
        Sheet{{{"it failed", "=A1", "=CapeOpenFail()"}}}.recalculated().failures;
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(nameOf(failures[0].where), "C1");
    EXPECT_EQ(failures[0].text, "it failed");
}

TEST(Recalculation, ACircleNamesItsCells) {
    EXPECT_EQ(
        (Sheet{{{"=CapeOpenSum(B2)", "=A1"}, {"1", "=CapeOpenSum(A2:A3)"}, {"=CapeOpenSum(A1)"}}}.problem()),
        "t.csv: row 1, column 1 (A1): the formulas in A1, B2 and A3 refer to each other in a circle; let one "
        "of "
        "them refer to other cells");
}

TEST(Recalculation, AFormulaThatRefersToItselfIsACircle) {
    EXPECT_EQ(
        (Sheet{{{"", "=CapeOpenSum(A1:C1)"}}}.problem()),
        "t.csv: row 1, column 2 (B1): the formula refers to its own cell; let it refer to other cells only");
}

TEST(Recalculation, ASpillOverTheFormulasOwnReferencesIsACircle) {
    EXPECT_EQ((Sheet{{{"=CapeOpenGive(1,3,C1)"}}}.problem()),
              "t.csv: row 1, column 1 (A1): the result of the formula spills over A1:C1, where the formula "
              "refers to; "
              "move the formula or the cells it refers to");
}

TEST(Recalculation, SpillsThatFeedEachOtherAreACircle) {
    EXPECT_EQ((Sheet{{{"=CapeOpenGive(1,2,B3)"}, {}, {"=CapeOpenGive(1,2,B1)"}}}.problem()),
              "t.csv: row 1, column 1 (A1): the results of the formulas in A1 and A3 spill over cells that "
              "these formulas "
              "refer to, in a circle; leave more room between them");
}

TEST(Recalculation, ManyFormulasInAChainAreNoProblem) {
    CsvTable table;
    for (int i = 1; i < 2000; ++i) {
        table.push_back({"=A" + std::to_string(i + 1)});
    }
    table.push_back({"42"});
    EXPECT_EQ((Sheet{table}.recalculated().grid.at({0, 0})), Value{42.0});
}

TEST(Recalculation, AHundredThousandFormulasAreCalculatedOnceEach) {
    // Each refers to its neighbour, to the row above, and to a range that all of them share.
    constexpr std::size_t rows = 50'000;
    CsvTable table{{"1", "1", "1"}};
    for (std::size_t row = 2; row <= rows + 1; ++row) {
        const std::string above = std::to_string(row - 1);
        table.push_back(
            {"=CapeOpenSum(B" + std::to_string(row) + ",$A$1:$C$1)", "=CapeOpenSum(B" + above + ",1)"});
    }
    Sheet sheet{table};
    const Recalculated result = sheet.recalculated();
    EXPECT_EQ(result.grid.at({rows, 1}), Value{1.0 + rows});
    EXPECT_EQ(result.grid.at({rows, 0}), Value{4.0 + rows});
    EXPECT_EQ(sheet.calls.size(), 2 * rows);
}

TEST(Recalculation, ProgressEndsWithAllFormulas) {
    std::vector<std::size_t> done;
    const Worksheet sheet = readWorksheet({{"=A3", "=A3"}, {}, {"1"}}, {});
    recalculate(sheet, {}, [&](std::size_t count, std::size_t all) {
        EXPECT_EQ(all, 2U);
        done.push_back(count);
    });
    EXPECT_EQ(done, (std::vector<std::size_t>{1, 2}));
}

} // namespace
} // namespace sheet::formula
