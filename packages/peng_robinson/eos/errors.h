// The failures of the thermodynamics. Each kind asks for a different reaction of the caller, and each message
// says what to change. Everything else that can leave these functions is std::bad_alloc.
#pragma once

#include <stdexcept>
#include <string>

namespace peng_robinson::eos {

class Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// An argument that can never be right: a negative fraction, a wrong number of values, an unknown compound.
class InvalidInput : public Error {
  public:
    using Error::Error;
};

/// A number outside the range in which the question has an answer.
class OutOfRange : public Error {
  public:
    OutOfRange(const std::string& message, double value, double lower, double upper)
        : Error{message}, value_{value}, lower_{lower}, upper_{upper} {}
    double value() const noexcept { return value_; }
    double lower() const noexcept { return lower_; }
    double upper() const noexcept { return upper_; }

  private:
    double value_, lower_, upper_;
};

/// The question is well posed, but this model or this compound has no answer at these conditions.
class NotAvailable : public Error {
  public:
    using Error::Error;
};

/// An iteration ended without a solution.
class NoConvergence : public Error {
  public:
    using Error::Error;
};

} // namespace peng_robinson::eos
