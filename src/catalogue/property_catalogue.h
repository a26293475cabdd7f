// The property catalogue: every CAPE-OPEN 1.1 property name that the system knows, with its units on mole and
// mass basis, its kind, its shape, and how its value changes between the bases. Built once, on first use;
// read-only afterwards. Derivatives (suffixes .Dtemperature, .Dpressure, .DmolFraction, .Dmoles) are entries
// like any other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quorvane {

// The values are those of the published type library.
enum EnumPropertyType : std::int32_t {
    PropType_Temperature = 0,
    PropType_Pressure = 1,
    PropType_Fraction = 2,
    PropType_PhaseFraction = 3,
    PropType_VaporFraction = 4,
    PropType_StringConstant = 5,
    PropType_RealConstant = 6,
    PropType_TemperatureDependent = 7,
    PropType_SinglePhase = 8,
    PropType_TwoPhase = 9,
};

enum EnumDerivativeType : std::int32_t {
    Derivative_None = 0,
    Derivative_Temperature = 1,
    Derivative_Pressure = 2,
    Derivative_MolFraction = 3,
    Derivative_MoleNumber = 4,
};

struct PropertyInfo {
    const wchar_t* propName; ///< as registered, letter case kept; an alias is registered under its own name
    const wchar_t* unitMole; ///< null for dimensionless and text properties
    const wchar_t* unitMass; ///< null where unitMole is
    EnumDerivativeType derivType;
    EnumPropertyType propType;
    std::int32_t
        moleConversion; ///< 1: per mole (J/mol); -1: moles per something (mol/m3); 0: the same on both bases
    std::int32_t
        rank; ///< compound dimensions of the value: 0 scalar, 1 per compound, 2 per pair of compounds
    bool extensive;
    bool overall; ///< may be given for the whole mixture, and so serve as an equilibrium condition
};

class PropertyCatalogue {
  public:
    PropertyCatalogue();
    PropertyCatalogue(const PropertyCatalogue&) = delete;
    PropertyCatalogue& operator=(const PropertyCatalogue&) = delete;

    /// The entry of `name` in any letter case (A-Z); null when there is none. Entries live as long as the
    /// catalogue.
    const PropertyInfo* find(std::wstring_view name) const noexcept;

    std::size_t size() const noexcept { return entries_.size(); }

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view name) const noexcept;
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(std::wstring_view a, std::wstring_view b) const noexcept;
    };

    const wchar_t* keep(std::wstring text);
    const wchar_t* keepMassUnit(const wchar_t* unitMole);
    const wchar_t* keepDerivativeUnit(const wchar_t* unit, std::wstring_view suffix);
    void add(const PropertyInfo& entry);
    void addDerivatives(const PropertyInfo& base);

    std::deque<std::wstring> pool_; ///< owns the computed names and units
    std::unordered_map<std::wstring_view, PropertyInfo, Hash, Equal> entries_;
};

/// The single catalogue, built on the first call.
const PropertyCatalogue& catalogue();

/// The entry of `name`. Throws CWStrException "Property name not specified" for null and WStrException
/// "Invalid/unknown property ..." for a name that is not in the catalogue.
const PropertyInfo& lookupProperty(const wchar_t* name);

/// Every `mol` of `unit`, from the left, replaced by `kg`.
std::wstring massUnitOf(std::wstring_view unit);

/// `unit` divided once more by the unit in `suffix` ("/K", "/Pa", "/mol"): the first occurrence of the suffix
/// gets the exponent 2, otherwise the suffix is appended. A null unit gives the suffix itself.
std::wstring derivativeUnit(const wchar_t* unit, std::wstring_view suffix);

} // namespace quorvane
