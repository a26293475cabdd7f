// A material of the tests' own: it keeps what is set and hands it out again, converts nothing, notes every
// write, and can be told to have no present phases, to refuse writes or to hand out nonsense.
#pragma once

#include "com/dual.h"
#include "com/implements.h"
#include "tests/packages/peng_robinson/com/support.h"

#include <map>
#include <optional>

namespace peng_robinson::test {

class TestMaterial final
    : public com::implements<com::COMObject, com::RefusedDual<ICapeThermoMaterial>,
                             com::RefusedDual<ICapeThermoCompounds>, com::RefusedDual<ECapeUser>> {
  public:
    explicit TestMaterial(Texts compoundIds) : compoundIds_{std::move(compoundIds)} {}

    void* findInterface(REFIID iid) noexcept override;
    IDispatch* self() noexcept { return static_cast<ICapeThermoMaterial*>(this); }

    // What a client does with its own material.
    void setOverall(const std::wstring& property, Reals values, const std::wstring& basis = {});
    void setPhase(const std::wstring& label, const std::wstring& property, Reals values,
                  const std::wstring& basis = {});
    void setConditions(const std::wstring& label, double T, double P, Reals x);
    void setPresent(std::optional<Texts> labels) { present = std::move(labels); }

    /// Values and the basis with which they were set; empty when never set.
    struct Value {
        Reals values;
        std::wstring basis;
    };
    std::optional<Value> phaseValue(const std::wstring& label, const std::wstring& property) const;
    std::optional<Value> overallValue(const std::wstring& property) const;
    /// The only value of a scalar.
    double scalar(const std::wstring& label, const std::wstring& property) const;

    std::optional<Texts> present = Texts{L"Vapor", L"Liquid"}; ///< none: GetPresentPhases fails
    std::vector<LONG> presentStatus;
    Texts twoPhaseLabels;
    std::map<std::wstring, com::variant> nonsense; ///< what a method of that name hands out, whatever is set
    bool refusesWrites = false;

    // ICapeThermoMaterial
    HRESULT STDMETHODCALLTYPE ClearAllProps() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CopyFromMaterial(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateMaterial(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetOverallProp(BSTR property, BSTR basis, VARIANT* results) noexcept override;
    HRESULT STDMETHODCALLTYPE GetOverallTPFraction(double*, double*, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetPresentPhases(VARIANT* labels, VARIANT* status) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSinglePhaseProp(BSTR property, BSTR label, BSTR basis,
                                                 VARIANT* results) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTPFraction(BSTR label, double* T, double* P, VARIANT* x) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTwoPhaseProp(BSTR, VARIANT, BSTR, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetOverallProp(BSTR property, BSTR basis, VARIANT values) noexcept override;
    HRESULT STDMETHODCALLTYPE SetPresentPhases(VARIANT labels, VARIANT status) noexcept override;
    HRESULT STDMETHODCALLTYPE SetSinglePhaseProp(BSTR property, BSTR label, BSTR basis,
                                                 VARIANT values) noexcept override;
    HRESULT STDMETHODCALLTYPE SetTwoPhaseProp(BSTR property, VARIANT labels, BSTR basis,
                                              VARIANT values) noexcept override;

    // ICapeThermoCompounds
    HRESULT STDMETHODCALLTYPE GetCompoundConstant(VARIANT, VARIANT, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetCompoundList(VARIANT* ids, VARIANT* formulae, VARIANT* names,
                                              VARIANT* boilTemps, VARIANT* molwts,
                                              VARIANT* casnos) noexcept override;
    HRESULT STDMETHODCALLTYPE GetConstPropList(VARIANT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetNumCompounds(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPDependentProperty(VARIANT, double, VARIANT, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetPDependentPropList(VARIANT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTDependentProperty(VARIANT, double, VARIANT, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetTDependentPropList(VARIANT*) noexcept override { return E_NOTIMPL; }

    // ECapeUser
    HRESULT STDMETHODCALLTYPE get_code(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_description(BSTR* description) noexcept override;
    HRESULT STDMETHODCALLTYPE get_scope(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_interfaceName(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_operation(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_moreInfo(BSTR*) noexcept override { return E_NOTIMPL; }

  private:
    using Store = std::map<std::wstring, Value>;

    static HRESULT read(const Store& store, const std::wstring& key, BSTR basis, VARIANT* results);
    bool handOutNonsense(const wchar_t* method, VARIANT* out) const;

    Texts compoundIds_;
    Store values_; ///< by "label|property" in lower case; overall values have an empty label
};

} // namespace peng_robinson::test
