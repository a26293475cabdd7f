// What every fuzzer is made of. A fuzzer defines run(), which makes something of arbitrary bytes and holds
// the product to its promises; libFuzzer (libfuzzer.cpp) or a GoogleTest program (driver.cpp) calls it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

using Bytes = std::vector<std::uint8_t>;

/// Bytes to be taken from the front; beyond the end come zeros and empty texts.
class Input {
  public:
    explicit Input(std::span<const std::uint8_t> bytes) : left_{bytes} {}

    bool empty() const { return left_.empty(); }
    std::uint8_t byte();
    /// Little end first.
    std::uint16_t word();
    /// Up to the next line feed, which is taken too.
    std::string_view line();
    std::span<const std::uint8_t> take(std::size_t count);
    std::span<const std::uint8_t> rest() { return take(left_.size()); }
    std::string_view text();

  private:
    std::span<const std::uint8_t> left_;
};

/// Throws what libFuzzer reports as a crash and the driver as a failure.
class Broken : public std::logic_error {
  public:
    using std::logic_error::logic_error;
};
void require(bool holds, const char* promise);

/// A byte below 0x80 is that unit; a greater one and the byte after it are a unit from 0x8000 to 0xFFFF,
/// surrogates included. So seeds are plain text.
std::wstring wide(std::string_view text);

/// `text` again and again until it has `length` units, for lengths that no small input has.
std::wstring repeated(std::wstring_view text, std::size_t length);

/// The parts between the separators; one part more than there are separators.
std::vector<std::wstring> parts(std::wstring_view text, wchar_t separator);

/// What one fuzzer does with one input.
void run(Input input);

} // namespace fuzz
