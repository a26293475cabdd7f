// The formulas that a worksheet may hold: one call of a worksheet function of the add-in, such as
//   =CapeOpenCompounds("Gas","vertical")     =Quorvane.Excel.1.CapeOpenPhases(A1,,B2)
// with texts, numbers, TRUE and FALSE, references (A1, $A$1, A1:B7) and left-out arguments, or a reference
// alone (=A1). Everything else that Excel knows is refused, with what to write instead. Nothing here knows
// which functions exist.
#pragma once

#include "sheet/formula/address.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace sheet::formula {

struct Omitted {
    bool operator==(const Omitted&) const = default;
};

using Argument = std::variant<Omitted, double, std::string, bool, Block>;

struct Formula {
    /// As written, without the add-in's qualification; empty for a reference alone, which is the only
    /// argument then.
    std::string function;
    std::vector<Argument> arguments;

    bool operator==(const Formula&) const = default;

    std::vector<Block> references() const;
};

class FormulaError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

inline bool isFormula(std::string_view cell) { return cell.starts_with('='); }

/// `text` begins with "=". Throws FormulaError.
Formula readFormula(std::string_view text);

} // namespace sheet::formula
