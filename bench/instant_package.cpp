#include "bench/instant_package.h"

#include "com/safe_array.h"

#include <stdexcept>

namespace bench {

namespace {

constexpr LONG phaseCount = 2;

void give(VARIANT* out, const com::variant& prepared) { com::assign(out, com::variant::copyOf(prepared)); }

} // namespace

InstantPackage::InstantPackage(std::size_t compounds, std::shared_ptr<const std::vector<unsigned char>> state)
    : state_{std::move(state)}, mole_{com::makeBstr(L"Mole")} {
    std::vector<std::wstring> ids;
    std::vector<double> values;
    std::vector<double> weights;
    for (std::size_t i = 0; i < compounds; ++i) {
        ids.push_back(L"Compound " + std::to_wstring(i + 1));
        values.push_back(100.0 + static_cast<double>(i));
        weights.push_back(molecularWeight(i));
    }
    scalar_ = com::realArray({values.data(), 1});
    perCompound_ = com::realArray(values);
    perPair_ = com::realArray(std::vector<double>(compounds * compounds, 1.5));
    ids_ = com::textArray(ids);
    boilingPoints_ = com::realArray(values);
    weights_ = com::realArray(weights);
}

void* InstantPackage::findInterface(REFIID iid) noexcept {
    return implements::findInterface(iid == IID_IDispatch ? __uuidof(ICapeThermoCompounds) : iid);
}

HRESULT STDMETHODCALLTYPE InstantPackage::GetCompoundConstant(VARIANT, VARIANT, VARIANT*) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE InstantPackage::GetCompoundList(VARIANT* ids, VARIANT* formulae, VARIANT* names,
                                                          VARIANT* boilingPoints, VARIANT* molecularWeights,
                                                          VARIANT* casNumbers) noexcept {
    ++interfaceCalls;
    try {
        for (VARIANT* const texts : {ids, formulae, names, casNumbers}) {
            give(texts, ids_);
        }
        give(boilingPoints, boilingPoints_);
        give(molecularWeights, weights_);
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT STDMETHODCALLTYPE InstantPackage::GetConstPropList(VARIANT*) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE InstantPackage::GetNumCompounds(LONG* count) noexcept {
    *count = static_cast<LONG>(ids_.parray->rgsabound[0].cElements);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE InstantPackage::GetPDependentProperty(VARIANT, double, VARIANT, VARIANT*) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE InstantPackage::GetPDependentPropList(VARIANT*) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE InstantPackage::GetTDependentProperty(VARIANT, double, VARIANT, VARIANT*) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE InstantPackage::GetTDependentPropList(VARIANT*) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE InstantPackage::GetNumPhases(LONG* count) noexcept {
    *count = phaseCount;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE InstantPackage::GetPhaseInfo(BSTR, BSTR, VARIANT*) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE InstantPackage::GetPhaseList(VARIANT* labels, VARIANT* states,
                                                       VARIANT* keyCompounds) noexcept {
    ++interfaceCalls;
    try {
        const std::wstring_view names[phaseCount] = {L"Vapor", L"Liquid"};
        const std::wstring_view unknown[phaseCount] = {L"UNDEFINED", L"UNDEFINED"};
        com::assign(labels, com::textArray(names));
        com::assign(states, com::textArray(names));
        com::assign(keyCompounds, com::textArray(unknown));
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT STDMETHODCALLTYPE InstantPackage::CalcAndGetLnPhi(BSTR, double, double, VARIANT, INT, VARIANT*,
                                                          VARIANT*, VARIANT*, VARIANT*) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE InstantPackage::CalcSinglePhaseProp(VARIANT properties, BSTR label) noexcept {
    interfaceCalls += 3; // this one, and the two on the material
    const BSTR property = static_cast<BSTR*>(properties.parray->pvData)[0];
    double T = 0.0;
    double P = 0.0;
    com::variant fractions;
    const HRESULT code = material_->GetTPFraction(label, &T, &P, &fractions);
    if (FAILED(code)) {
        return code;
    }
    const std::wstring_view name = com::viewOf(property);
    const bool isDerivative = name.find(L'.') != std::wstring_view::npos;
    const bool isFugacity = name.front() == L'f';
    const com::variant& values = isDerivative && isFugacity   ? perPair_
                                 : isDerivative || isFugacity ? perCompound_
                                                              : scalar_;
    return material_->SetSinglePhaseProp(property, label, isFugacity ? nullptr : mole_.get(), values);
}

HRESULT STDMETHODCALLTYPE InstantPackage::CalcTwoPhaseProp(VARIANT, VARIANT) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE InstantPackage::CheckSinglePhasePropSpec(BSTR, BSTR, VARIANT_BOOL*) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE InstantPackage::CheckTwoPhasePropSpec(BSTR, VARIANT, VARIANT_BOOL*) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE InstantPackage::GetSinglePhasePropList(VARIANT*) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE InstantPackage::GetTwoPhasePropList(VARIANT*) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE InstantPackage::CalcEquilibrium(VARIANT, VARIANT, BSTR) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE InstantPackage::CheckEquilibriumSpec(VARIANT, VARIANT, BSTR,
                                                               VARIANT_BOOL*) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE InstantPackage::SetMaterial(IDispatch* material) noexcept {
    ++interfaceCalls;
    material_ = com::queryFor<ICapeThermoMaterial>(material);
    return material_ ? S_OK : E_NOINTERFACE;
}

HRESULT STDMETHODCALLTYPE InstantPackage::UnsetMaterial() noexcept {
    ++interfaceCalls;
    material_.reset();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE InstantPackage::GetClassID(CLSID* clsid) noexcept {
    *clsid = instantPackageClass;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE InstantPackage::IsDirty() noexcept { return S_FALSE; }

HRESULT STDMETHODCALLTYPE InstantPackage::Load(IStream* stream) noexcept {
    ++interfaceCalls;
    unsigned char block[blockSize];
    ULONG count = 0;
    do {
        if (FAILED(stream->Read(block, sizeof block, &count))) {
            return E_FAIL;
        }
    } while (count == sizeof block);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE InstantPackage::Save(IStream* stream, BOOL) noexcept {
    ++interfaceCalls;
    return state_ ? stream->Write(state_->data(), static_cast<ULONG>(state_->size()), nullptr) : S_OK;
}

HRESULT STDMETHODCALLTYPE InstantPackage::GetSizeMax(ULARGE_INTEGER* size) noexcept {
    size->QuadPart = state_ ? state_->size() : 0;
    return S_OK;
}

namespace {

class Factory final : public com::implements<com::COMObject, IClassFactory> {
  public:
    Factory(std::size_t compounds, std::shared_ptr<const std::vector<unsigned char>> state)
        : compounds_{compounds}, state_{std::move(state)} {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** out) noexcept override {
        *out = nullptr;
        try {
            return com::make<InstantPackage>(compounds_, state_)->queryInterface(iid, out);
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

  private:
    std::size_t compounds_;
    std::shared_ptr<const std::vector<unsigned char>> state_;
};

} // namespace

InstantClass::InstantClass(std::size_t compounds, std::shared_ptr<const std::vector<unsigned char>> state) {
    const auto factory = com::make<Factory>(compounds, std::move(state));
    if (FAILED(CoRegisterClassObject(instantPackageClass, static_cast<IClassFactory*>(factory.get()),
                                     CLSCTX_INPROC_SERVER, REGCLS_MULTI_SEPARATE, &cookie_))) {
        throw std::runtime_error("The instant package cannot be registered in this process");
    }
}

InstantClass::~InstantClass() { CoRevokeClassObject(cookie_); }

} // namespace bench
