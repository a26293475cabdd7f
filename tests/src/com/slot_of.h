// The place of a virtual member in the table that callers in other modules count on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace quorvane {

/// GCC and clang keep "1 + byte offset" in a pointer to a virtual member, so the slot can be read from it.
template <typename Method>
std::size_t slotOf(Method method) noexcept {
    struct {
        std::uintptr_t code;
        std::ptrdiff_t adjustment;
    } raw{};
    static_assert(sizeof raw == sizeof method);
    std::memcpy(&raw, &method, sizeof raw);
    return (raw.code - 1) / sizeof(void*);
}

} // namespace quorvane
