#include "tests/random/messages.h"

#include "com/platform.h"
#include "tests/scripted_package/variants.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace chance {

namespace {

std::filesystem::path besideProgram(const wchar_t* file) {
    wchar_t program[1024];
    GetModuleFileNameW(nullptr, program, static_cast<DWORD>(std::size(program)));
    return std::filesystem::path{program}.parent_path() / file;
}

// What stands in angle brackets varies; a message that is nothing else is meant as it stands.
std::wstring patternOf(const std::wstring& message) {
    if (message.starts_with(L'<') && message.find(L'>') == message.size() - 1) {
        return message;
    }
    std::wstring pattern;
    std::size_t at = 0;
    while (at < message.size()) {
        const std::size_t open = message.find(L'<', at);
        pattern += message.substr(at, open - at);
        const std::size_t close = open == std::wstring::npos ? open : message.find(L'>', open);
        if (close == std::wstring::npos) {
            break;
        }
        pattern += L'\0';
        at = close + 1;
    }
    return pattern;
}

} // namespace

bool matches(std::wstring_view pattern, std::wstring_view text) {
    std::size_t star = std::wstring_view::npos; // the last place of something that varies
    std::size_t resume = 0;
    std::size_t p = 0;
    std::size_t t = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == L'\0') {
            star = p++;
            resume = t;
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (star != std::wstring_view::npos) {
            p = star + 1;
            t = ++resume;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(L'\0', p) == std::wstring_view::npos;
}

Messages::Messages() {
    std::ifstream file{besideProgram(L"messages.tsv"), std::ios::binary};
    for (std::string line; std::getline(file, line);) {
        const std::size_t tab = line.find('\t');
        if (!line.starts_with('#') && tab != std::string::npos) {
            patterns_.push_back(patternOf(scripted::wide(line.substr(0, tab))));
        }
    }
    if (patterns_.empty()) {
        throw std::runtime_error{"messages.tsv beside the program cannot be read"};
    }
}

bool Messages::describe(const std::wstring& text) const {
    for (const std::wstring& pattern : patterns_) {
        if (matches(pattern, text)) {
            return true;
        }
    }
    return false;
}

} // namespace chance
