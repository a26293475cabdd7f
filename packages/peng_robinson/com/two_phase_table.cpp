#include "packages/peng_robinson/com/two_phase_table.h"

#include "packages/peng_robinson/com/values.h"

#include <cmath>

namespace peng_robinson {
namespace {

using eos::PhaseState;

double lnK(const PhaseState& first, const PhaseState& second, std::size_t i) {
    return second.lnPhi[i] - first.lnPhi[i];
}

template <auto F>
std::vector<double> perCompound(const PhaseState& first, const PhaseState& second) {
    std::vector<double> values(first.lnPhi.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = F(first, second, i);
    }
    return values;
}

double K(const PhaseState& first, const PhaseState& second, std::size_t i) {
    return std::exp(lnK(first, second, i));
}
double lnKByTemperature(const PhaseState& first, const PhaseState& second, std::size_t i) {
    return second.dlnPhi_dT[i] - first.dlnPhi_dT[i];
}
double lnKByPressure(const PhaseState& first, const PhaseState& second, std::size_t i) {
    return second.dlnPhi_dP[i] - first.dlnPhi_dP[i];
}
double kByTemperature(const PhaseState& first, const PhaseState& second, std::size_t i) {
    return K(first, second, i) * lnKByTemperature(first, second, i);
}
double kByPressure(const PhaseState& first, const PhaseState& second, std::size_t i) {
    return K(first, second, i) * lnKByPressure(first, second, i);
}

struct Row {
    std::wstring_view name;
    std::wstring_view alias; ///< the plural that some clients use; understood but not listed
    TwoPhaseValues values;
};
constexpr Row rows[] = {
    {L"kvalue", L"kvalues", perCompound<K>},
    {L"kvalue.Dtemperature", L"kvalues.Dtemperature", perCompound<kByTemperature>},
    {L"kvalue.Dpressure", L"kvalues.Dpressure", perCompound<kByPressure>},
    {L"logKvalue", L"logKvalues", perCompound<lnK>},
    {L"logKvalue.Dtemperature", L"logKvalues.Dtemperature", perCompound<lnKByTemperature>},
    {L"logKvalue.Dpressure", L"logKvalues.Dpressure", perCompound<lnKByPressure>},
};

} // namespace

TwoPhaseValues findTwoPhaseProperty(std::wstring_view name) {
    for (const Row& row : rows) {
        if (isSameName(row.name, name) || isSameName(row.alias, name)) {
            return row.values;
        }
    }
    return nullptr;
}

std::vector<std::wstring> twoPhasePropertyNames() {
    std::vector<std::wstring> names;
    for (const Row& row : rows) {
        names.emplace_back(row.name);
    }
    return names;
}

} // namespace peng_robinson
