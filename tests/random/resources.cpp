#include "tests/random/resources.h"

#include "com/platform.h"

#include <cstring>
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

namespace {

// Committed pages that no file and no other process shares.
std::size_t privatePages() {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; VirtualQuery(at, &region, sizeof region) != 0;) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) {
            bytes += region.RegionSize;
        }
        at = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
    }
    return bytes;
}

// The system's list of all handles; a count for one process is not to be had everywhere.
struct HandleEntry {
    ULONG process;
    UCHAR type;
    UCHAR flags;
    USHORT value;
    void* object;
    ULONG access;
};

unsigned long handlesOfProcess() {
    using Query = LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*);
    constexpr ULONG handleInformation = 16;
    constexpr auto tooSmall = static_cast<LONG>(0xC0000004);
    static const auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    std::vector<unsigned char> buffer(1 << 16);
    LONG status = tooSmall;
    while ((status = query(handleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), nullptr)) ==
           tooSmall) {
        buffer.resize(2 * buffer.size());
    }
    if (status < 0) {
        return 0;
    }
    ULONG count = 0;
    std::memcpy(&count, buffer.data(), sizeof count);
    const DWORD self = GetCurrentProcessId();
    unsigned long own = 0;
    for (ULONG i = 0; i < count; ++i) {
        HandleEntry entry{};
        // The entries begin where a pointer may stand.
        std::memcpy(&entry, buffer.data() + sizeof(void*) + i * sizeof entry, sizeof entry);
        own += entry.process == self ? 1 : 0;
    }
    return own;
}

} // namespace

ProcessContent processContent() {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    return {memory.WorkingSetSize, privatePages(), handlesOfProcess()};
}

} // namespace chance
