// ClientMaterial: the least that a CAPE-OPEN 1.1 material can be while a package calculates a property of one
// phase: it hands out temperature, pressure and mole fractions, and takes the values.
#pragma once

#include "com/com_object.h"
#include "com/dual.h"
#include "com/implements.h"

#include <capeopen_idl.h>
#include <vector>

namespace bench {

class ClientMaterial : public com::implements<com::COMObject, com::RefusedDual<ICapeThermoMaterial>> {
  public:
    double temperature = 0.0; ///< K
    double pressure = 0.0;    ///< Pa
    std::vector<double> fractions;
    std::vector<double> values; ///< what the package has written

    void* findInterface(REFIID iid) noexcept override {
        return implements::findInterface(iid == IID_IDispatch ? __uuidof(ICapeThermoMaterial) : iid);
    }

    HRESULT STDMETHODCALLTYPE GetTPFraction(BSTR label, double* T, double* P,
                                            VARIANT* composition) noexcept override;
    HRESULT STDMETHODCALLTYPE SetSinglePhaseProp(BSTR name, BSTR label, BSTR basis,
                                                 VARIANT given) noexcept override;

    HRESULT STDMETHODCALLTYPE ClearAllProps() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CopyFromMaterial(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateMaterial(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetOverallProp(BSTR, BSTR, VARIANT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetOverallTPFraction(double*, double*, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetPresentPhases(VARIANT*, VARIANT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSinglePhaseProp(BSTR, BSTR, BSTR, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetTwoPhaseProp(BSTR, VARIANT, BSTR, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetOverallProp(BSTR, BSTR, VARIANT) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetPresentPhases(VARIANT, VARIANT) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetTwoPhaseProp(BSTR, VARIANT, BSTR, VARIANT) noexcept override {
        return E_NOTIMPL;
    }
};

} // namespace bench
