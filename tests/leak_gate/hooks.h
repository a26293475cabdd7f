// Enters allocations in the book (allocations.h): calls of the C heap by the test program and by the DLLs
// that lie beside it, and COM's task allocator as a whole. A block is made a little longer than asked for and
// its end marked, new memory holds no zeros and freed memory not what it held, so that code which writes too
// far, or uses what it has not set or has freed, goes wrong where it can be seen.
//
// COM offers a spy for its allocator, but Wine's searches all blocks each time that one is freed; so the
// allocator's own table of functions is changed instead.
#pragma once

#include "com/platform.h"

#include <vector>

namespace leak_gate {

/// Watches what has been loaded since the last call. To be called whenever a test begins.
void watchLoadedModules();

/// The DLLs beside the test program that are loaded now.
std::vector<HMODULE> watchedDlls();

/// Blocks that were written to beyond their end, since the program started. They show when they are freed.
long overrunBlocks();

} // namespace leak_gate
