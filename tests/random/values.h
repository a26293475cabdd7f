// Anything that a caller may pass for an argument, or a package for a result: every type of Automation, by
// value and by reference, arrays of any shape, ranges of the Excel stand-in.
#pragma once

#include "com/owned.h"
#include "tests/random/dice.h"

#include <memory>
#include <vector>

namespace chance {

/// A value together with what it refers to when it is by reference.
struct Value {
    com::variant value;
    std::unique_ptr<com::variant> target;
};

/// Types that stand for no value of Automation.
inline constexpr std::array<VARTYPE, 3> unheardOfTypes = {VT_LPSTR, VT_FILETIME, 0x0FFF};

double anyReal(Dice& dice);
std::wstring anyText(Dice& dice);
/// One of the words in any mixture of capital and small letters.
std::wstring anyCase(Dice& dice, std::wstring word);

/// Neither an array nor an object; also the types that no worksheet has.
com::variant anyScalar(Dice& dice);
/// Of one to three dimensions, with any lower bounds; `likely` elements more often than not.
com::variant anyArray(Dice& dice, std::size_t likely);
/// A range of some cells, perhaps one that misbehaves.
com::variant anyRange(Dice& dice, std::size_t likely);
com::variant anyValue(Dice& dice, std::size_t likely);

/// False for an array that holds something else than its label says, or nothing: whoever follows the label
/// reads numbers as pointers.
bool holdsWhatItSays(const VARIANT& value);

/// The cells as a row, a column, an array constant or a list: the forms in which a worksheet has them.
com::variant cellsOf(Dice& dice, std::vector<com::variant> cells);
/// By value, by reference, or in a cell.
Value passed(Dice& dice, com::variant value);
Value byReference(com::variant value);

} // namespace chance
