#include "bench/direct_client.h"

#include "bench/quick_excel.h"
#include "com/safe_array.h"

#include <numeric>
#include <stdexcept>

namespace bench {

namespace {

void require(HRESULT code) {
    if (FAILED(code)) {
        throw std::runtime_error("The hand-written client's call fails");
    }
}

com::com_ptr<IUnknown> activeWorkbook(IDispatch* application) {
    DISPPARAMS none{};
    com::variant workbook;
    require(application->Invoke(memberActiveWorkbook, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                &none, &workbook, nullptr, nullptr));
    return com::queryFor<IUnknown>(workbook.pdispVal);
}

} // namespace

DirectClient::DirectClient(IDispatch* application, REFCLSID packageClass,
                           std::span<const double> molecularWeights)
    : application_{application}, workbook_{activeWorkbook(application)}, material_{
                                                                             com::make<ClientMaterial>()} {
    com::com_ptr<IDispatch> package;
    require(CoCreateInstance(packageClass, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, package.putVoid()));
    routine_ = package.tryAs<ICapeThermoPropertyRoutine>();
    const auto context = package.tryAs<ICapeThermoMaterialContext>();
    require(routine_ && context ? S_OK : E_NOINTERFACE);
    require(context->SetMaterial(static_cast<ICapeThermoMaterial*>(material_.get())));
    names_ = com::variant::array(com::makeVector(VT_BSTR, 1), VT_BSTR);
    for (const double weight : molecularWeights) {
        weights_.push_back(weight / 1000.0);
    }
    material_->fractions.resize(weights_.size());
}

void DirectClient::findWorkbook() {
    require(activeWorkbook(application_).get() == workbook_.get() ? S_OK : E_UNEXPECTED);
}

void DirectClient::load(double T, double P, const VARIANT& composition) {
    require(composition.vt == (VT_ARRAY | VT_R8) ? S_OK : E_INVALIDARG);
    const com::array_lock<double> lock{composition.parray};
    const std::span<const double> given = lock.elements();
    require(given.size() == weights_.size() ? S_OK : E_INVALIDARG);
    const double sum = std::accumulate(given.begin(), given.end(), 0.0);
    for (std::size_t i = 0; i < given.size(); ++i) {
        material_->fractions[i] = given[i] / sum;
    }
    material_->temperature = T;
    material_->pressure = P;
}

void DirectClient::calculate(BSTR name, BSTR phase) {
    // The text is lent for the call.
    BSTR& element = *static_cast<BSTR*>(names_.parray->pvData);
    element = name;
    const HRESULT code = routine_->CalcSinglePhaseProp(names_, phase);
    element = nullptr;
    require(code);
}

void DirectClient::property(BSTR name, BSTR phase, double T, double P, const VARIANT& composition,
                            VARIANT* result) {
    findWorkbook();
    load(T, P, composition);
    calculate(name, phase);
    const std::vector<double>& values = material_->values;
    *result = (values.size() == 1 ? com::variant{values.front()} : com::realArray(values)).release();
}

void DirectClient::matrix(BSTR name, BSTR phase, double T, double P, const VARIANT& composition,
                          VARIANT* result) {
    findWorkbook();
    load(T, P, composition);
    calculate(name, phase);
    const std::size_t n = weights_.size();
    com::unique_safearray array = com::makeMatrix(VT_R8, n, n);
    {
        const com::array_lock<double> lock{array.get()};
        const std::span<double> cells = lock.elements();
        for (std::size_t row = 0; row < n; ++row) {
            for (std::size_t column = 0; column < n; ++column) {
                cells[row + column * n] = material_->values[row * n + column];
            }
        }
    }
    *result = com::variant::array(std::move(array), VT_R8).release();
}

void DirectClient::massDerivative(BSTR name, BSTR baseName, BSTR phase, double T, double P,
                                  const VARIANT& composition, VARIANT* result) {
    findWorkbook();
    load(T, P, composition);
    calculate(name, phase);
    derivatives_ = material_->values;
    calculate(baseName, phase);
    const std::vector<double>& x = material_->fractions;
    const double M = std::inner_product(x.begin(), x.end(), weights_.begin(), 0.0);
    const double g = 1.0 / M;
    const double b = material_->values.front() * g;
    for (std::size_t i = 0; i < derivatives_.size(); ++i) {
        derivatives_[i] = (derivatives_[i] - g * b * weights_[i]) * g; // as the add-in converts them
    }
    *result = com::realArray(derivatives_).release();
}

} // namespace bench
