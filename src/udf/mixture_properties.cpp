#include "src/udf/mixture_properties.h"

#include "src/foundation/missing.h"
#include "src/foundation/range_value.h"
#include "src/foundation/text.h"
#include "src/udf/arguments.h"
#include "src/udf/layout.h"

namespace quorvane::udf {

namespace {

// An omitted number arrives as the lowest finite double.
void requirePositive(double value, const wchar_t* missing, const wchar_t* notPositive) {
    if (isMissing(value)) {
        throw CWStrException{missing};
    }
    if (!(value > 0.0)) {
        throw CWStrException{notPositive};
    }
}

void requireConditions(double T, double P) {
    requirePositive(T, L"Temperature not specified", L"Temperature must be positive");
    requirePositive(P, L"Pressure not specified", L"Pressure must be positive");
}

bool isCompositionDerivative(const PropertyInfo& info) noexcept {
    return info.derivType == Derivative_MolFraction || info.derivType == Derivative_MoleNumber;
}

[[noreturn]] void throwInvalidDerivativePhase() {
    // "(1)" for phase 2 is how users have always been shown this message.
    throw CWStrException{
        L"Invalid value for compositionDerivativePhase - expected \"Both\" (default,0), \"Phase 1\" (1), "
        L"\"Phase 2\" (1) or one of the two specified phase names"};
}

TwoPhaseDerivatives readDerivativePhase(const VARIANT& argument, BSTR phase1, BSTR phase2) {
    const VARIANT given = withoutReference(argument);
    if (isOmitted(given)) {
        return TwoPhaseDerivatives_Both;
    }
    const ArrayVariant resolved = resolveRangeValue(given);
    if (resolved.isEmpty()) {
        return TwoPhaseDerivatives_Both;
    }
    if (resolved.value.vt == VT_BSTR) {
        const BSTR text = resolved.value.bstrVal;
        constexpr const wchar_t* words[] = {L"both", L"phase 1", L"phase 2"};
        for (int word = TwoPhaseDerivatives_Both; word <= TwoPhaseDerivatives_Phase2; ++word) {
            if (matchesKeyword(com::viewOf(text), words[word])) {
                return static_cast<TwoPhaseDerivatives>(word);
            }
        }
        if (equalsNoCase(text, phase1)) {
            return TwoPhaseDerivatives_Phase1;
        }
        if (equalsNoCase(text, phase2)) {
            return TwoPhaseDerivatives_Phase2;
        }
        throwInvalidDerivativePhase();
    }
    const auto number = com::convert(resolved.value, VT_I4);
    if (!number || number->lVal < TwoPhaseDerivatives_Both || number->lVal > TwoPhaseDerivatives_Phase2) {
        throwInvalidDerivativePhase();
    }
    return static_cast<TwoPhaseDerivatives>(number->lVal);
}

// `blocks` square blocks of n x n values, each block pair by pair, side by side.
ArrayVariant matrix(std::span<const double> values, std::size_t n, std::size_t blocks, bool transposed) {
    const std::size_t rows = n;
    const std::size_t columns = n * blocks;
    ArrayVariant result;
    const auto r = static_cast<std::int32_t>(rows);
    const auto c = static_cast<std::int32_t>(columns);
    result.createMatrix(transposed ? c : r, transposed ? r : c, VT_R8);
    const auto cells = result.elements<double>();
    // A cell's neighbours in a row and in a column of the result are that far away.
    const std::size_t nextColumn = transposed ? 1 : rows;
    const std::size_t nextRow = transposed ? columns : 1;
    auto value = values.begin();
    for (std::size_t block = 0; block < blocks; ++block) {
        for (std::size_t row = 0; row < rows; ++row) {
            std::size_t at = row * nextRow + block * n * nextColumn;
            for (std::size_t column = 0; column < n; ++column, at += nextColumn) {
                cells[at] = *value++;
            }
        }
    }
    return result;
}

void layOut(std::span<const double> values, const PropertyInfo& info, std::size_t compounds,
            const VARIANT& orientation, const VARIANT& transposed, VARIANT& result) {
    if (values.size() == 1) {
        result = com::variant{values.front()}.release();
        return;
    }
    const bool isMatrix = info.rank == 2;
    const PropertyOrientation direction = readOrientation(orientation, isMatrix);
    const bool exchange = isMatrix && readFlag(transposed, L"transposed", false);
    const std::size_t square = compounds * compounds;
    ArrayVariant laidOut;
    if (direction == Orientation_Matrix && isMatrix && values.size() % square == 0) {
        laidOut = matrix(values, compounds, values.size() / square, exchange);
    } else if (direction == Orientation_Vertical) {
        laidOut = shapeVector(values, direction);
    } else {
        laidOut.createVector(static_cast<std::int32_t>(values.size()), VT_R8);
        std::ranges::copy(values, laidOut.elements<double>().begin());
    }
    laidOut.handOver(&result);
}

} // namespace

void mixtureProperty(Session& session, const MixturePropertyArguments& arguments, VARIANT& result) {
    requireText(arguments.propertyName, L"Empty string is not valid for property name");
    requireText(arguments.phaseName, L"Empty string is not valid for phase name");
    const bool resultIsMass = readBasis(arguments.propertyBasis);
    const bool compositionIsMass = readBasis(arguments.compositionBasis);
    requireConditions(arguments.T, arguments.P);
    const std::shared_ptr<PropertyPackage> package = readPackage(session, arguments.packageName);
    const bool normalize = readFlag(arguments.normalizeComposition, L"normalizeComposition", true);
    const Reals composition{session, arguments.composition, normalize};
    package->ensureMaterial();
    requireComposition(composition.values(), *package, L"composition");
    const PropertyInfo& info = lookupProperty(arguments.propertyName);
    const Reals values{session, package->calcSinglePhaseProperty(
                                    arguments.propertyName, arguments.phaseName, arguments.T, arguments.P,
                                    composition.values(), compositionIsMass, info, resultIsMass)};
    layOut(values.values(), info, composition.size(), arguments.orientation, arguments.transposed, result);
}

void twoPhaseProperty(Session& session, const TwoPhasePropertyArguments& arguments, VARIANT& result) {
    requireText(arguments.propertyName, L"Empty string is not valid for property name");
    requireText(arguments.phase1Name, L"Empty string is not valid for phase name");
    requireText(arguments.phase2Name, L"Empty string is not valid for phase name");
    if (equalsNoCase(arguments.phase1Name, arguments.phase2Name)) {
        throw CWStrException{L"Phases cannot be equal"};
    }
    const bool compositionIsMass = readBasis(arguments.compositionBasis);
    requireConditions(arguments.T, arguments.P);
    const std::shared_ptr<PropertyPackage> package = readPackage(session, arguments.packageName);
    const bool normalize = readFlag(arguments.normalizeComposition, L"normalizeComposition", true);
    const Reals composition1{session, arguments.phase1Composition, normalize};
    package->loadCompounds();
    requireComposition(composition1.values(), *package, L"phase 1 composition");
    const Reals composition2{session, arguments.phase2Composition, normalize};
    requireComposition(composition2.values(), *package, L"phase 2 composition");
    const PropertyInfo& info = lookupProperty(arguments.propertyName);
    const Reals all{session, package->calcTwoPhaseProperty(arguments.propertyName, arguments.phase1Name,
                                                           arguments.phase2Name, arguments.T, arguments.P,
                                                           composition1.values(), composition2.values(),
                                                           compositionIsMass, info)};
    std::span<const double> values{all.values()};
    if (isCompositionDerivative(info)) {
        const std::size_t half = values.size() / 2;
        switch (readDerivativePhase(arguments.compositionDerivativePhase, arguments.phase1Name,
                                    arguments.phase2Name)) {
        case TwoPhaseDerivatives_Phase1:
            values = values.first(half);
            break;
        case TwoPhaseDerivatives_Phase2:
            values = values.subspan(half);
            break;
        default:
            break;
        }
    }
    layOut(values, info, composition1.size(), arguments.orientation, arguments.transposed, result);
}

} // namespace quorvane::udf
