#include "tests/leak_gate/import_table.h"

namespace leak_gate {

namespace {

template <typename T>
const T* at(HMODULE module, DWORD offset) {
    return reinterpret_cast<const T*>(reinterpret_cast<const char*>(module) + offset);
}

} // namespace

void forEachImport(HMODULE module,
                   const std::function<void(const char* from, const char* name, void** pointer)>& change) {
    const auto* const dos = at<IMAGE_DOS_HEADER>(module, 0);
    const auto* const headers = at<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
    const IMAGE_DATA_DIRECTORY& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (imports.Size == 0) {
        return;
    }
    for (const auto* from = at<IMAGE_IMPORT_DESCRIPTOR>(module, imports.VirtualAddress); from->Name != 0;
         ++from) {
        const auto* name = at<IMAGE_THUNK_DATA>(module, from->OriginalFirstThunk);
        const auto* pointer = at<IMAGE_THUNK_DATA>(module, from->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++pointer) {
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
                const auto* const entry =
                    at<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(name->u1.AddressOfData));
                // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): overwrite makes it writable
                auto* const changed = const_cast<IMAGE_THUNK_DATA*>(pointer);
                change(at<char>(module, from->Name), reinterpret_cast<const char*>(entry->Name),
                       reinterpret_cast<void**>(changed));
            }
        }
    }
}

void overwrite(void** pointer, void* value) {
    DWORD protection = 0;
    VirtualProtect(pointer, sizeof(void*), PAGE_READWRITE, &protection);
    *pointer = value;
    VirtualProtect(pointer, sizeof(void*), protection, &protection);
}

} // namespace leak_gate
