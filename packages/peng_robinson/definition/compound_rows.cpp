#include "packages/peng_robinson/definition/compound_rows.h"

#include <algorithm>
#include <array>
#include <limits>

namespace peng_robinson {
namespace {

using eos::Compound;

constexpr double missing = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t mostCompounds = 200, longestName = 100;

// The equation of state is used between these temperatures; a heat capacity must be positive there.
constexpr int lowestTemperature = 5, highestTemperature = 5000;

enum class Need {
    value,
    column,
    none
}; ///< every compound has one; the column must be there; may be left out

struct TextColumn {
    std::string_view name;
    std::string_view Compound::*member;
    Need need;
};
constexpr TextColumn texts[] = {
    {"name", &Compound::name, Need::value},       {"formula", &Compound::formula, Need::column},
    {"CAS number", &Compound::cas, Need::column}, {"IUPAC name", &Compound::iupacName, Need::none},
    {"SMILES", &Compound::smiles, Need::none},
};

// Limits that every substance keeps, narrow enough to find numbers in other units.
struct NumberColumn {
    std::string_view name;
    double Compound::*member;
    Need need;
    Limits limits;
};
constexpr NumberColumn numbers[] = {
    {"molecular weight", &Compound::molecularWeight, Need::value, {1.0, 10000.0, "g/mol"}},
    {"critical temperature", &Compound::Tc, Need::value, {1.0, 5000.0, "K"}},
    {"critical pressure", &Compound::Pc, Need::value, {1000.0, 1e9, "Pa"}},
    {"acentric factor", &Compound::acentricFactor, Need::value, {-1.0, 3.0, {}}},
    {"normal boiling point", &Compound::normalBoilingPoint, Need::column, {1.0, 5000.0, "K"}},
    {"critical density", &Compound::criticalDensity, Need::none, {1.0, 1e6, "mol/m3"}},
    {"enthalpy of formation", &Compound::formationEnthalpy, Need::none, {-1e8, 1e8, "J/mol"}},
    {"Gibbs energy of formation", &Compound::formationGibbs, Need::none, {-1e8, 1e8, "J/mol"}},
    {"standard entropy", &Compound::standardEntropy, Need::none, {0.0, 1e6, "J/(mol K)"}},
    {"liquid density", &Compound::liquidDensity, Need::none, {10.0, 30000.0, "kg/m3"}},
    {"parachor", &Compound::parachor, Need::none, {1.0, 10000.0, {}}},
};

constexpr std::array<std::string_view, 5> polynomial{"cp0", "cp1", "cp2", "cp3", "cp4"};
constexpr std::array<std::string_view, 2> range{"cp from", "cp to"};
constexpr std::array<std::string_view, 5> alyLee{"cpA", "cpB", "cpC", "cpD", "cpE"};
constexpr Limits anyCoefficient{-1e15, 1e15, {}};
constexpr Limits anyTemperature{1.0, 20000.0, "K"};

std::vector<std::string_view> knownColumns() {
    std::vector<std::string_view> known;
    for (const TextColumn& column : texts) {
        known.push_back(column.name);
    }
    for (const NumberColumn& column : numbers) {
        known.push_back(column.name);
    }
    known.insert(known.end(), polynomial.begin(), polynomial.end());
    known.insert(known.end(), range.begin(), range.end());
    known.insert(known.end(), alyLee.begin(), alyLee.end());
    return known;
}

void requireColumns(const Columns& columns) {
    for (const TextColumn& column : texts) {
        if (column.need != Need::none) {
            columns.require(column.name);
        }
    }
    for (const NumberColumn& column : numbers) {
        if (column.need != Need::none) {
            columns.require(column.name);
        }
    }
    if (!columns.has(alyLee[0])) {
        columns.require(polynomial[0]);
    }
}

/// The cells of one compound.
class CompoundRow {
  public:
    CompoundRow(const Columns& columns, const Row& row) : columns_{columns}, row_{row} {}

    bool has(std::string_view column) const { return !columns_.cell(row_, column).empty(); }
    double number(std::string_view column, const Limits& limits) const {
        return readNumber(columns_.cell(row_, column), column, limits, row_.line);
    }
    std::string text(std::string_view column) const { return columns_.cell(row_, column); }
    [[noreturn]] void fail(const std::string& reason) const { throw DefinitionError{row_.line, reason}; }
    void require(std::string_view column) const {
        if (!has(column)) {
            fail("the compound has no " + std::string{column});
        }
    }

