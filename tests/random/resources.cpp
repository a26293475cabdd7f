#include "tests/random/resources.h"

#include "com/platform.h"

#include <psapi.h>
#include <vector>

extern "C" void __stdcall SetOaNoCache();

namespace chance {

HeapContent heapContent() {
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(std::size(heaps)), heaps);
    HeapContent content;
    for (DWORD i = 0; i < count && i < std::size(heaps); ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry) != 0) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) {
                ++content.blocks;
                content.bytes += entry.cbData;
            }
        }
        HeapUnlock(heaps[i]);
    }
    return content;
}

void keepNoTexts() { SetOaNoCache(); }

ProcessContent processContent() {
    PROCESS_MEMORY_COUNTERS_EX memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                         sizeof memory);
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return {memory.WorkingSetSize, memory.PrivateUsage, handles};
}

} // namespace chance
