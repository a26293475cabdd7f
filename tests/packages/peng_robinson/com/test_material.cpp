#include "tests/packages/peng_robinson/com/test_material.h"

#include "com/safe_array.h"

#include <cwctype>

namespace peng_robinson::test {
namespace {

std::wstring lower(std::wstring_view text) {
    std::wstring result{text};
    for (wchar_t& c : result) {
        c = static_cast<wchar_t>(std::towlower(c));
    }
    return result;
}

std::wstring keyOf(std::wstring_view label, std::wstring_view property) {
    return lower(label) + L"|" + lower(property);
}

constexpr auto notAvailable = static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR);

} // namespace

void* TestMaterial::findInterface(REFIID iid) noexcept {
    return implements::findInterface(iid == IID_IDispatch ? __uuidof(ICapeThermoMaterial) : iid);
}

void TestMaterial::setOverall(const std::wstring& property, Reals values, const std::wstring& basis) {
    values_[keyOf({}, property)] = {std::move(values), basis};
}

void TestMaterial::setPhase(const std::wstring& label, const std::wstring& property, Reals values,
                            const std::wstring& basis) {
    values_[keyOf(label, property)] = {std::move(values), basis};
}

void TestMaterial::setConditions(const std::wstring& label, double T, double P, Reals x) {
    setPhase(label, L"temperature", {T});
    setPhase(label, L"pressure", {P});
    setPhase(label, L"fraction", std::move(x), L"Mole");
}

std::optional<TestMaterial::Value> TestMaterial::phaseValue(const std::wstring& label,
                                                            const std::wstring& property) const {
    const auto found = values_.find(keyOf(label, property));
    return found == values_.end() ? std::nullopt : std::optional{found->second};
}

std::optional<TestMaterial::Value> TestMaterial::overallValue(const std::wstring& property) const {
    return phaseValue({}, property);
}

double TestMaterial::scalar(const std::wstring& label, const std::wstring& property) const {
    const auto value = phaseValue(label, property);
    EXPECT_TRUE(value && value->values.size() == 1) << std::string(property.begin(), property.end());
    return value && value->values.size() == 1 ? value->values.front() : 0.0;
}

HRESULT TestMaterial::read(const Store& store, const std::wstring& key, BSTR basis, VARIANT* results) {
    const auto found = store.find(key);
    if (found == store.end() || lower(found->second.basis) != lower(com::viewOf(basis))) {
        return notAvailable;
    }
    com::assign(results, com::realArray(found->second.values));
    return S_OK;
}

bool TestMaterial::handOutNonsense(const wchar_t* method, VARIANT* out) const {
    const auto found = nonsense.find(method);
    if (found != nonsense.end()) {
        com::assign(out, com::variant::copyOf(found->second));
    }
    return found != nonsense.end();
}

HRESULT STDMETHODCALLTYPE TestMaterial::GetOverallProp(BSTR property, BSTR basis, VARIANT* results) noexcept {
    return handOutNonsense(L"GetOverallProp", results)
               ? S_OK
               : read(values_, keyOf({}, com::viewOf(property)), basis, results);
}

HRESULT STDMETHODCALLTYPE TestMaterial::GetPresentPhases(VARIANT* labels, VARIANT* status) noexcept {
    if (!present) {
        return E_NOTIMPL;
    }
    if (!handOutNonsense(L"GetPresentPhases", labels)) {
        com::assign(labels, present->empty() ? com::variant{} : com::textArray(*present));
    }
    com::assign(status, com::variant{});
    return S_OK;
}

HRESULT STDMETHODCALLTYPE TestMaterial::GetSinglePhaseProp(BSTR property, BSTR label, BSTR basis,
                                                           VARIANT* results) noexcept {
    return handOutNonsense(L"GetSinglePhaseProp", results)
               ? S_OK
               : read(values_, keyOf(com::viewOf(label), com::viewOf(property)), basis, results);
}

HRESULT STDMETHODCALLTYPE TestMaterial::GetTPFraction(BSTR label, double* T, double* P, VARIANT* x) noexcept {
    const std::wstring name{com::viewOf(label)};
    const auto temperature = phaseValue(name, L"temperature"), pressure = phaseValue(name, L"pressure"),
               fraction = phaseValue(name, L"fraction");
    if (!temperature || !pressure || !fraction) {
        return notAvailable;
    }
    *T = temperature->values.front();
    *P = pressure->values.front();
    if (!handOutNonsense(L"GetTPFraction", x)) {
        com::assign(x, com::realArray(fraction->values));
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE TestMaterial::SetOverallProp(BSTR property, BSTR basis, VARIANT values) noexcept {
    if (refusesWrites) {
        return E_FAIL;
    }
    setOverall(std::wstring{com::viewOf(property)}, realsOf(values), std::wstring{com::viewOf(basis)});
    return S_OK;
}

HRESULT STDMETHODCALLTYPE TestMaterial::SetPresentPhases(VARIANT labels, VARIANT status) noexcept {
    if (refusesWrites) {
        return E_FAIL;
    }
    present = textsOf(labels);
    EXPECT_EQ(status.vt, VT_ARRAY | VT_I4);
    const com::array_lock<LONG> lock{status.parray};
    presentStatus.assign(lock.elements().begin(), lock.elements().end());
    return S_OK;
}

HRESULT STDMETHODCALLTYPE TestMaterial::SetSinglePhaseProp(BSTR property, BSTR label, BSTR basis,
                                                           VARIANT values) noexcept {
    if (refusesWrites) {
        return E_FAIL;
    }
    setPhase(std::wstring{com::viewOf(label)}, std::wstring{com::viewOf(property)}, realsOf(values),
             std::wstring{com::viewOf(basis)});
    return S_OK;
}

HRESULT STDMETHODCALLTYPE TestMaterial::SetTwoPhaseProp(BSTR property, VARIANT labels, BSTR basis,
                                                        VARIANT values) noexcept {
    twoPhaseLabels = textsOf(labels);
    setPhase(L"two", std::wstring{com::viewOf(property)}, realsOf(values), std::wstring{com::viewOf(basis)});
    return S_OK;
}

HRESULT STDMETHODCALLTYPE TestMaterial::GetCompoundList(VARIANT* ids, VARIANT* formulae, VARIANT* names,
                                                        VARIANT* boilTemps, VARIANT* molwts,
                                                        VARIANT* casnos) noexcept {
    if (!handOutNonsense(L"GetCompoundList", ids)) {
        com::assign(ids, compoundIds_.empty() ? com::variant{} : com::textArray(compoundIds_));
    }
    com::assign(names, com::textArray(compoundIds_));
    for (VARIANT* unknown : {formulae, boilTemps, molwts, casnos}) {
        com::assign(unknown, com::variant{});
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE TestMaterial::GetNumCompounds(LONG* count) noexcept {
    *count = static_cast<LONG>(compoundIds_.size());
    return S_OK;
}

HRESULT STDMETHODCALLTYPE TestMaterial::get_description(BSTR* description) noexcept {
    *description = com::makeBstr(L"the test material says no").release();
    return S_OK;
}

} // namespace peng_robinson::test
