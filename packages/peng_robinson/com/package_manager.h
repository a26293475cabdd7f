// PackageManager: the property package manager as a COM object. It offers the packages that are built in and
// one for each definition in the user's folder, and makes a new package for every call. A definition that is
// named like a built-in package stands in its place.
#pragma once

#include "packages/peng_robinson/com/cape_object.h"
#include "packages/peng_robinson/com/property_package.h"

#include <string_view>

namespace peng_robinson {

class PackageManager final
    : public com::implements<CapeObject, com::ServedDual<ICapeThermoPropertyPackageManager>,
                             com::ServedDual<ICapeUtilities>> {
  public:
    PackageManager();

    // ICapeThermoPropertyPackageManager
    HRESULT STDMETHODCALLTYPE GetPropertyPackageList(VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPropertyPackage(BSTR name, IDispatch** package) noexcept override;

    // ICapeUtilities
    HRESULT STDMETHODCALLTYPE get_parameters(IDispatch** parameters) noexcept override;
    HRESULT STDMETHODCALLTYPE put_simulationContext(IDispatch* context) noexcept override;
    HRESULT STDMETHODCALLTYPE Initialize() noexcept override;
    HRESULT STDMETHODCALLTYPE Terminate() noexcept override;
    HRESULT STDMETHODCALLTYPE Edit() noexcept override;
};

} // namespace peng_robinson
