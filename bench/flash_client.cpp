#include "bench/flash_client.h"

#include "bench/add_in.h"
#include "bench/quick_excel.h"
#include "com/safe_array.h"

#include <algorithm>
#include <numeric>

namespace bench {

namespace {

constexpr const char* refused = "A call of the bundled package fails";
constexpr std::size_t compoundLists = 6;

std::span<const double> realsIn(const VARIANT& array) noexcept {
    return {static_cast<const double*>(array.parray->pvData), array.parray->rgsabound[0].cElements};
}

com::variant condition(const wchar_t* property) {
    return com::textArray(std::vector<std::wstring>{property, L"", L"overall"});
}

} // namespace

FlashMaterial::Phase& FlashMaterial::phaseOf(BSTR label) noexcept { return phases[*label == L'V' ? 0 : 1]; }

HRESULT STDMETHODCALLTYPE FlashMaterial::GetOverallProp(BSTR name, BSTR, VARIANT* results) noexcept {
    try {
        const double& single = *name == L't' ? temperature : pressure;
        com::assign(results, *name == L'f' ? com::realArray(fractions) : com::realArray({&single, 1}));
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT STDMETHODCALLTYPE FlashMaterial::GetTPFraction(BSTR label, double* T, double* P,
                                                       VARIANT* composition) noexcept {
    try {
        const Phase& phase = phaseOf(label);
        com::assign(composition, com::realArray(phase.composition));
        *T = phase.temperature;
        *P = phase.pressure;
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT STDMETHODCALLTYPE FlashMaterial::SetPresentPhases(VARIANT labels, VARIANT) noexcept {
    for (Phase& phase : phases) {
        phase.present = false;
    }
    const std::span<const BSTR> names{static_cast<const BSTR*>(labels.parray->pvData),
                                      labels.parray->rgsabound[0].cElements};
    for (const BSTR name : names) {
        phaseOf(name).present = true;
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE FlashMaterial::SetSinglePhaseProp(BSTR name, BSTR label, BSTR,
                                                            VARIANT given) noexcept {
    try {
        const std::span<const double> values = realsIn(given);
        const std::wstring_view written = com::viewOf(name);
        Phase& phase = phaseOf(label);
        if (written == L"fraction") {
            phase.composition.assign(values.begin(), values.end());
        } else {
            (written == L"temperature"     ? phase.temperature
             : written == L"pressure"      ? phase.pressure
             : written == L"phaseFraction" ? phase.fraction
                                           : property) = values.front();
        }
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT STDMETHODCALLTYPE FlashMaterial::GetCompoundList(VARIANT* ids, VARIANT* formulae, VARIANT* names,
                                                         VARIANT* boilingPoints, VARIANT* molecularWeights,
                                                         VARIANT* casNumbers) noexcept {
    try {
        VARIANT* const out[compoundLists] = {ids,           formulae,         names,
                                             boilingPoints, molecularWeights, casNumbers};
        for (std::size_t i = 0; i < compoundLists; ++i) {
            com::assign(out[i], com::variant::copyOf(lists_[i]));
        }
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

FlashClient::FlashClient(IDispatch* application, const com::com_ptr<IDispatch>& package,
                         std::initializer_list<const wchar_t*> properties)
    : application_{application}, utilities_{package.tryAs<ICapeUtilities>()},
      properties_{package.tryAs<ICapeThermoPropertyRoutine>()},
      equilibrium_{package.tryAs<ICapeThermoEquilibriumRoutine>()}, conditions_{condition(L"temperature"),
                                                                                condition(L"pressure")} {
    require(utilities_->Initialize(), refused);
    std::vector<com::variant> lists(compoundLists);
    require(package.tryAs<ICapeThermoCompounds>()->GetCompoundList(lists.data(), &lists[1], &lists[2],
                                                                   &lists[3], &lists[4], &lists[5]),
            refused);
    const std::size_t compounds = lists[0].parray->rgsabound[0].cElements;
    material_ = com::make<FlashMaterial>(std::move(lists));
    material_->fractions.resize(compounds);
    require(package.tryAs<ICapeThermoMaterialContext>()->SetMaterial(
                static_cast<ICapeThermoMaterial*>(material_.get())),
            refused);
    for (const wchar_t* const property : properties) {
        names_.push_back(com::textArray(std::vector<std::wstring>{property}));
    }
}

FlashClient::~FlashClient() { static_cast<void>(utilities_->Terminate()); }

void FlashClient::flash(double T, double P, std::span<const double> amounts, VARIANT* result) {
    DISPPARAMS none{};
    com::variant workbook;
    require(application_->Invoke(memberActiveWorkbook, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                 &none, &workbook, nullptr, nullptr),
            "Excel does not tell its workbook");
    const double sum = std::accumulate(amounts.begin(), amounts.end(), 0.0);
    std::ranges::transform(amounts, material_->fractions.begin(),
                           [&](double amount) { return amount / sum; });
    material_->temperature = T;
    material_->pressure = P;
    require(equilibrium_->CalcEquilibrium(conditions_[0], conditions_[1], solutionType_.get()), refused);
    const std::size_t rows = 3 + compounds() + names_.size();
    com::unique_safearray table = com::makeMatrix(VT_R8, rows, FlashMaterial::phaseCount);
    {
        const com::array_lock<double> lock{table.get()};
        for (std::size_t i = 0; i < FlashMaterial::phaseCount; ++i) {
            const FlashMaterial::Phase& phase = material_->phases[i];
            if (!phase.present) {
                continue;
            }
            auto cell = lock.elements().subspan(i * rows).begin();
            *cell++ = phase.temperature;
            *cell++ = phase.pressure;
            *cell++ = phase.fraction;
            cell = std::ranges::copy(phase.composition, cell).out;
            for (const com::variant& name : names_) {
                require(properties_->CalcSinglePhaseProp(name, labels_[i].get()), refused);
                *cell++ = material_->property;
            }
        }
    }
    *result = com::variant::array(std::move(table), VT_R8).release();
}

} // namespace bench
