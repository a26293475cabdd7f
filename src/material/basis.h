// Mole and mass basis, as CAPE-OPEN results and the material carry them.
#pragma once

#include <cstdint>
#include <string_view>

namespace quorvane {

enum Basis : std::int32_t {
    Basis_Undefined = 0,
    Basis_Mole = 1,
    Basis_Mass = 2,
};

/// The basis for a worksheet's flag.
constexpr Basis basisOf(bool isMass) noexcept { return isMass ? Basis_Mass : Basis_Mole; }

/// Null or empty: undefined; "mole" and "mass" with ASCII capitals folded. Throws CWStrException "invalid
/// basis" otherwise.
Basis parseBasis(std::wstring_view text);

/// How a composition goes from one basis to the other: 0 stays as it is, -1 (mole to mass) is multiplied by
/// molecular weights, +1 (mass to mole) is divided by them. Throws CWStrException "Specified basis does not
/// apply" when one side alone is undefined.
std::int32_t basisExponent(std::int32_t from, std::int32_t to);

} // namespace quorvane
