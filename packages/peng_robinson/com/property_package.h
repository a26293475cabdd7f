// PropertyPackage: the package as a COM object. Each CAPE-OPEN interface is answered in a source file of its
// own. Created and used on one apartment thread. The material belongs to the client; the package holds a
// reference until it is unset.
//
// A package begins with the configuration that it is made with; a saved state or a person replaces it. A
// calculation under way keeps the configuration with which it began.
#pragma once

#include "packages/peng_robinson/catalogue/configuration.h"
#include "packages/peng_robinson/com/cape_object.h"
#include "packages/peng_robinson/com/material.h"
#include "packages/peng_robinson/state/state.h"

#include <memory>

namespace peng_robinson {

class PropertyPackage final
    : public com::implements<
          CapeObject, com::ServedDual<ICapeUtilities>, com::ServedDual<ICapeThermoCompounds>,
          com::ServedDual<ICapeThermoPhases>, com::ServedDual<ICapeThermoPropertyRoutine>,
          com::ServedDual<ICapeThermoEquilibriumRoutine>, com::ServedDual<ICapeThermoUniversalConstant>,
          com::ServedDual<ICapeThermoMaterialContext>, IPersistStreamInit> {
  public:
    /// The stand-alone package: all built-in compounds.
    PropertyPackage();
    PropertyPackage(Configuration initial, std::wstring name, std::wstring description);

    void* findInterface(REFIID iid) noexcept override;

    // ICapeUtilities
    HRESULT STDMETHODCALLTYPE get_parameters(IDispatch** parameters) noexcept override;
    HRESULT STDMETHODCALLTYPE put_simulationContext(IDispatch* context) noexcept override;
    HRESULT STDMETHODCALLTYPE Initialize() noexcept override;
    HRESULT STDMETHODCALLTYPE Terminate() noexcept override;
    HRESULT STDMETHODCALLTYPE Edit() noexcept override;

    // ICapeThermoCompounds
    HRESULT STDMETHODCALLTYPE GetCompoundConstant(VARIANT props, VARIANT compIds,
                                                  VARIANT* propVals) noexcept override;
    HRESULT STDMETHODCALLTYPE GetCompoundList(VARIANT* compIds, VARIANT* formulae, VARIANT* names,
                                              VARIANT* boilTemps, VARIANT* molwts,
                                              VARIANT* casnos) noexcept override;
    HRESULT STDMETHODCALLTYPE GetConstPropList(VARIANT* props) noexcept override;
    HRESULT STDMETHODCALLTYPE GetNumCompounds(LONG* num) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPDependentProperty(VARIANT props, double pressure, VARIANT compIds,
                                                    VARIANT* propVals) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPDependentPropList(VARIANT* props) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTDependentProperty(VARIANT props, double temperature, VARIANT compIds,
                                                    VARIANT* propVals) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTDependentPropList(VARIANT* props) noexcept override;

    // ICapeThermoPhases
    HRESULT STDMETHODCALLTYPE GetNumPhases(LONG* num) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPhaseInfo(BSTR phaseLabel, BSTR phaseAttribute,
                                           VARIANT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPhaseList(VARIANT* phaseLabels, VARIANT* stateOfAggregation,
                                           VARIANT* keyCompoundId) noexcept override;

    // ICapeThermoPropertyRoutine
    HRESULT STDMETHODCALLTYPE CalcAndGetLnPhi(BSTR phaseLabel, double temperature, double pressure,
                                              VARIANT moleNumbers, int fFlags, VARIANT* lnPhi,
                                              VARIANT* lnPhiDT, VARIANT* lnPhiDP,
                                              VARIANT* lnPhiDn) noexcept override;
    HRESULT STDMETHODCALLTYPE CalcSinglePhaseProp(VARIANT props, BSTR phaseLabel) noexcept override;
    HRESULT STDMETHODCALLTYPE CalcTwoPhaseProp(VARIANT props, VARIANT phaseLabels) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckSinglePhasePropSpec(BSTR property, BSTR phaseLabel,
                                                       VARIANT_BOOL* valid) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckTwoPhasePropSpec(BSTR property, VARIANT phaseLabels,
                                                    VARIANT_BOOL* valid) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSinglePhasePropList(VARIANT* props) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTwoPhasePropList(VARIANT* props) noexcept override;

    // ICapeThermoEquilibriumRoutine
    HRESULT STDMETHODCALLTYPE CalcEquilibrium(VARIANT specification1, VARIANT specification2,
                                              BSTR solutionType) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckEquilibriumSpec(VARIANT specification1, VARIANT specification2,
                                                   BSTR solutionType,
                                                   VARIANT_BOOL* isSupported) noexcept override;

    // ICapeThermoUniversalConstant
    HRESULT STDMETHODCALLTYPE GetUniversalConstant(BSTR constantId, VARIANT* constantValue) noexcept override;
    HRESULT STDMETHODCALLTYPE GetUniversalConstantList(VARIANT* constantId) noexcept override;

    // ICapeThermoMaterialContext
    HRESULT STDMETHODCALLTYPE SetMaterial(IDispatch* material) noexcept override;
    HRESULT STDMETHODCALLTYPE UnsetMaterial() noexcept override;

    // IPersistStreamInit
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) noexcept override;
    HRESULT STDMETHODCALLTYPE IsDirty() noexcept override;
    HRESULT STDMETHODCALLTYPE Load(IStream* stream) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) noexcept override;
    HRESULT STDMETHODCALLTYPE InitNew() noexcept override;

  private:
    /// The material of the current calculation: kept alive by the caller of this, because a material may
    /// unset itself while it is asked. Throws CapeError (ECapeBadInvOrder) when none is set.
    std::shared_ptr<const Material> requireMaterial() const;

    /// Takes over another choice of compounds and parameters, also for the material that is set; unsets a
    /// material that has compounds which are no longer chosen.
    void configure(Selection selection);
    void requireUninitialised() const;

    std::shared_ptr<const Configuration> initial_;
    std::shared_ptr<const Configuration> configuration_;
    bool isInitialised_ = false; ///< by InitNew or Load
    bool isDirty_ = false;
    bool isEdited_ = false; ///< its window is open
    std::shared_ptr<const Material> material_;
    com::com_ptr<IDispatch> simulationContext_;
};

} // namespace peng_robinson
