// CallingCell: a range whose cells run a macro of the workbook when they are read; otherwise what it stands
// before.
#pragma once

#include "com/com_ptr.h"
#include "com/implements.h"

#include <functional>
#include <office_idl.h>

namespace chance {

class CallingCell final : public com::implements<com::COMObject, ExcelRange> {
  public:
    CallingCell(com::com_ptr<IDispatch> range, std::function<void()> macro)
        : range_{std::move(range)}, macro_{std::move(macro)} {}

    IDispatch* dispatch() noexcept { return static_cast<ExcelRange*>(this); }

    void* findInterface(REFIID iid) noexcept override {
        return implements::findInterface(iid == IID_IDispatch ? __uuidof(ExcelRange) : iid);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        return range_->GetTypeInfoCount(count);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override {
        return range_->GetTypeInfo(index, locale, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) noexcept override {
        return range_->GetIDsOfNames(iid, names, count, locale, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* argument) noexcept override {
        try {
            macro_();
        } catch (...) {
            return E_OUTOFMEMORY;
        }
        return range_->Invoke(member, iid, locale, flags, parameters, result, exception, argument);
    }

  private:
    com::com_ptr<IDispatch> range_;
    std::function<void()> macro_;
};

} // namespace chance
