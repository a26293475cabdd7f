// Readers of worksheet arguments. A user may type a word, a number, a truth value or a reference to a cell in
// any optional argument, or leave it out; every reader gives its default for a left-out argument and an empty
// cell, and throws WException with the text for the user otherwise.
#pragma once

#include "src/workbook/session.h"

namespace quorvane::udf {

/// What a compound or phase argument selects: a 0-based position, or all of them.
constexpr std::int32_t selectAll = -1;

/// Throws CWStrException with `message` for a null or empty text.
void requireText(BSTR text, const wchar_t* message);

/// The package of the active workbook with exactly this name.
std::shared_ptr<PropertyPackage> readPackage(Session& session, BSTR name);

/// True for mass basis. Words only: a reference to a cell is refused.
bool readBasis(const VARIANT& argument);

/// Position of the compound given by name or 1-based number, selectAll for 0 or nothing. Loads the package's
/// compounds.
std::int32_t readCompound(PropertyPackage& package, const VARIANT& argument);

/// The same for a phase.
std::int32_t readPhase(PropertyPackage& package, const VARIANT& argument);

/// A truth value; `argumentName` appears in the message for a value that is none.
bool readFlag(const VARIANT& argument, const wchar_t* argumentName, bool defaultValue);

/// Real values in memory that the session lends.
class Reals {
  public:
    /// A composition, scaled to the sum 1 if asked. One that sums to zero or to no number stays as it is, for
    /// the package to refuse.
    Reals(Session& session, const VARIANT& argument, bool normalize);
    /// A copy of a package's result, which the package's next calculation overwrites: the reading of any
    /// further argument may bring one about, when a cell runs a macro.
    Reals(Session& session, const std::vector<double>& result);
    Reals(const Reals&) = delete;
    Reals& operator=(const Reals&) = delete;
    ~Reals() { session_.takeBackReals(std::move(values_)); }

    const std::vector<double>& values() const noexcept { return values_; }
    std::size_t size() const noexcept { return values_.size(); }

  private:
    Session& session_;
    std::vector<double> values_;
};

/// Throws WStrException when there is not one value for each compound; `name` appears in the message.
void requireComposition(const std::vector<double>& composition, const PropertyPackage& package,
                        const wchar_t* name);

} // namespace quorvane::udf
