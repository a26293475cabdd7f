// The two phases that the package knows.
#pragma once

#include "packages/peng_robinson/com/values.h"
#include "packages/peng_robinson/eos/peng_robinson.h"

#include <array>
#include <string>
#include <string_view>

namespace peng_robinson {

struct PhaseKind {
    std::wstring_view label;
    std::wstring_view stateOfAggregation;
    std::wstring_view description;
    eos::Root root;
};

inline constexpr std::array phaseKinds{
    PhaseKind{L"Vapor", L"Vapor", L"Vapor phase, also supercritical fluid", eos::Root::vapor},
    PhaseKind{L"Liquid", L"Liquid", L"Liquid phase", eos::Root::liquid},
};
inline constexpr const PhaseKind& vaporKind = phaseKinds[0];
inline constexpr const PhaseKind& liquidKind = phaseKinds[1];

/// The phase of that label, in any case; null for other labels.
inline const PhaseKind* findPhase(std::wstring_view label) noexcept {
    for (const PhaseKind& phase : phaseKinds) {
        if (isSameName(phase.label, label)) {
            return &phase;
        }
    }
    return nullptr;
}

/// As findPhase(). Throws ArgumentError for other labels.
inline const PhaseKind& requirePhase(std::wstring_view label, short position) {
    if (const PhaseKind* phase = findPhase(label)) {
        return *phase;
    }
    throw ArgumentError{position, L"\"" + std::wstring{label} +
                                      L"\" is not a phase of this package; its phases are " +
                                      L"Vapor and Liquid"};
}

} // namespace peng_robinson
