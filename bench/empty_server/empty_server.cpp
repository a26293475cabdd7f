// A server with the add-in's type library whose methods do nothing: what COM and Automation themselves cost.
#include "com/class_factory.h"
#include "com/dual.h"
#include "com/owned.h"

#include <initguid.h>

#include <quorvane_idl.h>

namespace {

HRESULT giveNumber(VARIANT* result) noexcept {
    *result = com::variant{1.0}.release();
    return S_OK;
}

class EmptyExcel final : public com::implements<com::COMObject, com::ServedDual<IQuorvaneUDF>> {
  public:
    void* findInterface(REFIID iid) noexcept override {
        return implements::findInterface(iid == IID_IDispatch ? __uuidof(IQuorvaneUDF) : iid);
    }

    HRESULT STDMETHODCALLTYPE CapeOpenPackageNames(VARIANT, VARIANT* result) noexcept override {
        return giveNumber(result);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenUnitOfMeasure(BSTR, VARIANT, BSTR* unit) noexcept override {
        *unit = SysAllocString(L"J/mol");
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE CapeOpenCompounds(BSTR, VARIANT, VARIANT, VARIANT* result) noexcept override {
        return giveNumber(result);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenPhases(BSTR, VARIANT, VARIANT, VARIANT* result) noexcept override {
        return giveNumber(result);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenCompoundConstant(BSTR, BSTR, VARIANT, VARIANT, VARIANT,
                                                       VARIANT* result) noexcept override {
        return giveNumber(result);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenTemperatureDependentProperty(BSTR, BSTR, double, VARIANT, VARIANT,
                                                                   VARIANT,
                                                                   VARIANT* result) noexcept override {
        return giveNumber(result);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenMixtureProperty(BSTR, BSTR, BSTR, double, double, VARIANT, VARIANT,
                                                      VARIANT, VARIANT, VARIANT, VARIANT,
                                                      VARIANT* result) noexcept override {
        return giveNumber(result);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenTwoPhaseProperty(BSTR, BSTR, BSTR, BSTR, double, double, VARIANT,
                                                       VARIANT, VARIANT, VARIANT, VARIANT, VARIANT, VARIANT,
                                                       VARIANT* result) noexcept override {
        return giveNumber(result);
    }
    HRESULT STDMETHODCALLTYPE CapeOpenPhaseEquilibrium(BSTR, VARIANT, BSTR, double, BSTR, double, VARIANT,
                                                       VARIANT, VARIANT, VARIANT, VARIANT,
                                                       VARIANT* result) noexcept override {
        return giveNumber(result);
    }
};

} // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
    return com::getClassObject<EmptyExcel>(__uuidof(::Excel), clsid, iid, out);
}

STDAPI DllCanUnloadNow() { return com::liveObjects == 0 ? S_OK : S_FALSE; }
