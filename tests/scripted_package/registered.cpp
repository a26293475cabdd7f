#include "tests/scripted_package/registered.h"

#include "tests/scripted_package/manager_object.h"
#include "tests/scripted_package/package_object.h"

#include <stdexcept>

namespace scripted {

namespace {

class Factory final : public com::implements<com::COMObject, IClassFactory> {
  public:
    explicit Factory(Registration::Maker maker) : maker_{std::move(maker)} {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept override {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = nullptr;
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        try {
            const auto object = com::com_ptr<IUnknown>::attach(maker_());
            return object->QueryInterface(iid, out);
        } catch (const Failure& failure) {
            return failure.code;
        } catch (...) {
            return E_UNEXPECTED;
        }
    }

    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

  private:
    Registration::Maker maker_;
};

template <typename Object, typename... Arguments>
IUnknown* newObject(Arguments... arguments) {
    return static_cast<ICapeIdentification*>(com::make<Object>(std::move(arguments)...).release());
}

} // namespace

Registration::Registration(REFCLSID clsid, Maker maker, DWORD context) {
    const auto factory = com::make<Factory>(std::move(maker));
    const HRESULT code = CoRegisterClassObject(clsid, static_cast<IClassFactory*>(factory.get()), context,
                                               REGCLS_MULTI_SEPARATE, &cookie_);
    if (FAILED(code)) {
        throw std::runtime_error("The scripted class cannot be registered in this process");
    }
}

Registration::~Registration() { CoRevokeClassObject(cookie_); }

Package::Package(DWORD context)
    : registration_{packageInProcess,
                    [script = shared()] { return newObject<PackageObject>(script, packageInProcess); },
                    context} {}

Manager::Manager(const Package& package)
    : registration_{managerInProcess, [script = shared(), packageScript = package.shared()] {
                        return newObject<ManagerObject>(script, packageScript, packageInProcess);
                    }} {}

long liveObjects() noexcept { return liveComponents; }

} // namespace scripted
