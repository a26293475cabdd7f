#include "packages/peng_robinson/state/state.h"

#include <algorithm>
#include <bit>
#include <string_view>

namespace peng_robinson {
namespace {

using Kind = StateError::Kind;

constexpr std::string_view tag = "TwkPRpkg";
constexpr std::uint32_t version = 1;
// Many times the largest state: a header that promises more is damaged.
constexpr std::size_t largestSize = 1U << 22;

class Writer {
  public:
    void integer(std::uint64_t value, int size) {
        for (int i = 0; i < size; ++i) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
    }
    void characters(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
    void text(std::string_view text) {
        integer(text.size(), 2);
        characters(text);
    }
    void append(const Bytes& bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
    Bytes take() { return std::move(bytes_); }

  private:
    Bytes bytes_;
};

class Reader {
  public:
    explicit Reader(std::span<const std::uint8_t> bytes) : left_{bytes} {}

    std::uint64_t integer(std::size_t size) {
        const auto bytes = take(size);
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            value |= std::uint64_t{bytes[i]} << (8 * i);
        }
        return value;
    }
    std::string characters(std::size_t size) {
        const auto bytes = take(size);
        return {bytes.begin(), bytes.end()};
    }
    std::string text() { return characters(integer(2)); }
    std::span<const std::uint8_t> rest() const { return left_; }

  private:
    std::span<const std::uint8_t> take(std::size_t size) {
        if (size > left_.size()) {
            throw StateError{Kind::truncated, "The saved package ends too early"};
        }
        const auto taken = left_.first(size);
        left_ = left_.subspan(size);
        return taken;
    }

    std::span<const std::uint8_t> left_;
};

// As in IEEE 802.3 and in every archive format.
std::uint32_t checksum(std::span<const std::uint8_t> bytes) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
        }
    }
    return ~crc;
}

[[noreturn]] void refuseDamaged() { throw StateError{Kind::damaged, "The saved package is damaged"}; }

std::string quoted(std::string_view text) { return "\"" + std::string{text} + "\""; }

std::string describe(const Catalogue& catalogue) {
    return catalogue.origin.empty() ? "the built-in compounds"
                                    : "the package definition " + quoted(catalogue.origin);
}

void requireOrigin(const std::string& origin, const Catalogue& catalogue) {
    if (!isSameName(origin, catalogue.origin)) {
        Catalogue saved;
        saved.origin = origin;
        throw StateError{Kind::unfitting, "The saved package was made from " + describe(saved) +
                                              ", but this one is made from " + describe(catalogue)};
    }
}

std::vector<std::size_t> readCompounds(Reader& reader, const Catalogue& catalogue) {
    const std::uint64_t count = reader.integer(2);
    if (count == 0) {
        refuseDamaged();
    }
    std::vector<std::size_t> compounds;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::string name = reader.text();
        const std::optional<std::size_t> position = catalogue.find(name);
        if (!position) {
            throw StateError{Kind::unfitting, "The saved package has the compound " + quoted(name) +
                                                  ", which is not among those of " + describe(catalogue)};
        }
        if (std::ranges::find(compounds, *position) != compounds.end()) {
            refuseDamaged();
        }
        compounds.push_back(*position);
    }
    return compounds;
}

void readChangedParameters(Reader& reader, Selection& selection) {
    const std::uint64_t count = reader.integer(4);
    const std::size_t compounds = selection.compounds.size();
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t first = reader.integer(2), second = reader.integer(2);
        const auto k = std::bit_cast<double>(reader.integer(8));
        if (first >= compounds || second >= compounds || first == second || !isInteraction(k)) {
            refuseDamaged();
        }
        const CompoundPair pair = pairOf(selection.compounds[first], selection.compounds[second]);
        if (!selection.changed.emplace(pair, k).second) {
            refuseDamaged();
        }
    }
}

} // namespace

Bytes writeState(const Configuration& configuration) {
    const Selection& selection = configuration.selection();
    const auto chosenPosition = [&selection](std::size_t compound) {
        return static_cast<std::uint64_t>(std::ranges::find(selection.compounds, compound) -
                                          selection.compounds.begin());
    };
    Writer body;
    body.text(configuration.catalogue().origin);
    body.integer(configuration.size(), 2);
    for (std::size_t i = 0; i < configuration.size(); ++i) {
        body.text(configuration.compound(i).name);
    }
    body.integer(selection.changed.size(), 4);
    for (const auto& [pair, k] : selection.changed) {
        body.integer(chosenPosition(pair.first), 2);
        body.integer(chosenPosition(pair.second), 2);
        body.integer(std::bit_cast<std::uint64_t>(k), 8);
    }
    const Bytes bytes = body.take();
    Writer state;
    state.characters(tag);
    state.integer(version, 4);
    state.integer(bytes.size(), 4);
    state.integer(checksum(bytes), 4);
    state.append(bytes);
    return state.take();
}

std::size_t sizeAfterHeader(std::span<const std::uint8_t> header) {
    Reader reader{header};
    if (reader.characters(tag.size()) != tag) {
        throw StateError{Kind::notAState, "This is no saved package"};
    }
    const std::uint64_t savedVersion = reader.integer(4);
    if (savedVersion != version) {
        throw StateError{Kind::unknownVersion,
                         "The package was saved in the format " + std::to_string(savedVersion) +
                             "; this version reads the format " + std::to_string(version)};
    }
    const std::uint64_t size = reader.integer(4);
    if (size > largestSize) {
        refuseDamaged();
    }
    return size;
}

Selection readState(std::span<const std::uint8_t> state, const Catalogue& catalogue) {
    Reader header{state};
    const std::size_t size = sizeAfterHeader(state);
    header.characters(stateHeaderSize - 4);
    const std::uint64_t sum = header.integer(4);
    Reader reader{header.rest()};
    if (reader.rest().size() < size) {
        throw StateError{Kind::truncated, "The saved package ends too early"};
    }
    if (reader.rest().size() != size || checksum(reader.rest()) != sum) {
        refuseDamaged();
    }
    requireOrigin(reader.text(), catalogue);
    Selection selection;
    selection.compounds = readCompounds(reader, catalogue);
    readChangedParameters(reader, selection);
    if (!reader.rest().empty()) {
        refuseDamaged();
    }
    return selection;
}

} // namespace peng_robinson
