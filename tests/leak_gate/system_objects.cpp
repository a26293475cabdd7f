#include "tests/leak_gate/system_objects.h"

#include "com/platform.h"

#include <cstddef>

namespace leak_gate {

namespace {

// Memory of its own, so that looking at the handles does not allocate on the heap that is being watched.
class Pages {
  public:
    explicit Pages(std::size_t size)
        : memory_{VirtualAlloc(nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE)} {}
    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;
    ~Pages() { VirtualFree(memory_, 0, MEM_RELEASE); }
    void* get() const noexcept { return memory_; }

  private:
    void* memory_;
};

// The system's list of all handles of all processes; its form has no header.
constexpr ULONG extendedHandleInformation = 64;
struct SystemHandle {
    void* object;
    ULONG_PTR process;
    ULONG_PTR handle;
    ULONG access;
    USHORT backTrace;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
};
struct SystemHandles {
    ULONG_PTR count;
    ULONG_PTR reserved;
    SystemHandle handles[1];
};

template <typename Function>
Function* exported(const wchar_t* module, const char* name) {
    const HMODULE loaded = GetModuleHandleW(module);
    const FARPROC found = loaded == nullptr ? nullptr : GetProcAddress(loaded, name);
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
}

// Wine answers GetProcessHandleCount with zero.
long listedHandles() {
    static auto* const query =
        exported<LONG __stdcall(ULONG, void*, ULONG, ULONG*)>(L"ntdll.dll", "NtQuerySystemInformation");
    constexpr std::size_t mostMemory = std::size_t{64} << 20U;
    for (std::size_t size = std::size_t{256} << 10U; size <= mostMemory; size *= 4) {
        const Pages pages{size};
        ULONG written = 0;
        if (query(extendedHandleInformation, pages.get(), static_cast<ULONG>(size), &written) < 0) {
            continue;
        }
        const auto* const all = static_cast<const SystemHandles*>(pages.get());
        long mine = 0;
        for (ULONG_PTR i = 0; i < all->count; ++i) {
            mine += all->handles[i].process == GetCurrentProcessId() ? 1 : 0;
        }
        return mine;
    }
    return 0;
}

// User32 is asked only when the program has loaded it.
long guiResources(DWORD kind) {
    auto* const count = exported<DWORD WINAPI(HANDLE, DWORD)>(L"user32.dll", "GetGuiResources");
    return count == nullptr ? 0 : static_cast<long>(count(GetCurrentProcess(), kind));
}

BOOL CALLBACK countWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<long*>(count);
    return TRUE;
}

} // namespace

long kernelHandles() {
    DWORD count = 0;
    if (GetProcessHandleCount(GetCurrentProcess(), &count) && count > 0) {
        return static_cast<long>(count);
    }
    return listedHandles();
}

long userObjects() { return guiResources(GR_USEROBJECTS); }

long gdiObjects() { return guiResources(GR_GDIOBJECTS); }

long windows() {
    auto* const enumerate =
        exported<BOOL WINAPI(DWORD, WNDENUMPROC, LPARAM)>(L"user32.dll", "EnumThreadWindows");
    long count = 0;
    if (enumerate != nullptr) {
        enumerate(GetCurrentThreadId(), &countWindow, reinterpret_cast<LPARAM>(&count));
    }
    return count;
}

} // namespace leak_gate
