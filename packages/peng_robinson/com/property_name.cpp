#include "packages/peng_robinson/com/property_name.h"

#include "packages/peng_robinson/com/values.h"

#include <algorithm>

namespace peng_robinson {

std::optional<PropertyName> readPropertyName(std::wstring_view name) noexcept {
    const std::size_t dot = std::min(name.find(L'.'), name.size());
    const std::wstring_view suffix = name.substr(dot);
    for (const DerivativeName& known : derivativeNames) {
        if (isSameName(known.suffix, suffix)) {
            return PropertyName{name.substr(0, dot), known.derivative};
        }
    }
    return std::nullopt;
}

} // namespace peng_robinson
