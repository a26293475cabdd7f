// A stream over bytes that behaves as streams may: it can hand out less than was asked for, take less than
// was given, fail, and lie about the count.
#pragma once

#include "tests/refusing_stream.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace peng_robinson::test {

class ByteStream final : public quorvane::test::RefusingStream {
  public:
    std::vector<std::uint8_t> bytes;
    std::size_t position = 0;
    std::size_t largestPiece = ~std::size_t{0}; ///< of one call
    HRESULT failure = S_OK;                     ///< of every call
    ULONG additionalCount = 0;                  ///< that a read tells, but does not hand out

    HRESULT STDMETHODCALLTYPE Read(void* target, ULONG size, ULONG* count) noexcept override {
        if (FAILED(failure)) {
            return failure;
        }
        const std::size_t given = std::min({std::size_t{size}, largestPiece, bytes.size() - position});
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(position), given,
                    static_cast<std::uint8_t*>(target));
        position += given;
        *count = static_cast<ULONG>(given) + additionalCount;
        return given == size ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Write(const void* source, ULONG size, ULONG* count) noexcept override {
        if (FAILED(failure)) {
            return failure;
        }
        const std::size_t taken = std::min(std::size_t{size}, largestPiece);
        const auto* const first = static_cast<const std::uint8_t*>(source);
        bytes.insert(bytes.end(), first, first + taken);
        *count = static_cast<ULONG>(taken);
        return S_OK;
    }
};

} // namespace peng_robinson::test
