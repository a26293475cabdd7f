// What was compressed comes back, a cut stream gives its beginning, any stream gives what zlib's own one-call
// function makes of it, and nothing exceeds the limit.
#include "src/workbook/saved_state/compression.h"

#include "src/foundation/exceptions.h"
#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <optional>
#include <zlib.h>

namespace fuzz {

namespace {

constexpr std::size_t limit = 1U << 16U;

std::optional<Bytes> inflatedWithin(const Bytes& stream, std::size_t most) {
    try {
        quorvane::InflationAllowance allowance{most};
        return quorvane::inflated(stream, allowance);
    } catch (const quorvane::CWStrException&) {
        return std::nullopt;
    }
}

void requireHonest(const Bytes& stream) {
    const std::optional<Bytes> bytes = inflatedWithin(stream, limit);
    Bytes expected(limit);
    uLongf size = expected.size();
    if (uncompress(expected.data(), &size, stream.data(), stream.size()) == Z_OK) {
        expected.resize(size);
        require(bytes == expected, "a whole stream gives what zlib makes of it");
    }
    if (bytes) {
        require(bytes->size() <= limit, "no more than the limit");
        require(inflatedWithin(stream, bytes->size()) == bytes, "the limit itself is allowed");
        require(bytes->empty() || !inflatedWithin(stream, bytes->size() - 1), "one more is refused");
    }
}

void requireRoundTrip(const Bytes& bytes, std::size_t cut) {
    Bytes stream = quorvane::deflated(bytes);
    require(stream.size() <= bytes.size(), "compressing never lengthens");
    if (stream.size() == bytes.size()) {
        return; // perhaps only a piece
    }
    require(inflatedWithin(stream, bytes.size()) == bytes, "inflated as deflated");
    stream.resize(cut % (stream.size() + 1));
    const std::optional<Bytes> part = inflatedWithin(stream, bytes.size());
    require(part && part->size() <= bytes.size() && std::equal(part->begin(), part->end(), bytes.begin()),
            "a cut stream gives the beginning");
}

} // namespace

void run(Input input) {
    const std::size_t cut = input.word();
    const std::size_t copies = 1 + input.byte() % 16;
    const auto rest = input.rest();
    const Bytes bytes{rest.begin(), rest.end()};
    requireHonest(bytes);
    Bytes stream{0x78, 0xDA}; // the header of every stream that deflated() makes
    stream.insert(stream.end(), bytes.begin(), bytes.end());
    requireHonest(stream);
    Bytes repetitive;
    for (std::size_t i = 0; i < copies; ++i) {
        repetitive.insert(repetitive.end(), bytes.begin(), bytes.end());
    }
    requireRoundTrip(repetitive, cut);
}

} // namespace fuzz
