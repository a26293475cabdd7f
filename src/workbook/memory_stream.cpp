#include "src/workbook/memory_stream.h"

#include <algorithm>
#include <limits>

namespace quorvane {

namespace {

constexpr std::uint64_t maximumSize = std::numeric_limits<std::uint32_t>::max();

void report(ULONG* out, std::uint64_t value) noexcept {
    if (out != nullptr) {
        *out = static_cast<ULONG>(value);
    }
}

void report(ULARGE_INTEGER* out, std::uint64_t value) noexcept {
    if (out != nullptr) {
        out->QuadPart = value;
    }
}

} // namespace

void* MemoryStream::findInterface(REFIID iid) noexcept {
    return iid == IID_ISequentialStream ? static_cast<ISequentialStream*>(this)
                                        : implements::findInterface(iid);
}

std::span<const std::uint8_t> MemoryStream::ahead(std::size_t count) const noexcept {
    const std::size_t begin = static_cast<std::size_t>(std::min<std::uint64_t>(position_, buffer_->size()));
    return std::span<const std::uint8_t>{*buffer_}.subspan(begin, std::min(count, buffer_->size() - begin));
}

HRESULT MemoryStream::resize(std::uint64_t size) noexcept {
    if (size > maximumSize) {
        return STG_E_MEDIUMFULL;
    }
    try {
        buffer_->resize(static_cast<std::size_t>(size));
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT STDMETHODCALLTYPE MemoryStream::Read(void* target, ULONG count, ULONG* readCount) noexcept {
    report(readCount, 0);
    if (target == nullptr && count > 0) {
        return STG_E_INVALIDPOINTER;
    }
    const std::span<const std::uint8_t> found = ahead(count);
    std::ranges::copy(found, static_cast<std::uint8_t*>(target));
    position_ += found.size();
    report(readCount, found.size());
    return found.size() == count ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE MemoryStream::Write(const void* source, ULONG count, ULONG* writtenCount) noexcept {
    report(writtenCount, 0);
    if (isReadOnly()) {
        return STG_E_ACCESSDENIED;
    }
    if (source == nullptr && count > 0) {
        return STG_E_INVALIDPOINTER;
    }
    const std::uint64_t end = position_ + count;
    if (end > buffer_->size()) {
        if (const HRESULT code = resize(end); FAILED(code)) {
            return code;
        }
    }
    const auto* const bytes = static_cast<const std::uint8_t*>(source);
    std::copy(bytes, bytes + count, buffer_->begin() + static_cast<std::ptrdiff_t>(position_));
    position_ = end;
    report(writtenCount, count);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE MemoryStream::Seek(LARGE_INTEGER move, DWORD origin,
                                             ULARGE_INTEGER* newPosition) noexcept {
    std::uint64_t target = move.LowPart; // unsigned: nobody moves backwards except from the start
    switch (origin) {
    case STREAM_SEEK_SET:
        break;
    case STREAM_SEEK_CUR:
        target += position_;
        break;
    case STREAM_SEEK_END:
        target += buffer_->size();
        break;
    default:
        return STG_E_INVALIDFUNCTION;
    }
    if (target > buffer_->size()) {
        if (isReadOnly()) {
            return STG_E_INVALIDPOINTER;
        }
        // One short on purpose: the write that follows brings the last byte.
        if (const HRESULT code = resize(target - 1); FAILED(code)) {
            return code;
        }
    }
    position_ = target;
    report(newPosition, target & maximumSize);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE MemoryStream::SetSize(ULARGE_INTEGER size) noexcept {
    return isReadOnly() || size.QuadPart > maximumSize ? E_UNEXPECTED : resize(size.QuadPart);
}

HRESULT STDMETHODCALLTYPE MemoryStream::CopyTo(IStream* stream, ULARGE_INTEGER count,
                                               ULARGE_INTEGER* readCount,
                                               ULARGE_INTEGER* writtenCount) noexcept {
    report(readCount, 0);
    report(writtenCount, 0);
    if (stream == nullptr) {
        return E_POINTER;
    }
    try {
        const std::size_t available = ahead(std::numeric_limits<std::size_t>::max()).size();
        const auto found = ahead(count.LowPart);
        // A copy: the other stream may write into this one's buffer while it reads.
        const Bytes bytes{found.begin(), found.end()};
        const auto size = static_cast<ULONG>(bytes.size());
        const std::uint8_t nothing = 0;
        constexpr ULONG untold = std::numeric_limits<ULONG>::max();
        ULONG written = untold;
        // The other stream may let go of this one.
        const auto self = com::com_ptr<MemoryStream>::share(this);
        const HRESULT code = stream->Write(bytes.empty() ? &nothing : bytes.data(), size, &written);
        position_ += size;
        report(readCount, size);
        // Without a count that can be true, success means all and failure means nothing.
        const ULONG assumed = SUCCEEDED(code) ? size : 0;
        report(writtenCount, written <= size ? written : assumed);
        return SUCCEEDED(code) && available > count.LowPart ? S_FALSE : code;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT STDMETHODCALLTYPE MemoryStream::Commit(DWORD) noexcept { return S_OK; }

HRESULT STDMETHODCALLTYPE MemoryStream::Revert() noexcept { return E_FAIL; }

HRESULT STDMETHODCALLTYPE MemoryStream::LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept {
    return STG_E_INVALIDFUNCTION;
}

HRESULT STDMETHODCALLTYPE MemoryStream::UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept {
    return STG_E_INVALIDFUNCTION;
}

HRESULT STDMETHODCALLTYPE MemoryStream::Stat(STATSTG* statistics, DWORD) noexcept {
    return statistics == nullptr ? E_POINTER : STG_E_ACCESSDENIED;
}

HRESULT STDMETHODCALLTYPE MemoryStream::Clone(IStream** clone) noexcept {
    if (clone == nullptr) {
        return E_POINTER;
    }
    *clone = nullptr;
    try {
        auto made = com::make<MemoryStream>(std::make_shared<Bytes>(*buffer_), access_);
        made->position_ = position_;
        *clone = made.release();
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

} // namespace quorvane
