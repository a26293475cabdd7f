// The frame of what COM calls where a code is the whole answer: class factories, exports.
#pragma once

#include "com/platform.h"

#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

namespace com {

/// Throws for the first time on this thread, and catches it: GCC's run time takes memory for a thread's first
/// exception, and ends the process when it cannot have that, which would be the end of Excel at the moment at
/// which a method is to report that there is no memory. So it is done where a thread first comes to the
/// module, and not at all when there is no memory for it: then the answer is false.
inline bool isReadyToThrow() noexcept {
    constexpr std::size_t ample = 4096; // the run time takes a few hundred bytes
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): GCC's operator new throws inside, also where it must not
    void* const memory = std::malloc(ample);
    std::free(memory); // NOLINT(cppcoreguidelines-no-malloc)
    if (memory == nullptr) {
        return false;
    }
    try {
        throw std::bad_alloc{};
    } catch (const std::bad_alloc&) {
        return true;
    }
}

/// What `body` returns; E_OUTOFMEMORY for std::bad_alloc and `otherwise` for all else that is thrown.
template <typename Body>
HRESULT guarded(HRESULT otherwise, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return otherwise;
    }
}

} // namespace com
