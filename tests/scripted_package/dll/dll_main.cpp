// The exports of ScriptedPackage.dll. Every object that is created reads its script anew from the environment
// variable SCRIPTED_PACKAGE (script_text.h); a script that cannot be understood makes the creation fail with
// E_INVALIDARG.
#include "tests/scripted_package/dll/registration.h"
#include "tests/scripted_package/manager_object.h"
#include "tests/scripted_package/package_object.h"
#include "tests/scripted_package/script_text.h"

#include <stdexcept>

namespace scripted {

namespace {

std::wstring scriptText() {
    const DWORD size = GetEnvironmentVariableW(L"SCRIPTED_PACKAGE", nullptr, 0);
    std::wstring text(size, L'\0');
    text.resize(GetEnvironmentVariableW(L"SCRIPTED_PACKAGE", text.data(), size));
    return text;
}

class Factory final : public com::implements<com::COMObject, IClassFactory> {
  public:
    explicit Factory(bool isManager) : isManager_{isManager} {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept override {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = nullptr;
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        try {
            ParsedScripts scripts = parseScripts(scriptText());
            return isManager_
                       ? com::make<ManagerObject>(scripts.manager, scripts.package, packageClass)
                             ->queryInterface(iid, out)
                       : com::make<PackageObject>(scripts.package, packageClass)->queryInterface(iid, out);
        } catch (const std::invalid_argument&) {
            return E_INVALIDARG;
        } catch (...) {
            return E_UNEXPECTED;
        }
    }

    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
        com::liveObjects += lock ? 1 : -1;
        return S_OK;
    }

  private:
    bool isManager_;
};

} // namespace

} // namespace scripted

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = nullptr;
    if (clsid != scripted::packageClass && clsid != scripted::managerClass) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    try {
        return com::make<scripted::Factory>(clsid == scripted::managerClass)->queryInterface(iid, out);
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

STDAPI DllCanUnloadNow() { return com::liveObjects == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return scripted::registerClasses(); }

STDAPI DllUnregisterServer() { return scripted::unregisterClasses(); }
