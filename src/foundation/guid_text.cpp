#include "src/foundation/guid_text.h"

#include <array>

namespace quorvane {

std::wstring guidText(REFGUID guid) {
    std::array<wchar_t, 39> text{};
    StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
    return text.data();
}

} // namespace quorvane
