#include "src/workbook/saved_state/compression.h"

#include "src/foundation/exceptions.h"

#include <algorithm>
#include <bit>
#include <new>
#include <zlib.h>

namespace quorvane {

namespace {

constexpr int bestCompression = 9;
constexpr int windowBits = 15;
constexpr int memoryLevel = 8;

// Bytes that are decompressed at a time.
constexpr std::size_t smallestPiece = std::size_t{1} << 10U;
constexpr std::size_t largestPiece = std::size_t{1} << 20U;

// In the C++ heap, like everything else here.
voidpf allocate(voidpf, uInt count, uInt size) noexcept {
    static_assert(sizeof(std::size_t) >= 2 * sizeof(uInt), "the product fits");
    return operator new (std::size_t{count} * size, std::nothrow);
}
void release(voidpf, voidpf block) noexcept { operator delete(block); }

// zlib reads through a pointer to non-const, but does not write.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): zlib only reads it
Bytef* input(std::span<const std::uint8_t> bytes) noexcept { return const_cast<Bytef*>(bytes.data()); }

template <int (*End)(z_stream*)>
class Stream {
  public:
    explicit Stream(std::span<const std::uint8_t> bytes) noexcept {
        state.next_in = input(bytes);
        state.avail_in = static_cast<uInt>(bytes.size());
        state.zalloc = allocate;
        state.zfree = release;
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() { End(&state); }

    z_stream state{};
};

// Starting fails for want of memory only: the parameters are fixed, and the library is linked in.
void requireStarted(int code) {
    if (code != Z_OK) {
        throw std::bad_alloc{};
    }
}

// Reading it up to its limit took as long as restoring it.
[[noreturn]] void throwTooLarge(InflationAllowance& allowance) {
    const bool together = allowance.isNearlySpent();
    allowance.spend(allowance.next());
    throw CWStrException{
        together ? L"the saved states of this workbook are too large; at most 1 GB can be restored together"
                 : L"the saved state is too large; at most 256 MB can be restored"};
}

// Of what is only begun, if the rest is like the beginning and a little more: growing to it by doubling would
// copy it once more.
std::size_t expectedSize(const z_stream& begun, std::size_t compressedSize) noexcept {
    constexpr double margin = 1.02;
    const double read = std::max(1.0, static_cast<double>(begun.total_in));
    return static_cast<std::size_t>(margin * static_cast<double>(begun.total_out) *
                                    static_cast<double>(compressedSize) / read);
}

// Memory for `size` bytes of at most `limit`. What outgrows half the limit gets all of it: doubled, and
// copied from what there was, it would pass the limit by as much again.
void makeRoom(Bytes& bytes, std::size_t size, std::size_t limit) {
    if (size > bytes.capacity()) {
        const std::size_t wanted = std::max(size, 2 * bytes.capacity());
        bytes.reserve(wanted > limit / 2 ? limit : wanted);
    }
}

} // namespace

Bytes deflated(std::span<const std::uint8_t> bytes) {
    Bytes result(bytes.size());
    Stream<deflateEnd> stream{bytes};
    requireStarted(deflateInit2(&stream.state, bestCompression, Z_DEFLATED, windowBits, memoryLevel,
                                Z_DEFAULT_STRATEGY));
    stream.state.next_out = result.data();
    stream.state.avail_out = static_cast<uInt>(result.size());
    // One call: when the output is full before the end, compressing does not pay.
    static_cast<void>(deflate(&stream.state, Z_FINISH));
    result.resize(stream.state.total_out);
    return result;
}

Bytes inflated(std::span<const std::uint8_t> stream, InflationAllowance& allowance) {
    Stream<inflateEnd> reader{stream};
    requireStarted(inflateInit(&reader.state));
    const std::size_t limit = allowance.next();
    // Large pieces: after each one zlib copies its window, and within a few hundred bytes of an end it is
    // slow. A power of two, so that memory that is doubled as it fills comes to the limit without passing it.
    const std::size_t piece = std::bit_ceil(std::clamp(4 * stream.size(), smallestPiece, largestPiece));
    Bytes result;
    for (;;) {
        const std::size_t before = result.size();
        // At the limit the memory is not extended once more to learn that there is too much.
        const bool isFull = before == limit;
        std::uint8_t beyond = 0;
        const std::size_t room = isFull ? 1 : std::min(piece, limit - before);
        if (!isFull) {
            makeRoom(result, before + room, limit);
            result.resize(before + room);
        }
        reader.state.next_out = isFull ? &beyond : result.data() + before;
        reader.state.avail_out = static_cast<uInt>(room);
        if (inflate(&reader.state, Z_NO_FLUSH) == Z_MEM_ERROR) {
            throw std::bad_alloc{};
        }
        // The code says nothing more: a stream that has ended or is damaged leaves room.
        const bool hasEnded = reader.state.avail_out != 0;
        if (isFull && !hasEnded) {
            throwTooLarge(allowance);
        }
        if (!isFull) {
            result.resize(before + room - reader.state.avail_out);
        }
        if (before == 0 && !hasEnded) {
            makeRoom(result, std::min(expectedSize(reader.state, stream.size()), limit), limit);
        }
        if (hasEnded) {
            allowance.spend(result.size());
            return result;
        }
    }
}

} // namespace quorvane
