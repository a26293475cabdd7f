#include "tests/leak_gate/hooks.h"

#include "tests/leak_gate/allocations.h"
#include "tests/leak_gate/import_table.h"
#include "tests/leak_gate/imported_calls.h"

#include <psapi.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

namespace leak_gate {

namespace {

// --- The C heap
// ------------------------------------------------------------------------------------------------

// The C run time's own functions; one run time serves all modules.
struct CHeap {
    void* (*malloc)(std::size_t);
    void* (*calloc)(std::size_t, std::size_t);
    void* (*realloc)(void*, std::size_t);
    void (*free)(void*);
};
CHeap cHeap{};

std::atomic<long> overruns{0};

constexpr std::uint64_t endMark = 0xFDFDA5A5FDFDA5A5U;
constexpr std::size_t mostFilled = 4096; // of a block: large ones are written soon anyway

void fill(void* block, int value, std::size_t size) { std::memset(block, value, std::min(size, mostFilled)); }

void* entered(Owner owner, void* block, std::size_t size) {
    if (block != nullptr) {
        std::memcpy(static_cast<char*>(block) + size, &endMark, sizeof endMark);
        book::add(owner, block, size);
    }
    return block;
}

// Whether the block was in the book, from which it is taken.
bool takenOut(void* block, std::size_t& size) {
    if (block == nullptr || !book::remove(block, size)) {
        return false;
    }
    if (std::memcmp(static_cast<char*>(block) + size, &endMark, sizeof endMark) != 0) {
        ++overruns;
    }
    return true;
}

// What a module calls instead; one set of functions for each owner.
template <Owner owner>
struct Heap {
    static void* malloc(std::size_t size) {
        if (book::refuses(owner) || size > SIZE_MAX - sizeof endMark) {
            return nullptr;
        }
        void* const block = cHeap.malloc(size + sizeof endMark);
        if (block != nullptr) {
            fill(block, 0xCD, size);
        }
        return entered(owner, block, size);
    }
    static void* calloc(std::size_t count, std::size_t each) {
        if (book::refuses(owner) || (each != 0 && count > (SIZE_MAX - sizeof endMark) / each)) {
            return nullptr;
        }
        return entered(owner, cHeap.calloc(1, count * each + sizeof endMark), count * each);
    }
    static void* realloc(void* block, std::size_t size) {
        if (block == nullptr) {
            return malloc(size);
        }
        if (size == 0) {
            free(block);
            return nullptr;
        }
        if (book::refuses(owner) || size > SIZE_MAX - sizeof endMark) {
            return nullptr;
        }
        std::size_t before = 0;
        if (!takenOut(block, before)) {
            return cHeap.realloc(block, size); // from before it was watched
        }
        void* const moved = cHeap.realloc(block, size + sizeof endMark);
        if (moved == nullptr) {
            entered(owner, block, before);
            return nullptr;
        }
        return entered(owner, moved, size);
    }
    static void free(void* block) {
        std::size_t size = 0;
        if (takenOut(block, size)) {
            fill(block, 0xDD, size);
        }
        cHeap.free(block);
    }
};

template <typename Function>
void redirect(void** pointer, Function*& original, Function* replacement) {
    if (*pointer != addressOf(replacement)) {
        original = reinterpret_cast<Function*>(*pointer);
        overwrite(pointer, addressOf(replacement));
    }
}

template <Owner owner>
void watchHeap(HMODULE module) {
    forEachImport(module, [](const char*, const char* name, void** pointer) {
        const std::string_view function{name};
        if (function == "malloc") {
            redirect(pointer, cHeap.malloc, &Heap<owner>::malloc);
        } else if (function == "calloc") {
            redirect(pointer, cHeap.calloc, &Heap<owner>::calloc);
        } else if (function == "realloc") {
            redirect(pointer, cHeap.realloc, &Heap<owner>::realloc);
        } else if (function == "free") {
            redirect(pointer, cHeap.free, &Heap<owner>::free);
        }
    });
}

template <std::size_t... owner>
void watchHeapAs(Owner wanted, HMODULE module, std::index_sequence<owner...>) {
    ((owner == wanted ? watchHeap<owner>(module) : void()), ...);
}

void watchModuleAs(Owner owner, HMODULE module) {
    watchHeapAs(owner, module, std::make_index_sequence<mostOwners>{});
    watchImportedCalls(owner, module);
}

// --- COM's task allocator
// --------------------------------------------------------------------------------------

struct ComAllocator {
    void*(STDMETHODCALLTYPE* allocate)(IMalloc*, SIZE_T);
    void*(STDMETHODCALLTYPE* reallocate)(IMalloc*, void*, SIZE_T);
    void(STDMETHODCALLTYPE* free)(IMalloc*, void*);
};
ComAllocator com{};

void* STDMETHODCALLTYPE allocateForCom(IMalloc* self, SIZE_T size) {
    if (book::refuses(comAllocator)) {
        return nullptr;
    }
    void* const block = com.allocate(self, size);
    if (block != nullptr) {
        fill(block, 0xCD, size);
        book::add(comAllocator, block, size);
    }
    return block;
}

void STDMETHODCALLTYPE freeForCom(IMalloc* self, void* block) {
    std::size_t size = 0;
    if (block != nullptr && book::remove(block, size)) {
        fill(block, 0xDD, size);
    }
    com.free(self, block);
}

void* STDMETHODCALLTYPE reallocateForCom(IMalloc* self, void* block, SIZE_T size) {
    if (book::refuses(comAllocator)) {
        return nullptr;
    }
    std::size_t before = 0;
    const bool known = block != nullptr && book::remove(block, before);
    void* const moved = com.reallocate(self, block, size);
    if (moved != nullptr && (known || block == nullptr)) {
        book::add(comAllocator, moved, size);
    } else if (known && size != 0) {
        book::add(comAllocator, block, before);
    }
    return moved;
}

template <typename Function>
Function* exported(const wchar_t* module, const char* name) {
    const HMODULE loaded = GetModuleHandleW(module);
    const FARPROC found = loaded == nullptr ? nullptr : GetProcAddress(loaded, name);
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
}

void watchComAllocator() {
    if (com.allocate != nullptr) {
        return;
    }
    IMalloc* allocator = nullptr;
    auto* const getMalloc = exported<decltype(CoGetMalloc)>(L"ole32.dll", "CoGetMalloc");
    if (getMalloc == nullptr || FAILED(getMalloc(1, &allocator))) {
        return;
    }
    // After those of IUnknown: Alloc, Realloc, Free.
    void** const functions = *reinterpret_cast<void***>(allocator) + 3;
    redirect(&functions[0], com.allocate, &allocateForCom);
    redirect(&functions[1], com.reallocate, &reallocateForCom);
    redirect(&functions[2], com.free, &freeForCom);
}

// Automation would keep freed BSTRs for later.
void stopKeepingTexts() {
    if (auto* const setOaNoCache = exported<void __stdcall()>(L"oleaut32.dll", "SetOaNoCache")) {
        setOaNoCache();
    }
}

// --- Modules
// ---------------------------------------------------------------------------------------------------

constexpr std::size_t longestPath = 1024;

std::wstring_view folderOf(std::wstring_view path) { return path.substr(0, path.rfind(L'\\') + 1); }

} // namespace

std::vector<HMODULE> watchedDlls() {
    std::vector<HMODULE> found;
    std::array<HMODULE, 256> modules{};
    DWORD bytes = 0;
    if (!K32EnumProcessModules(GetCurrentProcess(), modules.data(), sizeof modules, &bytes)) {
        return found;
    }
    std::array<wchar_t, longestPath> program{};
    GetModuleFileNameW(nullptr, program.data(), longestPath);
    const std::wstring_view folder = folderOf(program.data());
    const std::size_t count = std::min(bytes / sizeof(HMODULE), modules.size());
    for (std::size_t i = 0; i < count; ++i) {
        std::array<wchar_t, longestPath> path{};
        GetModuleFileNameW(modules[i], path.data(), longestPath);
        if (modules[i] != GetModuleHandleW(nullptr) && folderOf(path.data()) == folder) {
            found.push_back(modules[i]);
        }
    }
    return found;
}

void watchLoadedModules() {
    book::enter("COM's allocator");
    watchModuleAs(book::enter("the test program"), GetModuleHandleW(nullptr));
    for (const HMODULE module : watchedDlls()) {
        std::array<char, longestPath> path{};
        GetModuleFileNameA(module, path.data(), longestPath);
        const std::string_view whole{path.data()};
        watchModuleAs(book::enter(path.data() + whole.rfind('\\') + 1), module);
    }
    watchComAllocator();
    stopKeepingTexts();
}

long overrunBlocks() { return overruns; }

} // namespace leak_gate
