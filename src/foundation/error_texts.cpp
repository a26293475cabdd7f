#include "src/foundation/error_texts.h"

#include "com/com_ptr.h"
#include "src/foundation/exceptions.h"
#include "src/foundation/text.h"

#include <array>
#include <capeopen_idl.h>

namespace quorvane {

namespace {

constexpr auto firstCapeCode = static_cast<std::uint32_t>(ECapeUnknownHR);

// One text for each code from ECapeUnknownHR on. The first is a complaint on purpose: users see it when a
// package fails with the generic code and says nothing.
constexpr const wchar_t* capeTexts[] = {
    L"Failed to get error name for ECapeUnknown",
    L"invalid data",
    L"license problem",
    L"Bad Cape-Open parameter",
    L"Bad argument",
    L"Invalid argument",
    L"index out of bounds",
    L"current implementation related error",
    L"not implemented",
    L"implementation is limited",
    L"computation error",
    L"out of resources",
    L"out of memory",
    L"operation was timed out",
    L"initialization error",
    L"solution error",
    L"invalid order of invocations",
    L"invalid operation",
    L"storage / persistence error",
    L"illegal access",
    L"persistence error: not found",
    L"persistence system error",
    L"persistence overflow error",
    L"solver scope error",
    L"Hessian information not available",
    L"One or more of the requested thermodynamic properties are not set on the material",
};
static_assert(std::size(capeTexts) ==
              static_cast<std::uint32_t>(ECapeThrmPropertyNotAvailableHR) - firstCapeCode + 1);

} // namespace

std::wstring withoutLineEnding(std::wstring_view text) {
    if (text.ends_with(L'\n')) {
        text.remove_suffix(1);
        if (text.ends_with(L'\r')) {
            text.remove_suffix(1);
        }
    }
    return std::wstring{text.empty() ? L"<unknown error>" : text};
}

std::wstring systemErrorText(HRESULT code) {
    std::array<wchar_t, 1024> buffer{};
    constexpr auto size = static_cast<DWORD>(buffer.size());
    DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                       static_cast<DWORD>(code), LOCALE_USER_DEFAULT, buffer.data(), size, nullptr);
    if (length == 0) {
        DWORD_PTR arguments[] = {static_cast<DWORD>(code)};
        length = FormatMessageW(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY,
                                L"error code 0x%1!08X!", 0, 0, buffer.data(), size,
                                reinterpret_cast<va_list*>(arguments));
    }
    return withoutLineEnding({buffer.data(), length});
}

bool gaveText(HRESULT result, com::unique_bstr& text) noexcept {
    if (FAILED(result)) {
        static_cast<void>(text.release());
    }
    return !com::viewOf(text).empty();
}

std::wstring capeErrorText(IUnknown* object, HRESULT code) {
    const std::uint32_t index = static_cast<std::uint32_t>(code) - firstCapeCode;
    if (index >= std::size(capeTexts)) {
        return systemErrorText(code);
    }
    com::unique_bstr text;
    if (const auto user = com::queryFor<ECapeUser>(object)) {
        if (gaveText(user->get_description(text.put()), text)) {
            return std::wstring{com::viewOf(text)};
        }
    }
    if (const auto root = com::queryFor<ECapeRoot>(object)) {
        if (gaveText(root->get_name(text.put()), text)) {
            return std::wstring{com::viewOf(text)};
        }
    }
    return capeTexts[index];
}

void requireSuccess(HRESULT code, IUnknown* object, std::wstring_view context) {
    if (FAILED(code)) {
        throw WStrException{joined(context, capeErrorText(object, code))};
    }
}

} // namespace quorvane
