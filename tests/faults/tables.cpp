#include "tests/faults/tables.h"

#include "com/platform.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <stdexcept>

namespace faults {

namespace {

std::vector<std::vector<std::string>> rowsOf(const wchar_t* file, std::size_t columns) {
    wchar_t program[1024];
    GetModuleFileNameW(nullptr, program, static_cast<DWORD>(std::size(program)));
    std::wstring path{program};
    path.resize(path.rfind(L'\\') + 1);
    std::ifstream stream{(path + file).c_str(), std::ios::binary};
    std::vector<std::vector<std::string>> rows;
    for (std::string line; std::getline(stream, line);) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        rows.push_back(split(line, "\t"));
        if (rows.back().size() != columns) {
            throw std::runtime_error{"A row of a table has not its columns: " + line};
        }
    }
    if (rows.empty()) {
        throw std::runtime_error{"A table is not beside the program"};
    }
    return rows;
}

std::vector<ArrayRow> arrayRows(const wchar_t* file) {
    std::vector<ArrayRow> rows;
    for (const auto& row : rowsOf(file, 10)) {
        rows.push_back({row[0], row[1], row[2], row[3], row[4], row[5], row[6], row[7], row[8], row[9]});
    }
    return rows;
}

} // namespace

std::vector<std::string> split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = text.find(separator, begin)) != std::string::npos;
         begin = end + separator.size()) {
        parts.push_back(text.substr(begin, end - begin));
    }
    parts.push_back(text.substr(begin));
    return parts;
}

std::string inNames(const std::string& text) {
    std::string name;
    bool first = true;
    for (const char c : text) {
        const auto letter = static_cast<unsigned char>(c);
        if (std::isalnum(letter) != 0) {
            name += first ? static_cast<char>(std::toupper(letter)) : c;
        }
        first = std::isalnum(letter) == 0;
    }
    return name;
}

std::string Call::outcome(const std::string& code) const {
    for (const std::string& exception : split(except, "; ")) {
        if (exception.starts_with(code + " ")) {
            return exception.substr(code.size() + 1);
        }
    }
    return code == "S_FALSE" ? "-" : failure;
}

const std::vector<Call>& calls() {
    static const std::vector<Call> read = [] {
        std::vector<Call> all;
        for (const auto& row : rowsOf(L"calls.tsv", 8)) {
            if (row[5] != "every property below") {
                all.push_back({row[0], row[1], row[2], row[4], row[5], row[6], row[7]});
            }
        }
        return all;
    }();
    return read;
}

const Call& callNamed(const std::string& name) {
    const auto found = std::ranges::find(calls(), name, &Call::name);
    if (found == calls().end()) {
        throw std::runtime_error{"The table has no call " + name};
    }
    return *found;
}

std::string ArrayRow::name() const { return call + (place.size() == 1 ? "Output" : "") + inNames(place); }

const std::vector<ArrayRow>& outputs() {
    static const std::vector<ArrayRow> read = arrayRows(L"outputs.tsv");
    return read;
}

const std::vector<ArrayRow>& writes() {
    static const std::vector<ArrayRow> read = arrayRows(L"writes.tsv");
    return read;
}

const std::vector<NameRow>& writtenNames() {
    static const std::vector<NameRow> read = [] {
        std::vector<NameRow> all;
        for (const auto& row : rowsOf(L"names.tsv", 6)) {
            all.push_back({row[0], row[1], row[2], row[3], row[4], row[5]});
        }
        return all;
    }();
    return read;
}

const std::map<std::string, std::string>& resultsWithoutFault() {
    static const std::map<std::string, std::string> read = [] {
        std::map<std::string, std::string> all;
        for (const auto& row : rowsOf(L"ways.tsv", 2)) {
            all[row[0]] = row[1];
        }
        return all;
    }();
    return read;
}

} // namespace faults
