// MixtureCall: a call of CapeOpenMixtureProperty with prepared arguments, to be made through the vtable or as
// Excel makes it, through IDispatch. The composition is an array of amounts that do not add up to one.
#pragma once

#include "com/owned.h"

#include <quorvane_idl.h>
#include <stdexcept>
#include <string>

namespace bench {

/// The member identifier of CapeOpenMixtureProperty.
inline constexpr DISPID memberMixtureProperty = 0x60020006;

struct MixtureArguments {
    std::wstring package = L"Instant package"; ///< longer than what a string keeps within itself
    std::wstring property = L"enthalpy";
    std::wstring propertyBasis = {}; ///< empty: left out, as is the orientation
    std::wstring orientation = {};
    std::size_t compounds = 10;
};

class MixtureCall {
  public:
    static constexpr UINT count = 11;
    static constexpr double temperature = 300.0; // K
    static constexpr double pressure = 100000.0; // Pa

    explicit MixtureCall(const MixtureArguments& given);

    HRESULT byVtable(IQuorvaneUDF* functions, VARIANT* result) const;
    HRESULT byInvoke(IDispatch* functions, VARIANT* result);
    /// With its arguments by reference, as scripts pass their variables.
    HRESULT byInvokeOfVariables(IDispatch* functions, VARIANT* result);

    BSTR package() const noexcept { return package_.get(); }
    BSTR property() const noexcept { return property_.get(); }
    BSTR phase() const noexcept { return phase_.get(); }
    const VARIANT& composition() const noexcept { return composition_; }

  private:
    static HRESULT invoke(IDispatch* functions, VARIANT* lastFirst, VARIANT* result);

    com::unique_bstr package_;
    com::unique_bstr property_;
    com::unique_bstr phase_;
    com::variant composition_;
    com::variant basis_;
    com::variant orientation_;
    com::variant leftOut_ = com::variant::missing();
    VARIANT lastFirst_[count]{}; // borrowed
};

/// Throws std::runtime_error when the two results are not the same numbers in the same shape.
void requireSame(const VARIANT& ours, const VARIANT& expected);

} // namespace bench
