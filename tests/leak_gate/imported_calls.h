// Functions of Automation and COM that allocate, as the modules call them: tells the book for which module
// COM allocates, and refuses those that allocate where no allocator of ours is asked.
#pragma once

#include "tests/leak_gate/allocations.h"

#include "com/platform.h"

#include <string>
#include <vector>

namespace leak_gate {

/// Watches the functions that the module imports.
void watchImportedCalls(Owner owner, HMODULE module);

/// The functions of Automation and COM that the module imports and that are not watched, in alphabetical
/// order: those that allocate nothing.
std::vector<std::string> unwatchedCalls(HMODULE module);

/// Handles that functions of the system opened and forgot, since the program started.
long handlesLostByTheSystem();

} // namespace leak_gate
