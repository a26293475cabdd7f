// PropertyPackage: one CAPE-OPEN 1.1 property package that a workbook uses, bound and initialised by the
// constructor and terminated by the destructor. It reads the package's compounds, phases and property lists
// once and keeps them, owns the material that the package works on, and runs its calculations. Used on
// Excel's thread only; held by shared pointers.
//
// A package may call back into the add-in while it works. Its own calculations do not nest: the second is
// refused; nor is a list asked for while it is being given. One that is edited in the middle of a
// calculation, or while it gives what is asked of it, fails that call.
//
// All failures are WException with the text for the user. A list that could not be read stays empty and is
// read again when asked for next.
#pragma once

#include "com/com_ptr.h"
#include "com/held_ptr.h"
#include "com/platform.h"
#include "src/foundation/name_index_map.h"
#include "src/material/material_object.h"
#include "src/package/unchanged.h"

#include <array>
#include <memory>
#include <quorvane_idl.h>
#include <string>
#include <vector>

namespace quorvane {

/// One condition of an equilibrium, as the user typed it: temperature in K, pressure in Pa, energies and the
/// like on the basis of the calculation, vaporFraction from 0 to 1.
struct EquilibriumCondition {
    BSTR name;
    double value;
};

class PropertyPackage final : public MaterialOwner {
  public:
    /// Creates and initialises the component. `managerGUID` is the class of the package (stand-alone) or of
    /// its manager; `savedState`, when not null, is positioned at the start of what the package saved before.
    PropertyPackage(std::wstring managerName, const GUID& managerGUID, CAPEOPENPackageManagerType managerType,
                    std::wstring packageName, IStream* savedState);
    PropertyPackage(const PropertyPackage&) = delete;
    PropertyPackage& operator=(const PropertyPackage&) = delete;
    ~PropertyPackage();

    const std::wstring& managerName() const noexcept { return managerName_; }
    const std::wstring& packageName() const noexcept { return packageName_; }
    const GUID& managerGUID() const noexcept { return managerGUID_; }
    CAPEOPENPackageManagerType managerType() const noexcept {
        return static_cast<CAPEOPENPackageManagerType>(managerType_);
    }

    /// Lets the component write its state; S_FALSE when it cannot be saved at all.
    HRESULT saveState(IStream* stream) const;

    /// The text from which the workbook restored the package, until it has been written again.
    const std::wstring& keptStateText() const noexcept { return keptStateText_; }
    void keepStateText(std::wstring text) noexcept { keptStateText_ = std::move(text); }

    /// The component itself, for interfaces beyond the thermodynamic ones. Borrowed.
    IUnknown* component() const noexcept { return compounds_.get(); }

    /// What a user is told about the package: origin, names, identifiers and what its component has
    /// registered about itself; lines that end with "\r\n". Asks the registry only, not the package.
    std::wstring describe() const;

    /// Forgets all that was read from the component, which may have changed.
    void reset() noexcept;

    void loadCompounds();
    void loadPhases();

    // Copies of the lists: one-dimensional arrays of strings; empty when the package has none.

    // In the package's own order.
    ArrayVariant compoundNames();
    ArrayVariant phaseNames();
    // Sorted for the user.
    ArrayVariant compoundConstantList();
    ArrayVariant temperatureDependentPropertyList();
    ArrayVariant singlePhasePropertyList();
    ArrayVariant twoPhasePropertyList();
    /// What may be given as a condition of an equilibrium: Temperature and Pressure first, the others sorted.
    ArrayVariant equilibriumConditionNames();

    /// Values of a constant for one compound, or for all of them (`compound` -1), as the package gives them:
    /// a one-dimensional array, nearly always of VARIANT. A value that the package does not have is no
    /// failure: what came back is given.
    ArrayVariant compoundConstant(BSTR constantName, std::int32_t compound);
    /// The same for a temperature-dependent property at T (K), nearly always an array of reals.
    ArrayVariant temperatureDependentProperty(BSTR propertyName, double T, std::int32_t compound);

    /// Position of a compound or phase name in any letter case. The lists must be loaded.
    std::optional<std::int32_t> compoundIndex(const wchar_t* name) const { return compoundIndex_.find(name); }
    EnumPhaseType phaseType(std::int32_t index) const {
        return phaseStates_.at(static_cast<std::size_t>(index));
    }
    /// The same by name; the phases need not be loaded. Throws CWStrException "Phase not specified" for null
    /// and "No such phase" for a name that the package does not have.
    EnumPhaseType phaseTypeNamed(BSTR label);
    std::int32_t vaporPhaseIndex() const noexcept {
        return vaporPhaseIndex_;
    } ///< -1: there is no vapor phase

    // Whether the package says that it can calculate a property for a phase or for two; false when it fails
    // to say.
    bool canCalculate(BSTR propName, BSTR phaseLabel);
    bool canCalculate(BSTR propName, BSTR phase1, BSTR phase2);

    /// Creates the material and makes it the package's active one, once.
    void ensureMaterial();

    /// A single-phase property at T (K) and P (Pa), converted to the requested basis. The result is valid
    /// until the next calculation.
    const std::vector<double>& calcSinglePhaseProperty(BSTR propName, BSTR phaseLabel, double T, double P,
                                                       const std::vector<double>& composition,
                                                       bool compositionIsMass, const PropertyInfo& info,
                                                       bool resultIsMass);

