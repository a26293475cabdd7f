#include "src/udf/phase_equilibrium.h"

#include "src/foundation/missing.h"
#include "src/foundation/range_value.h"
#include "src/foundation/text.h"
#include "src/udf/arguments.h"
#include "src/udf/equilibrium_table.h"
#include "src/udf/layout.h"

namespace quorvane::udf {

namespace {

// What stands in cells that have no number: an empty text, or what the user asked for.
com::variant readFiller(const VARIANT& argument) {
    const VARIANT given = withoutReference(argument);
    if (!isOmitted(given)) {
        const ArrayVariant resolved = resolveRangeValue(given);
        const bool isSingle = (resolved.value.vt & VT_ARRAY) == 0 && resolved.value.vt != VT_DISPATCH &&
                              resolved.value.vt != VT_UNKNOWN;
        auto filler = isSingle ? com::copyIfPossible(resolved.value) : std::nullopt;
        if (!filler) {
            throw CWStrException{L"Invalid value for noNumber - expected a single value"};
        }
        if (!resolved.isEmpty()) {
            return std::move(*filler);
        }
    }
    return com::variant{com::makeBstr({})};
}

EquilibriumOptions readOptions(const VARIANT& argument) {
    const VARIANT given = withoutReference(argument);
    if (isOmitted(given)) {
        return {};
    }
    const ArrayVariant resolved = resolveRangeValue(given);
    if (resolved.isEmpty()) {
        return {};
    }
    if (resolved.value.vt != VT_BSTR) {
        throw CWStrException{L"Unexpected value for options; expected a string consisting of comma separated "
                             L"values of zero or more "
                             L"'overallResults', 'noPhaseResults', 'noTemperature', 'noPressure', "
                             L"'noPhaseFraction', 'noComposition', "
                             L"'normal', 'retrograde', or one or more property names"};
    }
    return parseEquilibriumOptions(com::viewOf(resolved.value.bstrVal));
}

std::size_t valuesOf(const ExtraProperty& extra, std::size_t compoundCount) {
    return extra.info->rank == 0 ? 1 : compoundCount;
}

// A sum over phases means something for these only; the rest of the properties have no value for the mixture.
bool hasOverallValue(const ExtraProperty& extra) {
    return (extra.info->rank == 0 && extra.info->extensive && extra.info->overall) ||
           matchesKeyword(extra.name, L"fugacity");
}

std::vector<double> phaseExtraValues(PropertyPackage& package, const EquilibriumOptions& options, BSTR label,
                                     const EquilibriumRow& phase, bool isMass) {
    std::vector<double> values;
    values.reserve(phase.extra.size());
    for (const ExtraProperty& extra : options.extraProperties) {
        const com::unique_bstr name = com::makeBstr(extra.name);
        const std::vector<double>& result =
            package.calcSinglePhaseProperty(name.get(), label, phase.temperature, phase.pressure,
                                            phase.composition, isMass, *extra.info, isMass);
        if (result.size() != valuesOf(extra, phase.composition.size())) {
            throw CWStrException{L"Unexpected property result, invalid size"};
        }
        values.insert(values.end(), result.begin(), result.end());
    }
    return values;
}

std::vector<double> overallExtraValues(const EquilibriumResults& results, const EquilibriumOptions& options) {
    std::vector<double> overall;
    overall.reserve(results.phases.empty() ? 0 : results.phases.front().extra.size());
    for (const ExtraProperty& extra : options.extraProperties) {
        const std::size_t count = valuesOf(extra, results.overall.composition.size());
        for (std::size_t i = 0; i < count; ++i) {
            double sum = 0.0;
            bool known = hasOverallValue(extra);
            for (const EquilibriumRow& phase : results.phases) {
                if (phase.present) {
                    const double value = phase.extra[overall.size()];
                    known = known && !isMissing(value);
                    sum += phase.fraction * value;
                }
            }
            overall.push_back(known ? sum : missingNumber);
        }
    }
    return overall;
}

// The package's phase records are overwritten by the property calculations that follow, hence the copies.
EquilibriumResults copyResults(const std::vector<PhaseResult>& phases, std::size_t extraValues) {
    EquilibriumResults results;
    results.phases.reserve(phases.size());
    for (const PhaseResult& phase : phases) {
        EquilibriumRow& row = results.phases.emplace_back();
        row = {phase.present,  phase.temperature,        phase.pressure,
               phase.fraction, phase.composition.values, std::vector<double>(extraValues, missingNumber)};
    }
    return results;
}

} // namespace

void phaseEquilibrium(Session& session, const PhaseEquilibriumArguments& arguments, VARIANT& result) {
    requireText(arguments.condition1, L"Empty string is not valid for condition 1 name");
    requireText(arguments.condition2, L"Empty string is not valid for condition 2 name");
    const bool isMass = readBasis(arguments.basis);
    if (isMissing(arguments.condition1Value)) {
        throw CWStrException{L"Condition 1 not specified"};
    }
    if (isMissing(arguments.condition2Value)) {
        throw CWStrException{L"Condition 2 not specified"};
    }
    const com::variant filler = readFiller(arguments.noNumber);
    const std::shared_ptr<PropertyPackage> package = readPackage(session, arguments.packageName);
    package->ensureMaterial();
    const bool normalize = readFlag(arguments.normalizeComposition, L"normalizeComposition", true);
    const Reals composition{session, arguments.overallComposition, normalize};
    requireComposition(composition.values(), *package, L"overall composition");
    const EquilibriumOptions options = readOptions(arguments.options);
    if (!options.phaseResults && !options.overallResults) {
        throw CWStrException{L"Either overall phase or phases must be included; no output"};
    }

    const com::unique_bstr solutionType = com::makeBstr(options.solutionType);
    double overallT = missingNumber;
    double overallP = missingNumber;
    std::size_t extraValues = 0;
    for (const ExtraProperty& extra : options.extraProperties) {
        extraValues += valuesOf(extra, composition.size());
    }
    EquilibriumResults results = copyResults(
        package->calcEquilibrium({arguments.condition1, arguments.condition1Value},
                                 {arguments.condition2, arguments.condition2Value}, solutionType.get(),
                                 composition.values(), isMass, overallT, overallP),
        extraValues);
    results.overall = {true, overallT, overallP, 1.0, composition.values(), {}};

    ArrayVariant labels = package->phaseLabels().copy();
    requireVector(labels, VT_BSTR, {});
    if (static_cast<std::size_t>(labels.count) != results.phases.size()) {
        throw CWStrException{changedMeanwhile};
    }
    for (std::size_t i = 0; i < results.phases.size() && !options.extraProperties.empty(); ++i) {
        EquilibriumRow& phase = results.phases[i];
        if (phase.present) {
            phase.extra = phaseExtraValues(*package, options, labels.elements<BSTR>()[i], phase, isMass);
        }
    }
    results.overall.extra = overallExtraValues(results, options);
    layOutEquilibrium(results, options, filler, readOrientation(arguments.orientation, true))
        .handOver(&result);
}

} // namespace quorvane::udf
