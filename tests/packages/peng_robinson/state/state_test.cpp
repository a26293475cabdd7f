#include "packages/peng_robinson/state/state.h"

#include <bit>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace peng_robinson::test {
namespace {

constexpr std::size_t nitrogen = 0, carbonDioxide = 1, methane = 3, ethane = 4;

Configuration gas() {
    return {builtInCatalogue(),
            {{methane, nitrogen, ethane}, {{{nitrogen, methane}, 0.05}, {{methane, ethane}, -0.01}}}};
}

Selection read(const Bytes& state) { return readState(state, *builtInCatalogue()); }

/// What reading says, "kind: message".
std::string failure(const Bytes& state, const Catalogue& catalogue = *builtInCatalogue()) {
    constexpr const char* kinds[] = {"no state", "unknown version", "truncated", "damaged", "unfitting"};
    try {
        readState(state, catalogue);
    } catch (const StateError& error) {
        return std::string{kinds[static_cast<int>(error.kind())]} + ": " + error.what();
    }
    return "read";
}

void put(Bytes& bytes, std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

void put(Bytes& bytes, std::string_view text) {
    put(bytes, text.size(), 2);
    bytes.insert(bytes.end(), text.begin(), text.end());
}

struct Change {
    std::uint64_t first, second;
    double k;
};

// A state by its description, written without the code that is tested; the checksum is that of zlib.
Bytes stateOf(std::string_view origin, const std::vector<std::string>& names,
              const std::vector<Change>& changes, std::string_view rest = {}) {
    Bytes body;
    put(body, origin);
    put(body, names.size(), 2);
    for (const std::string& name : names) {
        put(body, name);
    }
    put(body, changes.size(), 4);
    for (const auto& [first, second, k] : changes) {
        put(body, first, 2);
        put(body, second, 2);
        put(body, std::bit_cast<std::uint64_t>(k), 8);
    }
    body.insert(body.end(), rest.begin(), rest.end());
    std::uint32_t sum = 0xFFFFFFFFU;
    for (const std::uint8_t byte : body) {
        sum ^= byte;
        for (int i = 0; i < 8; ++i) {
            sum = sum % 2 == 1 ? (sum / 2) ^ 0xEDB88320U : sum / 2;
        }
    }
    Bytes state;
    for (const char c : std::string_view{"TwkPRpkg"}) {
        state.push_back(static_cast<std::uint8_t>(c));
    }
    put(state, 1, 4);
    put(state, body.size(), 4);
    put(state, ~sum, 4);
    state.insert(state.end(), body.begin(), body.end());
    return state;
}

TEST(State, CompoundsTheirOrderAndChangedParametersComeBack) {
    EXPECT_EQ(read(writeState(gas())), gas().selection());
}

TEST(State, AllCompoundsWithEveryParameterChangedComeBack) {
    const auto catalogue = builtInCatalogue();
    Selection selection = Configuration::allOf(catalogue).selection();
    for (std::size_t i = 0; i < catalogue->compounds.size(); ++i) {
        for (std::size_t j = i + 1; j < catalogue->compounds.size(); ++j) {
            selection.changed[{i, j}] = 1.0 / static_cast<double>(3 + i + 7 * j);
        }
    }
    EXPECT_EQ(read(writeState({catalogue, selection})), selection);
}

TEST(State, BytesAreThoseOfTheDescribedFormat) {
    EXPECT_EQ(writeState(gas()),
              stateOf("", {"methane", "nitrogen", "ethane"}, {{1, 0, 0.05}, {0, 2, -0.01}}));
}

TEST(State, ChecksumIsTheOneOfArchives) {
    // CRC-32 of the body of "nitrogen" alone, from Python's zlib.crc32.
    const Bytes state = writeState({builtInCatalogue(), {{nitrogen}, {}}});
    const Bytes sum(state.begin() + 16, state.begin() + 20);
    EXPECT_EQ(sum, (Bytes{0x49, 0x0E, 0xC6, 0x08}));
}

TEST(State, SizeIsInTheHeader) {
    const Bytes state = writeState(gas());
    EXPECT_EQ(stateHeaderSize + sizeAfterHeader(std::span{state}.first(stateHeaderSize)), state.size());
}

TEST(State, EveryTruncationIsRefused) {
    const Bytes state = writeState(gas());
    for (std::size_t size = 0; size < state.size(); ++size) {
        EXPECT_EQ(failure({state.begin(), state.begin() + static_cast<std::ptrdiff_t>(size)}),
                  "truncated: The saved package ends too early")
            << size;
    }
}

TEST(State, EveryChangedBitIsRefused) {
    const Bytes state = writeState(gas());
    for (std::size_t bit = 0; bit < 8 * state.size(); ++bit) {
        Bytes changed = state;
        changed[bit / 8] = static_cast<std::uint8_t>(changed[bit / 8] ^ (1U << (bit % 8)));
        EXPECT_NE(failure(changed), "read") << bit;
    }
}

TEST(State, RandomBytesAreRefused) {
    std::mt19937 random{20240607};
    for (int i = 0; i < 20000; ++i) {
        Bytes state = i % 2 == 0 ? Bytes{} : writeState(gas());
        state.resize(i % 2 == 0 ? random() % 200 : state.size());
        for (auto changes = 1 + random() % 8; changes > 0 && !state.empty(); --changes) {
            state[random() % state.size()] = static_cast<std::uint8_t>(random());
        }
        if (state != writeState(gas())) {
            EXPECT_NE(failure(state), "read");
        }
    }
}

TEST(State, ForeignBytesAreNoSavedPackage) {
    EXPECT_EQ(failure(Bytes(100, 7)), "no state: This is no saved package");
}

TEST(State, UnknownVersionIsNamed) {
    Bytes state = writeState(gas());
    state[8] = 2;
    EXPECT_EQ(failure(state),
              "unknown version: The package was saved in the format 2; this version reads the "
              "format 1");
}

TEST(State, AbsurdSizeIsDamaged) {
    Bytes state = writeState(gas());
    state[15] = 0xFF;
    EXPECT_EQ(failure(state), "damaged: The saved package is damaged");
}

TEST(State, AbsurdCountsEndWithTheBytes) {
    Bytes state = stateOf("", std::vector<std::string>(60000, "methane"), {});
    EXPECT_EQ(failure(state), "damaged: The saved package is damaged");
    state = stateOf("", {"methane", "ethane"}, {});
    EXPECT_EQ(read(state).compounds, (std::vector<std::size_t>{methane, ethane}));
}

TEST(State, UnknownCompoundIsNamed) {
    EXPECT_EQ(
        failure(stateOf("", {"methane", "unobtainium"}, {})),
        "unfitting: The saved package has the compound \"unobtainium\", which is not among those of the "
        "built-in compounds");
}

TEST(State, CompoundsAreFoundInAnyCase) {
    EXPECT_EQ(read(stateOf("", {"Carbon Dioxide"}, {})).compounds, std::vector<std::size_t>{carbonDioxide});
}

TEST(State, StateOfADefinitionFitsThatDefinitionOnly) {
    EXPECT_EQ(
        failure(stateOf("Field 7", {"methane"}, {})),
        "unfitting: The saved package was made from the package definition \"Field 7\", but this one is made "
        "from the built-in compounds");
    Catalogue definition;
    definition.origin = "Field 8";
    EXPECT_EQ(
        failure(stateOf("", {"methane"}, {}), definition),
        "unfitting: The saved package was made from the built-in compounds, but this one is made from the "
        "package definition \"Field 8\"");
}

TEST(State, CompoundThatADefinitionNoLongerHasIsNamed) {
    Catalogue definition;
    definition.origin = "Field 7";
    EXPECT_EQ(
        failure(stateOf("field 7", {"methane"}, {}), definition),
        "unfitting: The saved package has the compound \"methane\", which is not among those of the package "
        "definition \"Field 7\"");
}

TEST(State, ImpossibleContentsAreDamage) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const std::string damaged = "damaged: The saved package is damaged";
    const std::vector<std::string> names{"methane", "nitrogen"};
    EXPECT_EQ(failure(stateOf("", {}, {})), damaged) << "no compounds";
    EXPECT_EQ(failure(stateOf("", {"methane", "METHANE"}, {})), damaged) << "a compound twice";
    EXPECT_EQ(failure(stateOf("", names, {{0, 2, 0.1}})), damaged) << "a position beyond the compounds";
    EXPECT_EQ(failure(stateOf("", names, {{1, 1, 0.1}})), damaged) << "a compound with itself";
    EXPECT_EQ(failure(stateOf("", names, {{0, 1, 0.1}, {1, 0, 0.2}})), damaged) << "a pair twice";
    EXPECT_EQ(failure(stateOf("", names, {{0, 1, nan}})), damaged) << "no number";
    EXPECT_EQ(failure(stateOf("", names, {{0, 1, 1.5}})), damaged) << "an impossible parameter";
    EXPECT_EQ(failure(stateOf("", names, {{0, 1, 0.1}}, "more")), damaged) << "bytes beyond the end";
    EXPECT_EQ(read(stateOf("", names, {{0, 1, 0.1}})).changed.size(), 1u);
}

} // namespace
} // namespace peng_robinson::test
