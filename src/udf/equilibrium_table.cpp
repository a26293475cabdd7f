#include "src/udf/equilibrium_table.h"

#include "src/foundation/missing.h"

namespace quorvane::udf {

namespace {

enum class Quantities { all, withoutConditions };

// The quantities of one row as numbers; those of an absent phase are all missing.
std::vector<double> rowValues(const EquilibriumRow& row, const EquilibriumOptions& options,
                              Quantities which) {
    std::vector<double> values;
    values.reserve(3 + row.composition.size() + row.extra.size());
    if (which == Quantities::all && options.temperature) {
        values.push_back(row.temperature);
    }
    if (which == Quantities::all && options.pressure) {
        values.push_back(row.pressure);
    }
    if (options.phaseFraction) {
        values.push_back(row.fraction);
    }
    if (options.composition) {
        values.insert(values.end(), row.composition.begin(), row.composition.end());
    }
    values.insert(values.end(), row.extra.begin(), row.extra.end());
    if (!row.present) {
        values.assign(values.size(), missingNumber);
    }
    return values;
}

void fillCell(VARIANT& cell, double value, const VARIANT& filler) {
    cell = (isMissing(value) ? com::variant::copyOf(filler) : com::variant{value}).release();
}

ArrayVariant matrix(const EquilibriumResults& results, const EquilibriumOptions& options,
                    const VARIANT& filler) {
    std::vector<std::vector<double>> rows;
    rows.reserve(1 + results.phases.size());
    if (options.overallResults) {
        rows.push_back(rowValues(results.overall, options, Quantities::all));
    }
    if (options.phaseResults) {
        for (const EquilibriumRow& phase : results.phases) {
            rows.push_back(rowValues(phase, options, Quantities::all));
        }
    }
    const std::size_t rowCount = rows.size();
    const std::size_t columnCount = rows.empty() ? 0 : rows.front().size();
    ArrayVariant table;
    const auto r = static_cast<std::int32_t>(rowCount);
    const auto c = static_cast<std::int32_t>(columnCount);
    table.createMatrix(options.transpose ? c : r, options.transpose ? r : c, VT_VARIANT);
    const auto cells = table.elements<VARIANT>();
    for (std::size_t i = 0; i < rowCount; ++i) {
        for (std::size_t j = 0; j < columnCount; ++j) {
            const std::size_t at = options.transpose ? j + i * columnCount : i + j * rowCount;
            fillCell(cells[at], rows[i][j], filler);
        }
    }
    return table;
}

ArrayVariant list(const EquilibriumResults& results, const EquilibriumOptions& options, const VARIANT& filler,
                  bool vertical) {
    std::vector<double> values;
    if (options.temperature) {
        values.push_back(results.overall.temperature);
    }
    if (options.pressure) {
        values.push_back(results.overall.pressure);
    }
    if (options.overallResults) {
        for (const double value : results.overall.extra) {
            if (!isMissing(value)) {
                values.push_back(value);
            }
        }
    }
    if (options.phaseResults) {
        for (const EquilibriumRow& phase : results.phases) {
            const std::vector<double> block = rowValues(phase, options, Quantities::withoutConditions);
            values.insert(values.end(), block.begin(), block.end());
        }
    }
    ArrayVariant cells;
    const auto count = static_cast<std::int32_t>(values.size());
    if (vertical) {
        cells.createRowOrColumn(count, true, VT_VARIANT);
    } else {
        cells.createVector(count, VT_VARIANT);
    }
    const auto elements = cells.elements<VARIANT>();
    for (std::size_t i = 0; i < values.size(); ++i) {
        fillCell(elements[i], values[i], filler);
    }
    return cells;
}

} // namespace

ArrayVariant layOutEquilibrium(const EquilibriumResults& results, const EquilibriumOptions& options,
                               const VARIANT& filler, PropertyOrientation orientation) {
    ArrayVariant table = orientation == Orientation_Matrix
                             ? matrix(results, options, filler)
                             : list(results, options, filler, orientation == Orientation_Vertical);
    if (table.isEmpty()) {
        throw CWStrException{L"No results"};
    }
    table.unlock();
    return table;
}

} // namespace quorvane::udf
