#include "bench/careful_client.h"

#include "bench/quick_excel.h"
#include "com/safe_array.h"

#include <cwctype>
#include <numeric>
#include <stdexcept>

namespace bench {

namespace {

void require(HRESULT code) {
    if (FAILED(code)) {
        throw std::runtime_error("The careful client's call fails");
    }
}

void require(bool holds) { require(holds ? S_OK : E_INVALIDARG); }

bool equals(std::wstring_view a, std::wstring_view b) noexcept {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) {
               return x == y || std::towlower(x) == std::towlower(y);
           });
}

// The elements of a vector of numbers from outside, which may be anything.
void requireNumbers(const VARIANT& given) {
    VARTYPE element = VT_EMPTY;
    LONG lower = 0;
    LONG upper = -1;
    require(given.vt == (VT_ARRAY | VT_R8));
    require(SafeArrayGetVartype(given.parray, &element));
    require(element == VT_R8 && SafeArrayGetElemsize(given.parray) == sizeof(double));
    require(SafeArrayGetDim(given.parray) == 1);
    require(SafeArrayGetLBound(given.parray, 1, &lower));
    require(SafeArrayGetUBound(given.parray, 1, &upper));
    require(upper >= lower);
}

} // namespace

HRESULT STDMETHODCALLTYPE CarefulMaterial::GetTPFraction(BSTR label, double* T, double* P,
                                                         VARIANT* composition) noexcept {
    if (T == nullptr || P == nullptr || composition == nullptr) {
        return E_POINTER;
    }
    return equals(com::viewOf(label), phase) ? ClientMaterial::GetTPFraction(label, T, P, composition)
                                             : E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE CarefulMaterial::SetSinglePhaseProp(BSTR name, BSTR label, BSTR basis,
                                                              VARIANT given) noexcept {
    try {
        require(equals(com::viewOf(name), property) && equals(com::viewOf(label), phase));
        require(equals(com::viewOf(basis), L"mole"));
        requireNumbers(given);
        return ClientMaterial::SetSinglePhaseProp(name, label, basis, given);
    } catch (...) {
        return E_INVALIDARG;
    }
}

CarefulClient::CarefulClient(IDispatch* application, REFCLSID packageClass, std::wstring package,
                             std::size_t compounds)
    : application_{application}, ranks_{{L"enthalpy", 0}, {L"entropy", 0}, {L"volume", 0}} {
    auto made = std::make_shared<Package>();
    com::com_ptr<IDispatch> component;
    require(
        CoCreateInstance(packageClass, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, component.putVoid()));
    made->routine = component.tryAs<ICapeThermoPropertyRoutine>();
    made->material = com::make<CarefulMaterial>();
    made->names = com::variant::array(com::makeVector(VT_BSTR, 1), VT_BSTR);
    made->compounds = compounds;
    const auto context = component.tryAs<ICapeThermoMaterialContext>();
    require(made->routine && context);
    require(context->SetMaterial(static_cast<ICapeThermoMaterial*>(made->material.get())));
    workbooks_[activeWorkbook().get()].emplace(std::move(package), std::move(made));
}

com::com_ptr<IUnknown> CarefulClient::activeWorkbook() {
    DISPID member = 0;
    wchar_t name[] = L"ActiveWorkbook";
    wchar_t* names[] = {name};
    require(application_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member));
    DISPPARAMS none{};
    com::variant workbook;
    require(application_->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                 &workbook, nullptr, nullptr));
    require(workbook.vt == VT_DISPATCH && workbook.pdispVal != nullptr);
    return com::queryFor<IUnknown>(workbook.pdispVal);
}

HRESULT CarefulClient::property(BSTR package, BSTR name, BSTR phase, double T, double P,
                                const VARIANT& composition, VARIANT* result) noexcept {
    try {
        const auto table = workbooks_.find(activeWorkbook().get());
        require(table != workbooks_.end());
        const auto entry = table->second.find(com::viewOf(package));
        require(entry != table->second.end());
        const std::shared_ptr<Package> held = entry->second;
        require(ranks_.find(com::viewOf(name)) != ranks_.end());
        require(T > 0.0 && P > 0.0);

        CarefulMaterial& material = *held->material;
        requireNumbers(composition);
        {
            const com::array_lock<double> lock{composition.parray};
            material.fractions.assign(lock.elements().begin(), lock.elements().end());
        }
        require(material.fractions.size() == held->compounds);
        const double sum = std::accumulate(material.fractions.begin(), material.fractions.end(), 0.0);
        for (double& fraction : material.fractions) {
            fraction /= sum;
        }
        material.temperature = T;
        material.pressure = P;
        material.property.assign(com::viewOf(name));
        material.phase.assign(com::viewOf(phase));
        material.values.clear();

        HRESULT code = S_OK;
        {
            const com::array_lock<BSTR> lock{held->names.parray};
            lock.elements().front() = name; // lent for the call
            code = held->routine->CalcSinglePhaseProp(held->names, phase);
            lock.elements().front() = nullptr;
        }
        require(code);
        require(!material.values.empty());
        const std::vector<double>& values = material.values;
        *result = (values.size() == 1 ? com::variant{values.front()} : com::realArray(values)).release();
        return S_OK;
    } catch (...) {
        return E_FAIL;
    }
}

} // namespace bench
