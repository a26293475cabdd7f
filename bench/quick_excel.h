// Excel's application, workbook and ranges with as little cost of their own as objects of that kind can have,
// so that they do not hide the add-in's.
#pragma once

#include "bench/counted.h"
#include "com/com_ptr.h"
#include "com/implements.h"
#include "com/owned.h"

#include <office_idl.h>
#include <span>

namespace bench {

/// The members that the add-in reads, by the identifiers that Excel's own type library gives them.
inline constexpr DISPID memberActiveWorkbook = 308;
inline constexpr DISPID memberValue = 6;
inline constexpr DISPID memberCaller = 317;

template <typename Face>
class Quick : public com::implements<CountedObject, Face> {
  public:
    void* findInterface(REFIID iid) noexcept override {
        return com::implements<CountedObject, Face>::findInterface(iid == IID_IDispatch ? __uuidof(Face)
                                                                                        : iid);
    }
    IDispatch* dispatch() noexcept { return static_cast<Face*>(this); }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override {
        *info = nullptr;
        return DISP_E_BADINDEX;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* ids) noexcept override;
};

class QuickWorkbook final : public Quick<IDispatch> {
  public:
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override {
        return DISP_E_MEMBERNOTFOUND;
    }
};

class QuickApplication final : public Quick<ExcelApplication> {
  public:
    explicit QuickApplication(com::com_ptr<QuickWorkbook> workbook) : workbook_{std::move(workbook)} {}

    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                     EXCEPINFO*, UINT*) noexcept override;

  private:
    com::com_ptr<QuickWorkbook> workbook_;
};

/// One row of a sheet's numbers, which must outlive it.
class QuickRange final : public Quick<ExcelRange> {
  public:
    explicit QuickRange(std::span<const double> row) noexcept : row_{row} {}

    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                     EXCEPINFO*, UINT*) noexcept override;

  private:
    std::span<const double> row_;
};

} // namespace bench
