#include "sheet/formula/utf8.h"

#include <algorithm>
#include <array>

namespace sheet::formula {

namespace {

struct Form {
    unsigned char firstLow, firstHigh; // the leading byte
    unsigned char secondLow,
        secondHigh; // narrower than 80..BF where longer forms and surrogates would creep in
    std::size_t length;
};

constexpr std::array forms{
    Form{0x00, 0x7F, 0x00, 0x00, 1}, Form{0xC2, 0xDF, 0x80, 0xBF, 2}, Form{0xE0, 0xE0, 0xA0, 0xBF, 3},
    Form{0xE1, 0xEC, 0x80, 0xBF, 3}, Form{0xED, 0xED, 0x80, 0x9F, 3}, Form{0xEE, 0xEF, 0x80, 0xBF, 3},
    Form{0xF0, 0xF0, 0x90, 0xBF, 4}, Form{0xF1, 0xF3, 0x80, 0xBF, 4}, Form{0xF4, 0xF4, 0x80, 0x8F, 4},
};

bool between(unsigned char low, char c, unsigned char high) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= low && byte <= high;
}

bool matches(std::string_view text, const Form& form) {
    if (!between(form.firstLow, text[0], form.firstHigh) || text.size() < form.length) {
        return false;
    }
    for (std::size_t i = 1; i < form.length; ++i) {
        if (!between(i == 1 ? form.secondLow : 0x80, text[i], i == 1 ? form.secondHigh : 0xBF)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::size_t firstInvalidUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view rest = text.substr(at);
        const auto form = std::ranges::find_if(forms, [rest](const Form& f) { return matches(rest, f); });
        if (form == forms.end()) {
            return at;
        }
        at += form->length;
    }
    return std::string_view::npos;
}

std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return !between(0x80, c, 0xBF); }));
}

std::size_t utf16Length(std::string_view text) {
    // A four-byte form is a surrogate pair.
    return characterCount(text) + static_cast<std::size_t>(std::ranges::count_if(
                                      text, [](char c) { return between(0xF0, c, 0xF4); }));
}

} // namespace sheet::formula