  private:
    const Columns& columns_;
    const Row& row_;
};

eos::HeatCapacity readAlyLee(const CompoundRow& row) {
    std::array<double, 5> c{};
    for (std::size_t i = 0; i < alyLee.size(); ++i) {
        row.require(alyLee[i]);
        const bool isTemperature = i == 2 || i == 4;
        c[i] = row.number(alyLee[i], isTemperature ? anyTemperature : anyCoefficient);
    }
    eos::HeatCapacity result;
    result.constant = c[0];
    result.sinh[0] = {c[1], c[2]};
    result.cosh = {c[3], c[4]};
    return result;
}

eos::HeatCapacity readPolynomial(const CompoundRow& row) {
    eos::HeatCapacity result;
    row.require(polynomial[0]);
    result.constant = row.number(polynomial[0], anyCoefficient);
    bool dependsOnTemperature = false;
    for (std::size_t i = 1; i < polynomial.size(); ++i) {
        if (row.has(polynomial[i])) {
            result.powers[i - 1] = row.number(polynomial[i], anyCoefficient);
            dependsOnTemperature = dependsOnTemperature || result.powers[i - 1] != 0.0;
        }
    }
    if (dependsOnTemperature) {
        row.require(range[0]);
        row.require(range[1]);
        result.Tmin = row.number(range[0], anyTemperature);
        result.Tmax = row.number(range[1], anyTemperature);
        if (result.Tmin >= result.Tmax) {
            row.fail("cp from must be less than cp to");
        }
    }
    return result;
}

eos::HeatCapacity readHeatCapacity(const CompoundRow& row) {
    const auto given = [&row](std::string_view column) { return row.has(column); };
    const bool hasAlyLee = std::ranges::any_of(alyLee, given),
               hasPolynomial = std::ranges::any_of(polynomial, given);
    if (hasAlyLee == hasPolynomial) {
        row.fail(hasAlyLee ? "the compound has two heat capacities; fill either cp0 to cp4 or cpA to cpE"
                           : "the compound has no heat capacity; fill cp0 to cp4 or cpA to cpE");
    }
    const eos::HeatCapacity result = hasAlyLee ? readAlyLee(row) : readPolynomial(row);
    for (int T = lowestTemperature; T <= highestTemperature; T += 5) {
        if (!(result.cp(static_cast<double>(T)) > 0.0)) {
            row.fail("the heat capacity is not positive at " + std::to_string(T) + " K");
        }
    }
    return result;
}

Compound readCompound(const CompoundRow& row, Catalogue& catalogue) {
    Compound compound{};
    for (const TextColumn& column : texts) {
        if (column.need == Need::value) {
            row.require(column.name);
        }
        compound.*column.member = catalogue.texts.emplace_back(row.text(column.name));
    }
    if (compound.name.size() > longestName) {
        row.fail("the name is longer than " + std::to_string(longestName) + " bytes");
    }
    for (const NumberColumn& column : numbers) {
        if (column.need == Need::value) {
            row.require(column.name);
        }
        compound.*column.member = row.has(column.name) ? row.number(column.name, column.limits) : missing;
    }
    if (row.has("liquid density")) {
        row.require("normal boiling point"); // the density is that at this temperature or at 298.15 K
    }
    compound.idealGas = readHeatCapacity(row);
    return compound;
}

} // namespace

void readCompounds(std::span<const Row> rows, Catalogue& catalogue) {
    const Columns columns{rows.front(), knownColumns()};
    requireColumns(columns);
    const std::span<const Row> body = rows.subspan(1);
    if (body.empty()) {
        throw DefinitionError{rows.front().line, "the table of compounds is empty"};
    }
    for (const Row& cells : body) {
        columns.requireFitting(cells);
        const CompoundRow row{columns, cells};
        const Compound compound = readCompound(row, catalogue);
        for (std::size_t i = 0; i < catalogue.compounds.size(); ++i) {
            const Compound& other = catalogue.compounds[i];
            const std::string where = " is already in line " + std::to_string(body[i].line);
            if (isSameName(compound.name, other.name)) {
                row.fail("the compound " + quoted(compound.name) + where);
            }
            if (!compound.cas.empty() && compound.cas == other.cas) {
                row.fail("the CAS number " + quoted(compound.cas) + where);
            }
        }
        if (catalogue.compounds.size() == mostCompounds) {
            row.fail("there are more than " + std::to_string(mostCompounds) + " compounds");
        }
        catalogue.compounds.push_back(compound);
    }
}

} // namespace peng_robinson
