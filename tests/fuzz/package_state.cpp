// A saved package is read as it was written; any bytes, also those with the right checksum, are read or
// refused.
#include "packages/peng_robinson/state/state.h"

#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <zlib.h>

namespace fuzz {

namespace {

using peng_robinson::Configuration;
using peng_robinson::Selection;

void append(Bytes& bytes, std::size_t number) {
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    }
}

/// With a header that fits: what a mutation of a whole state hardly ever has.
Bytes withHeader(const Bytes& body) {
    constexpr std::string_view tag = "TwkPRpkg";
    Bytes state{tag.begin(), tag.end()};
    append(state, 1);
    append(state, body.size());
    append(state, crc32(0, body.data(), static_cast<uInt>(body.size())));
    state.insert(state.end(), body.begin(), body.end());
    return state;
}

void requireRoundTrip(const Selection& selection) {
    const auto catalogue = peng_robinson::builtInCatalogue();
    require(!selection.compounds.empty(), "a package has a compound");
    const Bytes state = peng_robinson::writeState(Configuration{catalogue, selection});
    require(peng_robinson::sizeAfterHeader(state) + peng_robinson::stateHeaderSize == state.size(),
            "the header tells the size");
    require(peng_robinson::readState(state, *catalogue) == selection, "read as written");
}

void requireReadOrRefused(const Bytes& state) {
    try {
        const Selection selection = peng_robinson::readState(state, *peng_robinson::builtInCatalogue());
        std::vector<std::size_t> compounds = selection.compounds;
        std::ranges::sort(compounds);
        require(std::ranges::adjacent_find(compounds) == compounds.end(), "each compound is there once");
        for (const auto& [pair, k] : selection.changed) {
            require(pair.first < pair.second && peng_robinson::isInteraction(k), "a parameter has a pair");
        }
        requireRoundTrip(selection);
    } catch (const peng_robinson::StateError& refusal) {
        require(*refusal.what() != '\0', "a refusal says why");
    }
}

Selection selectionOf(Input input) {
    const std::size_t known = peng_robinson::builtInCatalogue()->compounds.size();
    Selection selection;
    for (std::size_t count = 1 + input.byte() % known; count > 0; --count) {
        const std::size_t compound = input.byte() % known;
        if (std::ranges::find(selection.compounds, compound) == selection.compounds.end()) {
            selection.compounds.push_back(compound);
        }
    }
    while (!input.empty()) {
        const std::size_t i = input.byte() % selection.compounds.size();
        const std::size_t j = input.byte() % selection.compounds.size();
        const double k = input.word() / 32768.0 - 1.0;
        if (i != j) {
            selection.changed[peng_robinson::pairOf(selection.compounds[i], selection.compounds[j])] = k;
        }
    }
    return selection;
}

} // namespace

void run(Input input) {
    requireRoundTrip(selectionOf(input));
    const auto rest = input.rest();
    const Bytes bytes{rest.begin(), rest.end()};
    requireReadOrRefused(bytes);
    requireReadOrRefused(withHeader(bytes));
}

} // namespace fuzz
