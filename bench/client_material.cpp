#include "bench/client_material.h"

#include "com/safe_array.h"

namespace bench {

HRESULT STDMETHODCALLTYPE ClientMaterial::GetTPFraction(BSTR, double* T, double* P,
                                                        VARIANT* composition) noexcept {
    try {
        com::assign(composition, com::realArray(fractions));
        *T = temperature;
        *P = pressure;
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT STDMETHODCALLTYPE ClientMaterial::SetSinglePhaseProp(BSTR, BSTR, BSTR, VARIANT given) noexcept {
    if (given.vt != (VT_ARRAY | VT_R8)) {
        return E_INVALIDARG;
    }
    try {
        const com::array_lock<double> lock{given.parray};
        values.assign(lock.elements().begin(), lock.elements().end());
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

} // namespace bench