    /// A property of two phases; a composition derivative holds the values for phase 1 followed by those for
    /// phase 2.
    const std::vector<double>& calcTwoPhaseProperty(BSTR propName, BSTR phase1, BSTR phase2, double T,
                                                    double P, const std::vector<double>& composition,
                                                    const std::vector<double>& phase2Composition,
                                                    bool compositionIsMass, const PropertyInfo& info);

    /// A phase equilibrium. One result per package phase, fractions and compositions on the requested basis;
    /// `outT` and `outP` receive the temperature and pressure, NaN where the package reported none.
    const std::vector<PhaseResult>& calcEquilibrium(const EquilibriumCondition& condition1,
                                                    const EquilibriumCondition& condition2, BSTR solutionType,
                                                    const std::vector<double>& composition, bool isMass,
                                                    double& outT, double& outP);

    // MaterialOwner
    std::int32_t compoundCount() const noexcept override {
        return static_cast<std::int32_t>(molecularWeights_.size());
    }
    const ArrayVariant& compoundList(CompoundList which) const noexcept override {
        return compoundData_[which];
    }
    const std::vector<double>& molecularWeights() const noexcept override { return molecularWeights_; }
    const std::vector<double>& inverseMolecularWeights() const noexcept override {
        return inverseMolecularWeights_;
    }
    bool missingMolecularWeight() const noexcept override { return missingMolecularWeight_; }
    std::int32_t phaseCount() const noexcept override {
        return static_cast<std::int32_t>(phaseStates_.size());
    }
    const ArrayVariant& phaseLabels() const noexcept override { return phaseLabels_; }
    std::optional<std::int32_t> phaseIndex(const wchar_t* label) const override {
        return phaseIndex_.find(label);
    }
    bool isVapor(const wchar_t* label) const override;

  private:
    class Calculation;

    /// A list for the front end, with the mark that the package is being asked for it.
    struct NameList {
        ArrayVariant names;
        bool reading = false;
    };
    template <typename Interface>
    ArrayVariant propertyList(NameList& list, Interface* source,
                              HRESULT (STDMETHODCALLTYPE Interface::*read)(VARIANT*), const wchar_t* failure,
                              const wchar_t* invalid) const;
    com::com_ptr<IUnknown> create() const;
    void bind(IUnknown* package, IStream* savedState);
    void requireOnePerCompound(const std::vector<double>& composition) const;
    bool hasMaterial() const noexcept { return material_ && material_->hasOwner(); }
    void retireMaterial() noexcept;
    void prepareMaterial(CalculationMode mode, BSTR propName, BSTR phase1, double T, double P,
                         const std::vector<double>& composition, bool compositionIsMass,
                         const PropertyInfo& info);
    const std::vector<double>& convertCompositionDerivatives(BSTR propName, BSTR phaseLabel, double T,
                                                             double P, const std::vector<double>& composition,
                                                             bool compositionIsMass, const PropertyInfo& info,
                                                             bool resultIsMass, std::int32_t factor);
    ArrayVariant compoundIds(std::int32_t compound) const;
    ArrayVariant specification(const EquilibriumCondition& condition, EquilibriumSpecification& stored,
                               bool isMass, bool& phaseFractionGiven);
    void convertPhaseResults(bool isMass);

    // The package gives its references to the material back at any time until it has another one or is gone
    // itself, so the last one that it was given lives as long; out of use it has no owner.
    com::held_ptr<MaterialObject11> material_;
    com::com_ptr<ICapeThermoCompounds> compounds_;
    com::com_ptr<ICapeThermoPhases> phases_;
    com::com_ptr<ICapeThermoPropertyRoutine> propertyRoutine_;
    com::com_ptr<ICapeThermoEquilibriumRoutine> equilibriumRoutine_;
    GUID managerGUID_;
    std::int32_t managerType_; ///< a CAPEOPENPackageManagerType, or whatever else a client may have passed
    std::wstring packageName_;
    std::wstring managerName_;
    std::wstring keptStateText_;

    std::array<ArrayVariant, CompoundList_Count> compoundData_;
    std::vector<double> molecularWeights_;        ///< kg/mol
    std::vector<double> inverseMolecularWeights_; ///< mol/kg
    bool missingMolecularWeight_ = false;
    NameList constantNames_;
    NameList temperatureDependentNames_;
    NameList singlePhaseNames_;
    NameList twoPhaseNames_;
    NameList conditionNames_;
    ArrayVariant phaseLabels_;
    NameIndexMap compoundIndex_;
    NameIndexMap phaseIndex_;
    std::vector<EnumPhaseType> phaseStates_;
    std::int32_t vaporPhaseIndex_ = -1;

    // Made once and lent to every calculation, filled with the caller's texts for its duration.
    ArrayVariant propertyNameArray2_;
    ArrayVariant propertyNameArray1_;

    bool readingCompounds_ = false; ///< the package is being asked for its compounds
    bool readingPhases_ = false;
    bool calculating_ = false;     ///< a calculation of the package is running
    bool offering_ = false;        ///< the package is being given its material
    std::uint32_t generation_ = 0; ///< counts the resets
    std::wstring scratchText_;
    std::vector<double> convertedValue_;
    std::vector<double> convertedDerivatives_;
};

} // namespace quorvane
