// State: everything that a test must leave as it found it.
#pragma once

#include "tests/leak_gate/allocations.h"

#include <string>

namespace leak_gate {

/// From now on kernel handles and COM's memory do not count in this program. For tests that unload a DLL of
/// the product: it keeps its type library, and its C++ run time what it has opened for the thread, until the
/// process ends.
void leaveOutWhatUnloadedDllsKeep() noexcept;

struct State {
    /// As it is now.
    static State now();

    /// Both tell a line for each kind of thing; they are empty when there is nothing to tell.
    ///
    /// The memory that was allocated between `before` and this state and is not freed until the call. Older
    /// memory that was freed meanwhile makes up for nothing.
    std::string memoryLeftSince(const State& before) const;
    /// What else there is more, or too little, of than before. Closed handles are nobody's loss, but objects
    /// that are gone which nobody in the test made have lost a reference.
    std::string changeSince(const State& before) const;
    bool hasLostObjectsSince(const State& before) const { return liveObjects < before.liveObjects; }

    Serial latestBlock = 0;
    long liveObjects = 0; ///< COM objects of the test program
    long dllsInUse = 0;   ///< DLLs of the product with live objects
    long overrunBlocks = 0;
    long kernelHandles = 0;
    long userObjects = 0;
    long gdiObjects = 0;
    long windows = 0;
};

} // namespace leak_gate
