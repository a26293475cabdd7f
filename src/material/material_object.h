// MaterialObject11: the CAPE-OPEN 1.1 material that the system hands to a property package. It is a request
// carrier, not a stream: before each call into the package the owner loads it with one calculation, the
// package reads the conditions and writes its results through ICapeThermoMaterial, and the owner reads the
// results out of the fields. Values that do not belong to the request in hand are ignored; malformed ones are
// refused with a precise message.
//
// A package may keep its reference longer than the owner lives: a material that has lost its owner refuses
// every call that would need it.
#pragma once

#include "src/catalogue/property_catalogue.h"
#include "src/material/basis.h"
#include "src/material/cape_open_base.h"
#include "src/material/material_owner.h"

namespace quorvane {

enum class CalculationMode : std::int32_t { SinglePhase = 0, TwoPhase = 1, Equilibrium = 2 };

/// Amounts or fractions, one per compound, with the basis that they are on.
struct Composition {
    std::vector<double> values;
    std::int32_t basis = Basis_Undefined;
};

/// One condition of an equilibrium; the name in lower case.
struct EquilibriumSpecification {
    std::wstring name;
    double value = 0.0;
    std::int32_t basis = Basis_Undefined;
};

/// What the package reported about one phase of an equilibrium. Temperature in K, pressure in Pa.
struct PhaseResult {
    bool present = false;
    double fraction = 0.0;
    std::int32_t fractionBasis = Basis_Undefined;
    Composition composition;
    double temperature = 0.0;
    double pressure = 0.0;
};

/// Amount of a composition in kg and in mol. The quotients throw CWStrException when there is nothing to
/// divide by.
struct CompositionTotals {
    double mass = 0.0;
    double moles = 0.0;

