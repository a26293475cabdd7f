// How code of this package reports a failure of a CAPE-OPEN call: it throws a CapeError, and the frame of the
// method (CapeObject::call) turns that into the code to return and the texts that ECapeUser hands out.
#pragma once

#include "com/platform.h"

#include <capeopen_idl.h>
#include <exception>
#include <string>

namespace peng_robinson {

class CapeError : public std::exception {
  public:
    CapeError(eCapeErrorInterfaceHR code, std::wstring description)
        : CapeError{static_cast<HRESULT>(code), std::move(description)} {}
    CapeError(HRESULT code, std::wstring description) : code_{code}, description_{std::move(description)} {}

    HRESULT code() const noexcept { return code_; }
    const std::wstring& description() const noexcept { return description_; }
    const char* what() const noexcept override { return "CAPE-OPEN error"; }

  private:
    HRESULT code_;
    std::wstring description_;
};

/// An argument that is wrong in itself; its position counts from 1.
class ArgumentError : public CapeError {
  public:
    ArgumentError(short position, std::wstring description)
        : CapeError{ECapeInvalidArgumentHR, std::move(description)}, position_{position} {}
    short position() const noexcept { return position_; }

  private:
    short position_;
};

/// Name of the error interface that belongs to a code, for instance "ECapeSolvingError".
const wchar_t* errorName(HRESULT code) noexcept;

/// Text that another CAPE-OPEN object gives for its last failure; empty when it gives none.
std::wstring describeFailure(IUnknown* object);

} // namespace peng_robinson
