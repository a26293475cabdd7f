#include "bench/quick_excel.h"

#include "com/safe_array.h"

#include <cwchar>

namespace bench {

namespace {

constexpr struct {
    const wchar_t* name;
    DISPID id;
} members[] = {{L"ActiveWorkbook", memberActiveWorkbook}, {L"Value", memberValue}, {L"Caller", memberCaller}};

// A row of cells as Excel gives it: a two-dimensional array of values.
com::variant cellsOf(std::span<const double> row) {
    com::unique_safearray array = com::makeMatrix(VT_VARIANT, 1, row.size());
    {
        const com::array_lock<VARIANT> lock{array.get()};
        auto cell = lock.elements().begin();
        for (const double number : row) {
            cell->vt = VT_R8;
            cell->dblVal = number;
            ++cell;
        }
    }
    return com::variant::array(std::move(array), VT_VARIANT);
}

} // namespace

template <typename Face>
HRESULT STDMETHODCALLTYPE Quick<Face>::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                                     DISPID* ids) noexcept {
    ++interfaceCalls;
    for (const auto& member : members) {
        if (std::wcscmp(names[0], member.name) == 0) {
            ids[0] = member.id;
            return S_OK;
        }
    }
    ids[0] = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
}

template class Quick<IDispatch>;
template class Quick<ExcelApplication>;
template class Quick<ExcelRange>;

HRESULT STDMETHODCALLTYPE QuickApplication::Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*,
                                                   VARIANT* result, EXCEPINFO*, UINT*) noexcept {
    ++interfaceCalls;
    if (member != memberActiveWorkbook) {
        return DISP_E_MEMBERNOTFOUND;
    }
    *result = com::variant::object(workbook_->dispatch()).release();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE QuickRange::Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                             EXCEPINFO*, UINT*) noexcept {
    ++interfaceCalls;
    if (member != memberValue) {
        return DISP_E_MEMBERNOTFOUND;
    }
    try {
        *result = row_.size() == 1 ? com::variant{row_.front()}.release() : cellsOf(row_).release();
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

} // namespace bench
