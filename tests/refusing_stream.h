// A stream that refuses every call: the base of test streams, which answer the calls they are about.
#pragma once

#include "com/implements.h"

namespace quorvane::test {

class RefusingStream : public com::implements<com::COMObject, IStream> {
  public:
    HRESULT STDMETHODCALLTYPE Read(void*, ULONG, ULONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*,
                                     ULARGE_INTEGER*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Revert() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IStream**) noexcept override { return E_NOTIMPL; }
};

} // namespace quorvane::test
