// What the user sees of a fault in an array, by the outcomes of outputs.tsv and writes.tsv.
#pragma once

#include "tests/faults/stage.h"
#include "tests/faults/values.h"

namespace faults {

/// Cells of a row.
std::string joinedList(const std::vector<std::string>& parts);

VARTYPE elementType(const ArrayRow& row);

/// The outcome of the table for this effect. References are no arrays to the reader of an output, but are
/// followed where a package writes.
std::string outcomeOf(const ArrayRow& row, Effect effect, bool followsReferences);

/// The message in which the check of an array tells this effect.
std::string checkText(const ArrayRow& row, Effect effect);

/// `fault` names the fault, `text` is what stands in the array; `without` what is seen without fault.
std::string seenOutcome(std::string outcome, const std::string& check, const ValueFault* fault,
                        const std::string& text, const std::string& without);

} // namespace faults
