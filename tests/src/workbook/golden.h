// The tables in golden/, which a tool of somebody else's wrote, and the states that they hold.
#pragma once

#include "src/workbook/saved_state/state_text.h"

namespace quorvane {

/// golden/NAME.csv, row by row.
std::vector<std::vector<std::wstring>> goldenTable(const std::string& name);

// The saved bytes, as golden/make.pl makes them: one value throughout, bytes that cannot be compressed, and
// bytes that can be compressed a little.
Bytes repeated(std::size_t count);
Bytes noise(std::size_t count);
Bytes letters(std::size_t count);

/// Bytes of a text in plain characters.
Bytes bytesOf(std::string_view text);

// States that are alone in their table.
std::wstring stateTextOf(std::span<const std::uint8_t> bytes);
Bytes bytesOfStateText(std::wstring_view text);

} // namespace quorvane
