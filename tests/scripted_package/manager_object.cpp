#include "tests/scripted_package/manager_object.h"

#include "tests/scripted_package/package_object.h"

namespace scripted {

void* ManagerObject::findInterface(REFIID iid) noexcept {
    return script().hides(iid) ? nullptr : implements::findInterface(iid);
}

HRESULT STDMETHODCALLTYPE ManagerObject::GetPropertyPackageList(VARIANT* names) noexcept {
    return respond("GetPropertyPackageList", {}, {{names, Out::Kind::Fresh}}, [&] {
        *names = texts({L"First", L"Second"}).release();
    });
}

HRESULT STDMETHODCALLTYPE ManagerObject::GetPropertyPackage(BSTR name, IDispatch** package) noexcept {
    return respond("GetPropertyPackage", {argument(name)}, {package}, [&] {
        const std::wstring wanted{com::viewOf(name)};
        if (_wcsicmp(wanted.c_str(), L"First") != 0 && _wcsicmp(wanted.c_str(), L"Second") != 0) {
            throw Refusal{static_cast<HRESULT>(ECapeInvalidArgumentHR), L"There is no package " + wanted};
        }
        const auto created = com::make<PackageObject>(packageScript_, packageClsid_);
        *package = static_cast<ICapeThermoCompounds*>(created.get());
        (*package)->AddRef();
    });
}

} // namespace scripted
