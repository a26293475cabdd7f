#include "src/udf/arguments.h"

#include "src/foundation/range_value.h"
#include "src/foundation/real_vector.h"
#include "src/foundation/text.h"

#include <cmath>
#include <functional>
#include <numeric>

namespace quorvane::udf {

namespace {

// The words and messages in which the compound reader and the phase reader differ.
struct SelectionTexts {
    const wchar_t* emptyName;
    const wchar_t* unknownName;
    const wchar_t* badValue;
};

constexpr SelectionTexts compoundTexts{L"Empty string is invalid for compound name", L"Invalid compound name",
                                       L"Invalid value for compound - expected compound name or 1-based "
                                       L"compound index (\"All\" or 0 for all compounds)"};

constexpr SelectionTexts phaseTexts{L"Empty string is invalid for phase name", L"Invalid phase name",
                                    L"Invalid value for phase - expected phase name or 1-based phase index"
                                    L" (\"All\" or 0 for all phases)"};

// Absolute, so that a number that a formula computed still counts as the whole number that was meant.
constexpr double indexTolerance = 1e-6;

// The 1-based number in `value`, 0 for all, or nothing when it is not a number from 0 to `count`.
std::optional<std::int32_t> selectedNumber(const VARIANT& value, std::int32_t count) {
    if (value.vt == VT_R8) {
        const double nearest = std::trunc(value.dblVal + 0.5);
        if (std::abs(value.dblVal - nearest) < indexTolerance && nearest >= 0.0 && nearest <= count) {
            return static_cast<std::int32_t>(nearest);
        }
        return std::nullopt;
    }
    const auto whole = com::convert(value, VT_I4);
    return whole && whole->lVal >= 0 && whole->lVal <= count ? std::optional{whole->lVal} : std::nullopt;
}

template <typename Find>
std::int32_t readSelection(const VARIANT& argument, std::int32_t count, const SelectionTexts& texts,
                           Find find) {
    const VARIANT given = withoutReference(argument);
    if (isOmitted(given)) {
        return selectAll;
    }
    const ArrayVariant resolved = resolveRangeValue(given);
    const VARIANT& value = resolved.value;
    if (value.vt == VT_EMPTY) {
        return selectAll;
    }
    if (value.vt == VT_BSTR) {
        if (value.bstrVal == nullptr) {
            throw CWStrException{texts.emptyName};
        }
        // The word "All" is looked up like any other name, although the message below mentions it: kept as
        // users know it.
        const std::optional<std::int32_t> position = find(value.bstrVal);
        if (!position) {
            throw CWStrException{texts.unknownName};
        }
        return *position;
    }
    const std::optional<std::int32_t> number = selectedNumber(value, count);
    if (!number) {
        throw CWStrException{texts.badValue};
    }
    return *number - 1;
}

} // namespace

void requireText(BSTR text, const wchar_t* message) {
    if (com::viewOf(text).empty()) {
        throw CWStrException{message};
    }
}

std::shared_ptr<PropertyPackage> readPackage(Session& session, BSTR name) {
    requireText(name, L"Empty string is not valid for package name");
    const PackageTable& table = session.currentWorkbook();
    const auto entry = table.find(com::viewOf(name));
    if (entry == table.end()) {
        throw CWStrException{L"Invalid package name"};
    }
    return entry->second;
}

bool readBasis(const VARIANT& argument) {
    const VARIANT value = withoutReference(argument);
    if (isOmitted(value) || value.vt == VT_EMPTY) {
        return false;
    }
    if (value.vt != VT_BSTR) {
        throw CWStrException{L"Invalid value for basis - expected string value"};
    }
    const std::wstring_view text = com::viewOf(value.bstrVal);
    if (text.empty() || matchesKeyword(text, L"mole")) {
        return false;
    }
    if (matchesKeyword(text, L"mass")) {
        return true;
    }
    throw WStrException{joined(L"Invalid basis \"", text, L"\"")};
}

std::int32_t readCompound(PropertyPackage& package, const VARIANT& argument) {
    package.loadCompounds();
    return readSelection(argument, package.compoundCount(), compoundTexts,
                         [&](const wchar_t* name) { return package.compoundIndex(name); });
}

std::int32_t readPhase(PropertyPackage& package, const VARIANT& argument) {
    package.loadPhases();
    return readSelection(argument, package.phaseCount(), phaseTexts,
                         [&](const wchar_t* name) { return package.phaseIndex(name); });
}

bool readFlag(const VARIANT& argument, const wchar_t* argumentName, bool defaultValue) {
    const VARIANT given = withoutReference(argument);
    if (isOmitted(given)) {
        return defaultValue;
    }
    const ArrayVariant resolved = resolveRangeValue(given);
    if (resolved.isEmpty()) {
        return defaultValue;
    }
    const auto truth = com::convert(resolved.value, VT_BOOL);
    if (!truth) {
        throw WStrException{joined(L"Invalid value for ", argumentName, L" - expected bool value")};
    }
    return truth->boolVal != VARIANT_FALSE;
}

Reals::Reals(Session& session, const VARIANT& argument, bool normalize)
    : session_{session}, values_{readRealVector(argument, session.lendReals())} {
    const double sum = std::accumulate(values_.begin(), values_.end(), 0.0);
    if (normalize && sum != 0.0 && std::isfinite(sum)) {
        for (double& value : values_) {
            value /= sum;
        }
    }
}

Reals::Reals(Session& session, const std::vector<double>& result)
    : session_{session}, values_{session.lendReals()} {
    values_.assign(result.begin(), result.end());
}

void requireComposition(const std::vector<double>& composition, const PropertyPackage& package,
                        const wchar_t* name) {
    if (composition.size() != static_cast<std::size_t>(package.compoundCount())) {
        throw WStrException{joined(L"Unexpected number of values for ", name)};
    }
}

} // namespace quorvane::udf
