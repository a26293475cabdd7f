// ManagerObject: the scripted CAPE-OPEN 1.1 property package manager as a COM object. A healthy one has the
// two packages "First" and "Second", named in any letter case; both are scripted packages with one script.
#pragma once

#include "tests/scripted_package/component.h"

namespace scripted {

class ManagerObject final
    : public com::implements<Component, com::RefusedDual<ICapeThermoPropertyPackageManager>> {
  public:
    ManagerObject(std::shared_ptr<Script> script, std::shared_ptr<Script> packageScript,
                  REFCLSID packageClsid)
        : implements{std::move(script), L"Scripted manager"}, packageScript_{std::move(packageScript)},
          packageClsid_{packageClsid} {}

    void* findInterface(REFIID iid) noexcept override;

    HRESULT STDMETHODCALLTYPE GetPropertyPackageList(VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPropertyPackage(BSTR name, IDispatch** package) noexcept override;

  private:
    std::shared_ptr<Script> packageScript_;
    CLSID packageClsid_;
};

} // namespace scripted
