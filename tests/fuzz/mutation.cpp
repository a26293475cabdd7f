#include "tests/fuzz/mutation.h"

#include <algorithm>
#include <string_view>

namespace fuzz {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t longestInput = 4096;
constexpr std::size_t mostMutations = 6;
// Characters and bytes at which readers decide something.
constexpr std::string_view telling = "\0\x01\x7F\x80\xFF\"\",;:=+-.#$()[]\r\n\t 019AEaz"sv;

std::ptrdiff_t offset(std::size_t position) { return static_cast<std::ptrdiff_t>(position); }

} // namespace

Bytes Mutator::next() {
    Bytes bytes = anySeed();
    for (std::size_t count = 1 + below(mostMutations); count > 0; --count) {
        mutate(bytes);
    }
    bytes.resize(std::min(bytes.size(), longestInput));
    return bytes;
}

void Mutator::mutate(Bytes& bytes) {
    const std::size_t at = below(bytes.size());
    const auto telltale = static_cast<std::uint8_t>(telling[below(telling.size())]);
    const std::size_t kind = bytes.empty() ? 0 : below(7);
    switch (kind) {
    case 0:
        bytes.insert(bytes.begin() + offset(at), telltale);
        break;
    case 1:
        bytes[at] = telltale;
        break;
    case 2:
        bytes[at] ^= static_cast<std::uint8_t>(1U << below(8));
        break;
    case 3:
        bytes[at] = static_cast<std::uint8_t>(below(256));
        break;
    case 4:
        bytes.erase(bytes.begin() + offset(at),
                    bytes.begin() + offset(at + 1 + below(std::min<std::size_t>(bytes.size() - at, 16))));
        break;
    case 5:
        insertPieceOf(Bytes{bytes}, bytes);
        break;
    default:
        insertPieceOf(anySeed(), bytes);
    }
}

void Mutator::insertPieceOf(const Bytes& source, Bytes& bytes) {
    const std::size_t from = below(source.size());
    const std::size_t length = std::min(source.size() - from, 1 + below(64));
    bytes.insert(bytes.begin() + offset(below(bytes.size() + 1)), source.begin() + offset(from),
                 source.begin() + offset(from + length));
}

} // namespace fuzz
