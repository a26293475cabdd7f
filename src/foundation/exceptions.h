// The system's own exceptions. Each carries one text for a person: the worksheet user sees it in the cell,
// the front end in its error dialog. Fixed texts are thrown as CWStrException, composed ones as
// WStrException.
#pragma once

#include <cstddef>
#include <string>

namespace quorvane {

// No virtual destructor: an exception is destroyed as its own type by the exception mechanism, never through
// here.
class WException {
  public:
    virtual const wchar_t* message() const noexcept = 0;
    virtual std::size_t length() const noexcept = 0;

  protected:
    WException() = default;
    WException(const WException&) = default;
    WException& operator=(const WException&) = default;
    ~WException() = default;
};

/// Owns a message that was composed at run time.
class WStrException final : public WException {
  public:
    explicit WStrException(std::wstring message);

    const wchar_t* message() const noexcept override;
    std::size_t length() const noexcept override;

  private:
    std::wstring message_;
};

/// Refers to a message of static lifetime. It allocates nothing, so it can be thrown when memory is short.
class CWStrException final : public WException {
  public:
    explicit CWStrException(const wchar_t* message) noexcept;

    const wchar_t* message() const noexcept override;
    std::size_t length() const noexcept override;

  private:
    const wchar_t* message_;
};

} // namespace quorvane
