// What a loaded module imports, and putting something else in its place: the module calls functions of other
// modules through a table of pointers, which can be changed without touching the module's code or its file.
#pragma once

#include "com/platform.h"

#include <functional>

namespace leak_gate {

/// Gives `change` each function that the module imports by name, with the DLL from which it comes and the
/// pointer through which it is called.
void forEachImport(HMODULE module,
                   const std::function<void(const char* from, const char* name, void** pointer)>& change);

/// Writes to memory that is read-only, such as tables of pointers.
void overwrite(void** pointer, void* value);

template <typename Function>
void* addressOf(Function* function) noexcept {
    return reinterpret_cast<void*>(function);
}

} // namespace leak_gate
