// MaterialOwner: what a material asks the property package that owns it. All lists are those that the package
// read from the CAPE-OPEN component and stay as they are while the material is in use.
#pragma once

#include "src/foundation/array_variant.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quorvane {

/// The six compound lists in the order of ICapeThermoCompounds::GetCompoundList.
enum CompoundList : std::size_t {
    CompoundList_Ids,
    CompoundList_Formulae,
    CompoundList_Names,
    CompoundList_BoilingPoints,    ///< K
    CompoundList_MolecularWeights, ///< g/mol, as the component gave them
    CompoundList_CasNumbers,
    CompoundList_Count,
};

class MaterialOwner {
  public:
    virtual std::int32_t compoundCount() const noexcept = 0;
    virtual const ArrayVariant& compoundList(CompoundList which) const noexcept = 0;

    virtual const std::vector<double>& molecularWeights() const noexcept = 0; ///< kg/mol; NaN where missing
    virtual const std::vector<double>&
    inverseMolecularWeights() const noexcept = 0; ///< mol/kg; NaN where missing
    virtual bool missingMolecularWeight() const noexcept = 0;

    virtual std::int32_t phaseCount() const noexcept = 0;
    virtual const ArrayVariant& phaseLabels() const noexcept = 0;
    virtual std::optional<std::int32_t> phaseIndex(const wchar_t* label) const = 0;
    /// Whether the phase with this label is a vapour.
    virtual bool isVapor(const wchar_t* label) const = 0;

  protected:
    MaterialOwner() = default;
    MaterialOwner(const MaterialOwner&) = default;
    MaterialOwner& operator=(const MaterialOwner&) = default;
    ~MaterialOwner() = default;
};

} // namespace quorvane
