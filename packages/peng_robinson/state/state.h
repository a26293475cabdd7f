// The saved state of a package: its compounds and the binary parameters that were changed, as bytes. What the
// catalogue says is not saved: a package opens with the values that the catalogue has then.
//
//   8 bytes   tag "TwkPRpkg"                   4 bytes  version, 1
//   4 bytes   size of the rest in bytes        4 bytes  CRC-32 of the rest
//   text      origin of the catalogue          2 bytes  number of compounds
//   texts     their names, in order            4 bytes  number of changed parameters
//   for each: 2 + 2 bytes positions of the two compounds among these, 8 bytes value (IEEE 754 double)
//
// Integers are unsigned, the low byte first; a text is UTF-8 after 2 bytes with its size.
#pragma once

#include "packages/peng_robinson/catalogue/configuration.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace peng_robinson {

using Bytes = std::vector<std::uint8_t>;

/// Bytes that are no state, or a state that does not fit the catalogue.
class StateError : public std::runtime_error {
  public:
    enum class Kind { notAState, unknownVersion, truncated, damaged, unfitting };

    StateError(Kind kind, const std::string& message) : std::runtime_error{message}, kind_{kind} {}
    Kind kind() const noexcept { return kind_; }

  private:
    Kind kind_;
};

Bytes writeState(const Configuration& configuration);

inline constexpr std::size_t stateHeaderSize = 20;

/// The number of bytes that follow the header. Throws StateError for a header that is none.
std::size_t sizeAfterHeader(std::span<const std::uint8_t> header);

/// Reads a whole state, header included. Throws StateError.
Selection readState(std::span<const std::uint8_t> state, const Catalogue& catalogue);

} // namespace peng_robinson
