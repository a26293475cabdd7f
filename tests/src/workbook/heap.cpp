#include "tests/src/workbook/heap.h"

#include "com/platform.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <stdexcept>

extern "C" void __stdcall SetOaNoCache();

namespace quorvane {
namespace {

std::atomic<long long> blockCount{0};
std::atomic<long long> byteCount{0};
std::atomic<long long> peakByteCount{0};

void* allocate(std::size_t size) {
    void* const block = HeapAlloc(GetProcessHeap(), 0, size);
    if (block == nullptr) {
        throw std::bad_alloc{};
    }
    ++blockCount;
    byteCount += static_cast<long long>(HeapSize(GetProcessHeap(), 0, block));
    peakByteCount = std::max(peakByteCount.load(), byteCount.load());
    return block;
}

void release(void* block) noexcept {
    if (block != nullptr) {
        --blockCount;
        byteCount -= static_cast<long long>(HeapSize(GetProcessHeap(), 0, block));
        HeapFree(GetProcessHeap(), 0, block);
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
        left += block != nullptr ? 1 : 0;
        return block;
    }
    void* STDMETHODCALLTYPE PreFree(void* block, BOOL spyed) noexcept override {
        left -= block != nullptr && spyed ? 1 : 0;
        return block;
    }
    void STDMETHODCALLTYPE PostFree(BOOL) noexcept override {}
    SIZE_T STDMETHODCALLTYPE PreRealloc(void* block, SIZE_T size, void** out, BOOL spyed) noexcept override {
        left += block == nullptr || !spyed ? 1 : 0;
        *out = block;
        return size;
    }
    void* STDMETHODCALLTYPE PostRealloc(void* block, BOOL) noexcept override { return block; }
    void* STDMETHODCALLTYPE PreGetSize(void* block, BOOL) noexcept override { return block; }
    SIZE_T STDMETHODCALLTYPE PostGetSize(SIZE_T size, BOOL) noexcept override { return size; }
    void* STDMETHODCALLTYPE PreDidAlloc(void* block, BOOL) noexcept override { return block; }
    int STDMETHODCALLTYPE PostDidAlloc(void*, BOOL, int actual) noexcept override { return actual; }
    void STDMETHODCALLTYPE PreHeapMinimize() noexcept override {}
    void STDMETHODCALLTYPE PostHeapMinimize() noexcept override {}

    long left = 0;
};

Spy spy;

} // namespace

HeapUse::HeapUse() noexcept : blocks_{blockCount}, bytes_{byteCount} { peakByteCount = bytes_; }

long long HeapUse::blocks() const noexcept { return blockCount - blocks_; }

std::size_t HeapUse::peakBytes() const noexcept { return static_cast<std::size_t>(peakByteCount - bytes_); }

AutomationBlocks::AutomationBlocks() {
    SetOaNoCache(); // freed BSTRs would be kept
    spy.left = 0;
    if (FAILED(CoRegisterMallocSpy(&spy))) {
        throw std::runtime_error{"COM's allocations cannot be counted"};
    }
}

AutomationBlocks::~AutomationBlocks() { CoRevokeMallocSpy(); }

long AutomationBlocks::left() const noexcept { return spy.left; }

} // namespace quorvane

void* operator new(std::size_t size) { return quorvane::allocate(size); }
void operator delete(void* block) noexcept { quorvane::release(block); }
void operator delete(void* block, std::size_t) noexcept { quorvane::release(block); }