    double massPerMole() const;
    double molesPerMass() const;
};

class MaterialObject11 final
    : public com::implements<
          CAPEOPENBASE, com::RefusedDual<ICapeThermoMaterial>, com::RefusedDual<ICapeThermoCompounds>,
          com::RefusedDual<ICapeThermoEquilibriumRoutine>, com::RefusedDual<ICapeThermoPhases>,
          com::RefusedDual<ICapeThermoUniversalConstant>, com::RefusedDual<ICapeThermoPropertyRoutine>> {
  public:
    /// Sizes the compositions and phase results to `owner`, which must outlive the material's use or call
    /// forgetOwner.
    explicit MaterialObject11(const MaterialOwner& owner);

    // The owner's side: the request ...

    CalculationMode mode = CalculationMode::SinglePhase;
    double temperature = 0.0;  ///< K
    double pressure = 0.0;     ///< Pa
    std::wstring propertyName; ///< lower case, as are the phase labels
    std::wstring phase1;
    std::wstring phase2;
    const PropertyInfo* property = nullptr;
    Composition composition2;
    EquilibriumSpecification specifications[2];

    // ... and the package's results. An empty `result` after a property call means that no value arrived.

    std::vector<double> result;
    std::int32_t resultBasis = Basis_Undefined;
    std::vector<PhaseResult> phases; ///< one per package phase, in the package's order

    void setComposition(const std::vector<double>& values, std::int32_t basis);
    const Composition& composition() const noexcept { return composition1_; }
    /// Before an equilibrium: no phase is present, temperatures and pressures are NaN, and fractions and
    /// compositions have no basis, so that a value that the package does not report cannot be taken from the
    /// calculation before.
    void resetPhases() noexcept;

    /// Normalised composition on the other basis. The result refers to the input or to a buffer that the next
    /// conversion overwrites.
    const std::vector<double>& convertComposition(const std::vector<double>& values, std::int32_t from,
                                                  std::int32_t to);
    /// Total mass and moles of the first composition.
    const CompositionTotals& totals();
    /// Total mass and moles of any composition.
    CompositionTotals totalsOf(const Composition& composition) const;

    void forgetOwner() noexcept { owner_ = nullptr; }
    bool hasOwner() const noexcept { return owner_ != nullptr; }

    // ICapeThermoMaterial
    HRESULT STDMETHODCALLTYPE ClearAllProps() noexcept override;
    HRESULT STDMETHODCALLTYPE CopyFromMaterial(IDispatch** source) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateMaterial(IDispatch** material) noexcept override;
    HRESULT STDMETHODCALLTYPE GetOverallProp(BSTR name, BSTR basis, VARIANT* results) noexcept override;
    HRESULT STDMETHODCALLTYPE GetOverallTPFraction(double* T, double* P,
                                                   VARIANT* fractions) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPresentPhases(VARIANT* labels, VARIANT* status) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSinglePhaseProp(BSTR name, BSTR label, BSTR basis,
                                                 VARIANT* results) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTPFraction(BSTR label, double* T, double* P,
                                            VARIANT* fractions) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTwoPhaseProp(BSTR name, VARIANT labels, BSTR basis,
                                              VARIANT* results) noexcept override;
    HRESULT STDMETHODCALLTYPE SetOverallProp(BSTR name, BSTR basis, VARIANT values) noexcept override;
    HRESULT STDMETHODCALLTYPE SetPresentPhases(VARIANT labels, VARIANT status) noexcept override;
    HRESULT STDMETHODCALLTYPE SetSinglePhaseProp(BSTR name, BSTR label, BSTR basis,
                                                 VARIANT values) noexcept override;
    HRESULT STDMETHODCALLTYPE SetTwoPhaseProp(BSTR name, VARIANT labels, BSTR basis,
                                              VARIANT values) noexcept override;

    // ICapeThermoCompounds
    HRESULT STDMETHODCALLTYPE GetCompoundConstant(VARIANT properties, VARIANT ids,
                                                  VARIANT* values) noexcept override;
    HRESULT STDMETHODCALLTYPE GetCompoundList(VARIANT* ids, VARIANT* formulae, VARIANT* names,
                                              VARIANT* boilingPoints, VARIANT* molecularWeights,
                                              VARIANT* casNumbers) noexcept override;
    HRESULT STDMETHODCALLTYPE GetConstPropList(VARIANT* properties) noexcept override;
    HRESULT STDMETHODCALLTYPE GetNumCompounds(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPDependentProperty(VARIANT properties, double P, VARIANT ids,
                                                    VARIANT* values) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPDependentPropList(VARIANT* properties) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTDependentProperty(VARIANT properties, double T, VARIANT ids,
                                                    VARIANT* values) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTDependentPropList(VARIANT* properties) noexcept override;

    // ICapeThermoEquilibriumRoutine
    HRESULT STDMETHODCALLTYPE CalcEquilibrium(VARIANT first, VARIANT second,
                                              BSTR solutionType) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckEquilibriumSpec(VARIANT first, VARIANT second, BSTR solutionType,
                                                   VARIANT_BOOL* supported) noexcept override;

    // ICapeThermoPhases
    HRESULT STDMETHODCALLTYPE GetNumPhases(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPhaseInfo(BSTR label, BSTR attribute, VARIANT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPhaseList(VARIANT* labels, VARIANT* states,
                                           VARIANT* keyCompounds) noexcept override;

    // ICapeThermoUniversalConstant
    HRESULT STDMETHODCALLTYPE GetUniversalConstant(BSTR name, VARIANT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE GetUniversalConstantList(VARIANT* names) noexcept override;

    // ICapeThermoPropertyRoutine
    HRESULT STDMETHODCALLTYPE CalcAndGetLnPhi(BSTR label, double T, double P, VARIANT moles, INT flags,
                                              VARIANT* lnPhi, VARIANT* lnPhiDT, VARIANT* lnPhiDP,
                                              VARIANT* lnPhiDn) noexcept override;
    HRESULT STDMETHODCALLTYPE CalcSinglePhaseProp(VARIANT properties, BSTR label) noexcept override;
    HRESULT STDMETHODCALLTYPE CalcTwoPhaseProp(VARIANT properties, VARIANT labels) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckSinglePhasePropSpec(BSTR name, BSTR label,
                                                       VARIANT_BOOL* valid) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckTwoPhasePropSpec(BSTR name, VARIANT labels,
                                                    VARIANT_BOOL* valid) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSinglePhasePropList(VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTwoPhasePropList(VARIANT* names) noexcept override;

  private:
    const MaterialOwner& owner() const;
    bool isRequested(BSTR name) const noexcept;
    const Composition* compositionOf(BSTR label) const noexcept;
    double specificationValue(const EquilibriumSpecification& specification, Basis requested);
    com::variant singlePhaseValue(const PropertyInfo& info, BSTR label, Basis requested);
    com::variant equilibriumPhaseValue(const PropertyInfo& info, BSTR label, Basis requested) const;
    void requireMolecularWeight(std::size_t compound) const;
    std::size_t expectedValues() const;
    void storeRequestedProperty(BSTR label, BSTR basis, ArrayVariant& values);
    void storePhaseResult(const PropertyInfo* info, BSTR label, BSTR basis, ArrayVariant& values);

    const MaterialOwner* owner_;
    Composition composition1_;
    CompositionTotals totals_;
    ArrayVariant phaseStatus_;
    std::vector<double> conversionBuffer_;
};

} // namespace quorvane
