#include "src/foundation/registry_text.h"

#include <algorithm>

namespace quorvane {

std::wstring registryText(HKEY key, const wchar_t* name) {
    std::wstring text(256, L'\0');
    for (;;) {
        auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS status = RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ, nullptr, text.data(), &bytes);
        if (status == ERROR_SUCCESS) {
            return text.substr(0, text.find(L'\0'));
        }
        if (status != ERROR_MORE_DATA) {
            return {};
        }
        text.resize(std::max(2 * text.size(), bytes / sizeof(wchar_t) + 1));
    }
}

} // namespace quorvane
