#include "packages/peng_robinson/definition/definition.h"

#include "packages/peng_robinson/definition/cells.h"
#include "packages/peng_robinson/definition/compound_rows.h"

#include <algorithm>
#include <array>
#include <map>
#include <span>

namespace peng_robinson {
namespace {

/// Rows of the file below a line [name], in the order in which they are read whatever their order in the
/// file.
struct Section {
    std::string_view name;
    void (*read)(std::span<const Row>, Catalogue&);
    bool isRequired;
};

struct Constant {
    std::string_view name;
    double eos::EquationConstants::*member;
    Limits limits;
};
constexpr Constant constants[] = {
    {"gas constant", &eos::EquationConstants::R, {8.3, 8.33, "J/(mol K)"}},
    {"omega a", &eos::EquationConstants::omegaA, {0.4, 0.5, {}}},
    {"omega b", &eos::EquationConstants::omegaB, {0.07, 0.09, {}}},
};

void readSetting(const Row& row, Catalogue& catalogue) {
    const std::string& key = row.cells[0];
    if (row.cells.size() != 2) {
        throw DefinitionError{row.line,
                              "a line of [package] has a name and a value; put a text with a separator in "
                              "quotes"};
    }
    if (isSameName(key, "description")) {
        catalogue.description = row.cells[1];
        return;
    }
    for (const Constant& constant : constants) {
        if (isSameName(key, constant.name)) {
            catalogue.constants.*constant.member =
                readNumber(row.cells[1], constant.name, constant.limits, row.line);
            return;
        }
    }
    throw DefinitionError{row.line, quoted(key) +
                                        " is no setting of a package; settings are description, gas "
                                        "constant, omega a and omega b"};
}

void readPackage(std::span<const Row> rows, Catalogue& catalogue) {
    for (const Row& row : rows) {
        const auto isSame = [&row](const Row& other) { return isSameName(other.cells[0], row.cells[0]); };
        const auto first = std::ranges::find_if(rows, isSame);
        if (first->line != row.line) {
            throw DefinitionError{row.line, quoted(row.cells[0]) + " is already in line " +
                                                std::to_string(first->line)};
        }
        readSetting(row, catalogue);
    }
}

std::size_t readPartner(const Columns& columns, const Row& row, std::string_view column,
                        const Catalogue& catalogue) {
    const std::string name = columns.cell(row, column);
    const std::optional<std::size_t> found = catalogue.find(name);
    if (!found) {
        throw DefinitionError{row.line, quoted(name) + " is not in the table of compounds"};
    }
    return *found;
}

void readParameters(std::span<const Row> rows, Catalogue& catalogue) {
    constexpr std::string_view first = "compound 1", second = "compound 2", value = "k";
    const Columns columns{rows.front(), {first, second, value}};
    for (const std::string_view column : {first, second, value}) {
        columns.require(column);
    }
    std::map<std::pair<std::size_t, std::size_t>, std::size_t> lines;
    for (const Row& row : rows.subspan(1)) {
        columns.requireFitting(row);
        const std::size_t i = readPartner(columns, row, first, catalogue);
        const std::size_t j = readPartner(columns, row, second, catalogue);
        if (i == j) {
            throw DefinitionError{row.line, "a compound has no binary parameter with itself"};
        }
        const auto [known, isNew] = lines.emplace(std::pair{std::min(i, j), std::max(i, j)}, row.line);
        if (!isNew) {
            throw DefinitionError{row.line, "the parameter of " + quoted(catalogue.compounds[i].name) +
                                                " and " + quoted(catalogue.compounds[j].name) +
                                                " is already in line " + std::to_string(known->second)};
        }
        catalogue.k.set(i, j,
                        readNumber(columns.cell(row, value), "binary parameter",
                                   {lowestInteraction, highestInteraction, {}}, row.line));
    }
}

constexpr std::array sections{
    Section{"[package]", readPackage, false},
    Section{"[compounds]", readCompounds, true},
    Section{"[binary parameters]", readParameters, false},
};

const Section& sectionOf(const Row& row) {
    const auto found = std::ranges::find_if(
        sections, [&row](const Section& section) { return isSameName(section.name, row.cells[0]); });
    if (found == sections.end() || row.cells.size() > 1) {
        throw DefinitionError{row.line,
                              "the section " + row.cells[0] +
                                  " is unknown; sections are [package], [compounds] and [binary parameters]"};
    }
    return *found;
}

bool opensSection(const Row& row) { return row.cells[0].starts_with('['); }

std::map<const Section*, std::span<const Row>> split(std::span<const Row> rows) {
    std::map<const Section*, std::span<const Row>> result;
    while (!rows.empty()) {
        const Row& opening = rows.front();
        if (!opensSection(opening)) {
            throw DefinitionError{opening.line,
                                  "the line stands before the first section; begin with [package] or "
                                  "[compounds]"};
        }
        const Section& section = sectionOf(opening);
        const auto end = std::find_if(rows.begin() + 1, rows.end(), opensSection);
        if (!result.emplace(&section, std::span{rows.begin() + 1, end}).second) {
            throw DefinitionError{opening.line,
                                  "the section " + std::string{section.name} + " is there twice"};
        }
        rows = {end, rows.end()};
    }
    return result;
}

} // namespace

std::shared_ptr<const Catalogue> readDefinition(std::string_view text, std::string name) {
    if (text.size() > largestDefinition) {
        throw DefinitionError{0, "the file is larger than 1 MB"};
    }
    const std::vector<Row> rows = readRows(text);
    const auto found = split(rows);
    auto catalogue = std::make_shared<Catalogue>();
    catalogue->origin = std::move(name);
    for (const Section& section : sections) {
        const auto content = found.find(&section);
        const bool isEmpty = content == found.end() || content->second.empty();
        if (isEmpty && section.isRequired) {
            throw DefinitionError{0, "the file has no section " + std::string{section.name}};
        }
        if (!isEmpty) {
            section.read(content->second, *catalogue);
        }
        if (catalogue->k.size() != catalogue->compounds.size()) {
            catalogue->k = eos::InteractionMatrix{catalogue->compounds.size()};
        }
    }
    return catalogue;
}

} // namespace peng_robinson
