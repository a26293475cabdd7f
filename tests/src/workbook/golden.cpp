#include "tests/src/workbook/golden.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace quorvane {

std::vector<std::vector<std::wstring>> goldenTable(const std::string& name) {
    const std::string path = std::string{GOLDEN_FOLDER} + "/" + name + ".csv";
    std::ifstream file{path, std::ios::binary};
    if (!file) {
        throw std::runtime_error{path + " cannot be read"};
    }
    std::vector<std::vector<std::wstring>> table;
    for (std::string line; std::getline(file, line);) {
        line.back() = ','; // the carriage return
        std::vector<std::wstring>& row = table.emplace_back();
        for (std::size_t begin = 0; begin < line.size();) {
            const std::size_t end = line.find(',', begin);
            row.emplace_back(line.begin() + static_cast<std::ptrdiff_t>(begin),
                             line.begin() + static_cast<std::ptrdiff_t>(end));
            begin = end + 1;
        }
    }
    return table;
}

Bytes repeated(std::size_t count) { return Bytes(count, 'Q'); }

// xorshift32. Source: Marsaglia, "Xorshift RNGs", Journal of Statistical Software 8 (2003) 14.
Bytes noise(std::size_t count) {
    std::uint32_t x = 2463534242U;
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes) {
        x ^= x << 13U;
        x ^= x >> 17U;
        x ^= x << 5U;
        byte = static_cast<std::uint8_t>(x);
    }
    return bytes;
}

Bytes letters(std::size_t count) {
    Bytes bytes = noise(count);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(32 + (byte & 0x3F));
    }
    return bytes;
}

Bytes bytesOf(std::string_view text) { return Bytes(text.begin(), text.end()); }

std::wstring stateTextOf(std::span<const std::uint8_t> bytes) {
    InflationAllowance allowance;
    return stateTextOf(bytes, allowance);
}

Bytes bytesOfStateText(std::wstring_view text) {
    InflationAllowance allowance;
    return bytesOfStateText(text, allowance);
}

} // namespace quorvane
