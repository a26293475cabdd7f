// MemoryStream: the IStream over bytes in memory through which a package saves and restores itself. The
// buffer is shared with whoever made the stream, because a package may keep the stream for as long as it
// likes. It never grows beyond 4 GB.
//
// Packages have been tested against a stream that counts in 32 bits; what looks odd here keeps to that.
#pragma once

#include "com/com_ptr.h"
#include "com/implements.h"
#include "src/workbook/saved_state/base64.h"

#include <memory>

namespace quorvane {

class MemoryStream final : public com::implements<com::COMObject, IStream> {
  public:
    enum class Access { readOnly, writable };

    /// Positioned at the start. `buffer` must not be null.
    MemoryStream(std::shared_ptr<Bytes> buffer, Access access) noexcept
        : buffer_{std::move(buffer)}, access_{access} {}

    void* findInterface(REFIID iid) noexcept override;

    // ISequentialStream
    HRESULT STDMETHODCALLTYPE Read(void* target, ULONG count, ULONG* readCount) noexcept override;
    HRESULT STDMETHODCALLTYPE Write(const void* source, ULONG count, ULONG* writtenCount) noexcept override;

    // IStream
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                   ULARGE_INTEGER* newPosition) noexcept override;
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) noexcept override;
    HRESULT STDMETHODCALLTYPE CopyTo(IStream* stream, ULARGE_INTEGER count, ULARGE_INTEGER* readCount,
                                     ULARGE_INTEGER* writtenCount) noexcept override;
    HRESULT STDMETHODCALLTYPE Commit(DWORD flags) noexcept override;
    HRESULT STDMETHODCALLTYPE Revert() noexcept override;
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count,
                                         DWORD type) noexcept override;
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count,
                                           DWORD type) noexcept override;
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* statistics, DWORD flag) noexcept override;
    HRESULT STDMETHODCALLTYPE Clone(IStream** clone) noexcept override;

  private:
    bool isReadOnly() const noexcept { return access_ == Access::readOnly; }
    /// What can be read from the position on, at most `count` bytes.
    std::span<const std::uint8_t> ahead(std::size_t count) const noexcept;
    HRESULT resize(std::uint64_t size) noexcept;

    std::shared_ptr<Bytes> buffer_;
    std::uint64_t position_ = 0; ///< may lie beyond the end
    Access access_;
};

} // namespace quorvane
