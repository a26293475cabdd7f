// Whatever the references and spills of a worksheet: in the end every formula has seen the final values of
// all its cells. Tested on random worksheets whose results depend in shape and value on the cells they are
// made from.
#include "sheet/formula/recalculation.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace sheet::formula {
namespace {

// Up to three columns and two rows, as the sum of the numbers referred to decides.
Matrix madeFrom(const Formula& formula, const Grid& grid) {
    double sum = 0.0;
    for (const Block& block : formula.references()) {
        for (const Value& value : grid.values(block).values) {
            sum += std::holds_alternative<double>(value) ? std::get<double>(value) : 0.0;
        }
    }
    const auto whole = static_cast<std::size_t>(sum);
    Matrix result{1 + whole % 2, 1 + whole % 3, {}};
    for (std::size_t i = 0; i < result.rows * result.columns; ++i) {
        result.values.emplace_back(std::fmod(sum + static_cast<double>(i), 5.0));
    }
    return result;
}

CsvTable randomTable(std::mt19937& random) {
    constexpr unsigned size = 7;
    const auto reference = [&] { return nameOf(Address{random() % size, random() % size}); };
    CsvTable table{size};
    for (std::vector<std::string>& row : table) {
        for (unsigned column = 0; column < size; ++column) {
            switch (random() % 16) {
            case 0:
                row.push_back("=CapeOpenX(" + reference() + ")");
                break;
            case 1:
                row.push_back("=CapeOpenX(" + reference() + ",3)");
                break;
            case 2:
                row.push_back(std::to_string(random() % 9));
                break;
            default:
                row.emplace_back();
            }
        }
    }
    return table;
}

TEST(RandomSheets, EveryFormulaHasSeenTheFinalCells) {
    std::mt19937 random{20240229};
    int calculated = 0;
    for (int round = 0; round < 3000; ++round) {
        const Worksheet sheet = readWorksheet(randomTable(random), {});
        try {
            const Recalculated result =
                recalculate(sheet, [](const EnteredFormula& entered, const Grid& grid) {
                    return Result{madeFrom(entered.formula, grid)};
                });
            ++calculated;
            for (std::size_t i = 0; i < sheet.formulas.size(); ++i) {
                const Matrix expected = result.grid.blockage(i)
                                            ? Matrix::of(CellError::spill)
                                            : madeFrom(sheet.formulas[i].formula, result.grid);
                ASSERT_EQ(result.grid.values(result.grid.covered(i)), expected)
                    << "round " << round << ", " << nameOf(sheet.formulas[i].block);
            }
        } catch (const InputError&) {
            // a circle
        }
    }
    EXPECT_GT(calculated, 1000);
}

} // namespace
} // namespace sheet::formula
