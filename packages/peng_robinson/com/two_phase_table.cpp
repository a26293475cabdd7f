#include "packages/peng_robinson/com/two_phase_table.h"

#include "packages/peng_robinson/com/property_name.h"
#include "packages/peng_robinson/com/values.h"

namespace peng_robinson {
namespace {

struct Row {
    std::wstring_view name;
    std::wstring_view alias; ///< the plural that some clients use; understood but not listed
    eos::TwoPhaseProperty property;
};
constexpr Row rows[] = {
    {L"kvalue", L"kvalues", eos::TwoPhaseProperty::kValue},
    {L"logKvalue", L"logKvalues", eos::TwoPhaseProperty::logKValue},
    {L"surfaceTension", {}, eos::TwoPhaseProperty::surfaceTension},
};

} // namespace

std::optional<TwoPhaseName> findTwoPhaseProperty(std::wstring_view text) noexcept {
    if (const auto name = readPropertyName(text)) {
        for (const Row& row : rows) {
            if (isSameName(row.name, name->base) ||
                (!row.alias.empty() && isSameName(row.alias, name->base))) {
                return TwoPhaseName{row.property, name->derivative};
            }
        }
    }
    return std::nullopt;
}

std::vector<std::wstring> twoPhasePropertyNames() {
    std::vector<std::wstring> names;
    for (const Row& row : rows) {
        for (const DerivativeName& derivative : derivativeNames) {
            names.push_back(std::wstring{row.name}.append(derivative.suffix));
        }
    }
    return names;
}

} // namespace peng_robinson
