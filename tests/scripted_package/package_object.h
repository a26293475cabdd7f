// PackageObject: the scripted CAPE-OPEN 1.1 property package as a COM object. It keeps the material that it
// was given until UnsetMaterial or Terminate, as packages do.
#pragma once

#include "tests/scripted_package/component.h"

namespace scripted {

class PackageObject final
    : public com::implements<
          Component, com::RefusedDual<ICapeThermoCompounds>, com::RefusedDual<ICapeThermoPhases>,
          com::RefusedDual<ICapeThermoPropertyRoutine>, com::RefusedDual<ICapeThermoEquilibriumRoutine>,
          com::RefusedDual<ICapeThermoUniversalConstant>, com::RefusedDual<ICapeThermoMaterialContext>,
          IPersistStream, IPersistStreamInit> {
  public:
    PackageObject(std::shared_ptr<Script> script, REFCLSID clsid)
        : implements{std::move(script), L"Scripted package"}, clsid_{clsid} {}

    void* findInterface(REFIID iid) noexcept override;

    // ICapeThermoCompounds
    HRESULT STDMETHODCALLTYPE GetCompoundConstant(VARIANT properties, VARIANT ids,
                                                  VARIANT* values) noexcept override;
    HRESULT STDMETHODCALLTYPE GetCompoundList(VARIANT* ids, VARIANT* formulae, VARIANT* names,
                                              VARIANT* boilingPoints, VARIANT* molecularWeights,
                                              VARIANT* casNumbers) noexcept override;
    HRESULT STDMETHODCALLTYPE GetConstPropList(VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE GetNumCompounds(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPDependentProperty(VARIANT properties, double P, VARIANT ids,
                                                    VARIANT* values) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPDependentPropList(VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTDependentProperty(VARIANT properties, double T, VARIANT ids,
                                                    VARIANT* values) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTDependentPropList(VARIANT* names) noexcept override;

    // ICapeThermoPhases
    HRESULT STDMETHODCALLTYPE GetNumPhases(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPhaseInfo(BSTR label, BSTR attribute, VARIANT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPhaseList(VARIANT* labels, VARIANT* states,
                                           VARIANT* keyCompounds) noexcept override;

    // ICapeThermoPropertyRoutine
    HRESULT STDMETHODCALLTYPE CalcAndGetLnPhi(BSTR label, double T, double P, VARIANT moles, INT flags,
                                              VARIANT* lnPhi, VARIANT* lnPhiDT, VARIANT* lnPhiDP,
                                              VARIANT* lnPhiDn) noexcept override;
    HRESULT STDMETHODCALLTYPE CalcSinglePhaseProp(VARIANT properties, BSTR label) noexcept override;
    HRESULT STDMETHODCALLTYPE CalcTwoPhaseProp(VARIANT properties, VARIANT labels) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckSinglePhasePropSpec(BSTR property, BSTR label,
                                                       VARIANT_BOOL* valid) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckTwoPhasePropSpec(BSTR property, VARIANT labels,
                                                    VARIANT_BOOL* valid) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSinglePhasePropList(VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTwoPhasePropList(VARIANT* names) noexcept override;

    // ICapeThermoEquilibriumRoutine
    HRESULT STDMETHODCALLTYPE CalcEquilibrium(VARIANT first, VARIANT second,
                                              BSTR solutionType) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckEquilibriumSpec(VARIANT first, VARIANT second, BSTR solutionType,
                                                   VARIANT_BOOL* supported) noexcept override;

    // ICapeThermoUniversalConstant
    HRESULT STDMETHODCALLTYPE GetUniversalConstant(BSTR name, VARIANT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE GetUniversalConstantList(VARIANT* names) noexcept override;

    // ICapeThermoMaterialContext
    HRESULT STDMETHODCALLTYPE SetMaterial(IDispatch* material) noexcept override;
    HRESULT STDMETHODCALLTYPE UnsetMaterial() noexcept override;

    // IPersistStream and IPersistStreamInit
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) noexcept override;
    HRESULT STDMETHODCALLTYPE IsDirty() noexcept override;
    HRESULT STDMETHODCALLTYPE Load(IStream* stream) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) noexcept override;
    HRESULT STDMETHODCALLTYPE InitNew() noexcept override;

  private:
    void terminated() noexcept override { material_.reset(); }
    ICapeThermoMaterial* activeMaterial() const noexcept override { return material_.get(); }

    const Model& model() const noexcept { return script().model; }
    void giveNames(VARIANT* out, const std::vector<std::wstring>& names) const;
    std::vector<std::size_t> compoundsNamed(const VARIANT& ids) const;
    template <typename ValueOf>
    void giveCompoundValues(VARIANT* out, Out::Kind kind, const VARIANT& properties, const VARIANT& ids,
                            const std::vector<std::wstring>& offered, ValueOf&& valueOf) const;
    int requirePhase(std::wstring_view label) const;
    void calculateSinglePhase(const VARIANT& properties, BSTR label);
    void calculateTwoPhase(const VARIANT& properties, const VARIANT& labels);
    void calculateEquilibrium(const VARIANT& first, const VARIANT& second);
    double specification(const VARIANT& given, Conditions& conditions, double vaporFraction);
    void report(const Flash& flash);
    void requireMaterial() const;
    void requireAccepted(HRESULT code) const;

    CLSID clsid_;
    com::com_ptr<ICapeThermoMaterial> material_;
};

} // namespace scripted
