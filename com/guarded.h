// The frame of what COM calls where a code is the whole answer: class factories, exports.
#pragma once

#include "com/platform.h"

#include <new>
#include <utility>

namespace com {

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
