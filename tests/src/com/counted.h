// A COM object with two interfaces that says when it ends.
#pragma once

#include "com/com_ptr.h"
#include "com/implements.h"

namespace com {

class Counted : public implements<COMObject, ISupportErrorInfo, IPersist> {
  public:
    explicit Counted(int* ended = nullptr) : ended_{ended} {}
    ~Counted() override {
        if (ended_ != nullptr) {
            ++*ended_;
        }
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID) noexcept override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) noexcept override { return E_NOTIMPL; }

    ISupportErrorInfo* errorFace() noexcept { return this; }
    IPersist* persistFace() noexcept { return this; }
    /// The number of references, found by adding and taking away one.
    ULONG references() noexcept {
        errorFace()->AddRef();
        return errorFace()->Release();
    }

  private:
    int* ended_;
};

} // namespace com
