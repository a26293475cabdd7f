#include "tests/scripted_package/model.h"

#include <algorithm>
#include <cwchar>

namespace scripted {

namespace {

constexpr std::wstring_view suffixes[] = {L".Dtemperature", L".Dpressure", L".DmolFraction", L".Dmoles"};

// The derivative that a name asks for (0: none), and the name without its suffix.
int derivativeOf(std::wstring_view& name) {
    int derivative = 0;
    for (const std::wstring_view suffix : suffixes) {
        ++derivative;
        if (name.size() > suffix.size() && sameName(name.substr(name.size() - suffix.size()), suffix)) {
            name.remove_suffix(suffix.size());
            return derivative;
        }
    }
    return 0;
}

// 10 a + b for the compounds that an element of a value of this rank belongs to; the first compound's pairs
// come first.
double place(std::size_t element, int rank, std::size_t compounds) {
    switch (rank) {
    case 0:
        return 0.0;
    case 1:
        return 10.0 * static_cast<double>(element + 1);
    default: {
        const std::size_t a = element / compounds + 1;
        const std::size_t b = element % compounds + 1;
        return 10.0 * static_cast<double>(a) + static_cast<double>(b);
    }
    }
}

} // namespace

bool sameName(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && _wcsnicmp(a.data(), b.data(), a.size()) == 0;
}

int phaseNumber(const Model& model, std::wstring_view label) {
    const auto found =
        std::ranges::find_if(model.phases, [&](const Phase& phase) { return sameName(phase.label, label); });
    return found == model.phases.end() ? 0 : static_cast<int>(found - model.phases.begin()) + 1;
}

std::optional<Values> calculate(const Model& model, const std::vector<Property>& offered,
                                std::wstring_view property, int first, int second,
                                const Conditions& conditions) {
    for (const auto& [name, values] : model.calculated) {
        if (sameName(name, property)) {
            return values;
        }
    }
    const int derivative = derivativeOf(property);
    const auto found =
        std::ranges::find_if(offered, [&](const Property& entry) { return sameName(entry.name, property); });
    if (found == offered.end()) {
        return std::nullopt;
    }
    const bool perCompound = derivative >= 3;
    const int rank = found->rank + (perCompound ? 1 : 0);
    const std::size_t compounds = model.compounds.size();
    std::size_t count = 1;
    for (int i = 0; i < rank; ++i) {
        count *= compounds;
    }
    const double base = 100000.0 * derivative + 10000.0 * static_cast<double>(found - offered.begin() + 1) +
                        1000.0 * first + 100.0 * second + conditions.temperature / 1000.0 +
                        conditions.pressure / 1e9;
    Values result{found->hasBasis ? L"Mole" : L"", {}};
    const int halves = perCompound && second != 0 ? 2 : 1;
    for (int half = 0; half < halves; ++half) {
        for (std::size_t i = 0; i < count; ++i) {
            result.values.push_back(base + place(i, rank, compounds) + 5.0 * half);
        }
    }
    return result;
}

Flash split(const Model& model, const std::vector<double>& moleFractions, double vaporFraction,
            const Conditions& conditions) {
    Flash flash{{}, conditions.temperature, conditions.pressure};
    std::vector<double> vapor = moleFractions;
    std::vector<double> other = moleFractions;
    if (moleFractions.size() > 1) {
        const double shifted = 0.5 * std::min(moleFractions.front(), moleFractions.back());
        vapor.front() += shifted * (1.0 - vaporFraction);
        vapor.back() -= shifted * (1.0 - vaporFraction);
        other.front() -= shifted * vaporFraction;
        other.back() += shifted * vaporFraction;
    }
    bool isVapor = true;
    for (const Phase& phase : model.phases) {
        if (flash.phases.size() == 2) {
            break;
        }
        flash.phases.push_back({phase.label, isVapor ? vaporFraction : 1.0 - vaporFraction, L"Mole",
                                isVapor ? vapor : other, L"Mole", conditions.temperature,
                                conditions.pressure});
        isVapor = false;
    }
    return flash;
}

} // namespace scripted
