#include "src/foundation/text.h"

#include <algorithm>
#include <array>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#endif

namespace quorvane {

std::wstring foldAscii(std::wstring_view text) {
    std::wstring folded{text};
    std::transform(folded.begin(), folded.end(), folded.begin(), [](wchar_t c) { return foldAscii(c); });
    return folded;
}

bool matchesKeyword(std::wstring_view text, std::wstring_view keyword) noexcept {
    return text.size() == keyword.size() &&
           std::equal(text.begin(), text.end(), keyword.begin(),
                      [](wchar_t a, wchar_t b) { return foldAscii(a) == b; });
}

bool equalsFoldingAscii(std::wstring_view a, std::wstring_view b) noexcept {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) {
               return foldAscii(x) == foldAscii(y);
           });
}

namespace {

int compareNoCase(const wchar_t* a, const wchar_t* b) noexcept {
#ifdef _WIN32
    return lstrcmpiW(a, b);
#else
    return wcscasecmp(a, b);
#endif
}

} // namespace

bool equalsNoCase(const wchar_t* a, const wchar_t* b) noexcept {
    const bool emptyA = a == nullptr || *a == L'\0';
    const bool emptyB = b == nullptr || *b == L'\0';
    if (emptyA || emptyB) {
        return emptyA && emptyB;
    }
    return compareNoCase(a, b) == 0;
}

bool precedesInList(const wchar_t* a, const wchar_t* b) noexcept {
    return compareNoCase(a == nullptr ? L"" : a, b == nullptr ? L"" : b) < 0;
}

std::wstring utf8ToWide(const char* text) {
    if (text == nullptr) {
        return {};
    }
#ifdef _WIN32
    // Messages are short: the usual one converts in place.
    std::array<wchar_t, 128> inlineBuffer{};
    const int needed = MultiByteToWideChar(CP_UTF8, 0, text, -1, nullptr, 0);
    if (needed <= 0) {
        return {};
    }
    if (needed <= static_cast<int>(inlineBuffer.size())) {
        const int written = MultiByteToWideChar(CP_UTF8, 0, text, -1, inlineBuffer.data(), needed);
        return std::wstring(inlineBuffer.data(), static_cast<std::size_t>(std::max(written - 1, 0)));
    }
    std::vector<wchar_t> heapBuffer(static_cast<std::size_t>(needed));
    const int written = MultiByteToWideChar(CP_UTF8, 0, text, -1, heapBuffer.data(), needed);
    return std::wstring(heapBuffer.data(), static_cast<std::size_t>(std::max(written - 1, 0)));
#else
    std::wstring wide;
    for (const char* c = text; *c != '\0'; ++c) {
        wide.push_back(static_cast<wchar_t>(static_cast<unsigned char>(*c)));
    }
    return wide;
#endif
}

std::wstring joined(std::wstring_view before, std::wstring_view name, std::wstring_view after) {
    std::wstring text;
    text.reserve(before.size() + name.size() + after.size());
    text.append(before).append(name).append(after);
    return text;
}

} // namespace quorvane
