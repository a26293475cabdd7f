// A call of a worksheet function with arguments by chance: mostly such that it may succeed, with some of them
// spoilt, and now and then all of them.
#pragma once

#include "tests/conformance/functions.h"
#include "tests/random/packages.h"
#include "tests/random/values.h"

namespace chance {

/// What the orientation argument of a call asks for; `unsaid` leaves it to the calling range, `any` is what
/// cannot be told.
enum class Direction { unsaid, row, column, matrix, any };

struct Call {
    const conformance::Function* function;
    std::vector<Value> arguments; ///< in declared order; trailing ones may be absent, or there are too many
    Direction direction = Direction::unsaid;
    bool isOfBundled = false; ///< of a package that is not scripted, and has its own words
};

Call anyCall(Dice& dice, const std::vector<Kind>& kinds);

/// An argument is of a type that Automation does not have, and so refuses to pass.
bool hasUnheardOfType(const Call& call);

/// The name of a package of this kind: the kind's own, or that followed by a number.
std::wstring nameOfPackage(Dice& dice, const Kind& kind);

/// For people: the function and the arguments.
std::string textOf(const Call& call);
std::string textOf(const Value& value);

} // namespace chance
