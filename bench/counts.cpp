#include "bench/counts.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <stdexcept>

extern "C" void __stdcall SetOaNoCache();

namespace bench {

namespace {

std::atomic<long> heapAllocations{0};
std::atomic<long> comAllocations{0};
std::atomic<long long> bytesNow{0};
std::atomic<long long> bytesMost{0};

void* took(void* block, std::size_t size) noexcept {
    if (block != nullptr) {
        bytesNow += static_cast<long long>(size);
        bytesMost = std::max(bytesMost.load(), bytesNow.load());
    }
    return block;
}

void gave(std::size_t size) noexcept { bytesNow -= static_cast<long long>(size); }

std::size_t heapSize(void* block) noexcept { return block == nullptr ? 0 : _msize(block); }
std::size_t comSize(void* block) noexcept {
    return block == nullptr ? 0 : HeapSize(GetProcessHeap(), 0, block);
}

void* countedMalloc(std::size_t size) {
    ++heapAllocations;
    void* const block = std::malloc(size);
    return took(block, heapSize(block));
}
void* countedCalloc(std::size_t count, std::size_t size) {
    ++heapAllocations;
    void* const block = std::calloc(count, size);
    return took(block, heapSize(block));
}
void* countedRealloc(void* old, std::size_t size) {
    ++heapAllocations;
    gave(heapSize(old));
    void* const block = std::realloc(old, size);
    return took(block, heapSize(block));
}
void countedFree(void* block) {
    gave(heapSize(block));
    std::free(block);
}

struct Hook {
    const char* name;
    void* replacement;
    void* original;
};

template <typename Function>
void* address(Function* function) noexcept {
    return reinterpret_cast<void*>(function);
}

Hook hooks[] = {{"malloc", address(&countedMalloc), nullptr},
                {"calloc", address(&countedCalloc), nullptr},
                {"realloc", address(&countedRealloc), nullptr},
                {"free", address(&countedFree), nullptr}};

void write(void** entry, void* value) {
    DWORD before = 0;
    if (VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &before) == 0) {
        throw std::runtime_error("The imports of a module cannot be changed");
    }
    *entry = value;
    VirtualProtect(entry, sizeof *entry, before, &before);
}

// Calls visit(name, entry) for each function that the module imports by name.
template <typename Visit>
void forEachImport(HMODULE module, Visit visit) {
    auto* const base = reinterpret_cast<unsigned char*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.VirtualAddress == 0) {
        return;
    }
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; library->Name != 0; ++library) {
        const auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* entry = reinterpret_cast<void**>(base + library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++entry) {
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
                visit(reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData)->Name,
                      entry);
            }
        }
    }
}

// Lives as long as the program: COM keeps the pointer.
class Spy final : public IMallocSpy {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) noexcept override {
        const bool known = iid == IID_IUnknown || iid == IID_IMallocSpy;
        *out = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }

    SIZE_T STDMETHODCALLTYPE PreAlloc(SIZE_T size) noexcept override { return size; }
    void* STDMETHODCALLTYPE PostAlloc(void* block) noexcept override {
        ++comAllocations;
        return took(block, comSize(block));
    }
    void* STDMETHODCALLTYPE PreFree(void* block, BOOL spyed) noexcept override {
        gave(spyed != 0 ? comSize(block) : 0);
        return block;
    }
    void STDMETHODCALLTYPE PostFree(BOOL) noexcept override {}
    SIZE_T STDMETHODCALLTYPE PreRealloc(void* block, SIZE_T size, void** out, BOOL spyed) noexcept override {
        ++comAllocations;
        gave(spyed != 0 ? comSize(block) : 0);
        *out = block;
        return size;
    }
    void* STDMETHODCALLTYPE PostRealloc(void* block, BOOL) noexcept override {
        return took(block, comSize(block));
    }
    void* STDMETHODCALLTYPE PreGetSize(void* block, BOOL) noexcept override { return block; }
    SIZE_T STDMETHODCALLTYPE PostGetSize(SIZE_T size, BOOL) noexcept override { return size; }
    void* STDMETHODCALLTYPE PreDidAlloc(void* block, BOOL) noexcept override { return block; }
    int STDMETHODCALLTYPE PostDidAlloc(void*, BOOL, int actual) noexcept override { return actual; }
    void STDMETHODCALLTYPE PreHeapMinimize() noexcept override {}
    void STDMETHODCALLTYPE PostHeapMinimize() noexcept override {}
};

Spy spy;

} // namespace

HeapCount::HeapCount(HMODULE module) : module_{module} {
    forEachImport(module, [](const char* name, void** entry) {
        for (Hook& hook : hooks) {
            if (std::strcmp(name, hook.name) == 0) {
                hook.original = *entry;
                write(entry, hook.replacement);
            }
        }
    });
    if (hooks[0].original == nullptr) {
        throw std::runtime_error("The module does not import malloc");
    }
    restart();
}

HeapCount::~HeapCount() {
    forEachImport(module_, [](const char*, void** entry) {
        for (const Hook& hook : hooks) {
            if (*entry == hook.replacement) {
                write(entry, hook.original);
            }
        }
    });
}

long HeapCount::allocations() const noexcept { return heapAllocations; }

void HeapCount::restart() noexcept { heapAllocations = 0; }

ComCount::ComCount() {
    SetOaNoCache();
    restart();
    if (FAILED(CoRegisterMallocSpy(&spy))) {
        throw std::runtime_error("COM's allocations cannot be counted");
    }
}

ComCount::~ComCount() { CoRevokeMallocSpy(); }

long ComCount::allocations() const noexcept { return comAllocations; }

void ComCount::restart() noexcept { comAllocations = 0; }

Bytes countedBytes() noexcept {
    return {static_cast<std::size_t>(std::max(bytesNow.load(), 0LL)),
            static_cast<std::size_t>(std::max(bytesMost.load(), 0LL))};
}

void forgetMostBytes() noexcept { bytesMost = bytesNow.load(); }

} // namespace bench
