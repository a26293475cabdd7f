// What this process holds: blocks of all its heaps, and what the system counts.
#pragma once

#include <cstddef>

namespace chance {

struct HeapContent {
    std::size_t blocks = 0;
    std::size_t bytes = 0;
};

/// Blocks in use. The blocks that OLE Automation keeps for reuse count, unless keepNoTexts() was called.
HeapContent heapContent();

/// Has OLE Automation free texts at once instead of keeping them for reuse.
void keepNoTexts();

struct ProcessContent {
    std::size_t workingSet = 0;   ///< bytes
    std::size_t privateBytes = 0; ///< committed and not shared
    unsigned long handles = 0;
};

ProcessContent processContent();

} // namespace chance
