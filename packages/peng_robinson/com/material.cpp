#include "packages/peng_robinson/com/material.h"

#include "com/safe_array.h"

#include <algorithm>

namespace peng_robinson {
namespace {

template <typename Interface>
com::com_ptr<Interface> requireInterface(IDispatch* object, const wchar_t* name) {
    auto found = com::queryFor<Interface>(object);
    if (!found) {
        throw ArgumentError{1, std::wstring{L"The object is no material object: it has no "} + name};
    }
    return found;
}

// What the material hands over is no argument of the call: when it cannot be read, the material is at fault.
template <auto Read>
auto handedOver(const VARIANT& value, const wchar_t* what) {
    try {
        return Read(value, what, 1);
    } catch (const ArgumentError& error) {
        throw CapeError{ECapeFailedInitialisationHR, error.description()};
    }
}

// Another client of the same standard may know a compound by the identifier that this package gave out, or,
// when the list came from elsewhere, by its CAS number.
std::optional<std::size_t> recognise(const Configuration& configuration, std::wstring_view id,
                                     std::wstring_view cas) {
    const std::optional<std::size_t> found = configuration.find(narrow(id));
    return found ? found : configuration.findByCas(narrow(cas));
}

eos::Fluid readFluid(IDispatch* object, const Configuration& configuration) {
    const auto source = requireInterface<ICapeThermoCompounds>(object, L"ICapeThermoCompounds");
    com::variant ids, formulae, names, boilingPoints, weights, casNumbers;
    if (FAILED(source->GetCompoundList(&ids, &formulae, &names, &boilingPoints, &weights, &casNumbers))) {
        throw CapeError{ECapeFailedInitialisationHR,
                        L"The material object does not tell its compounds: " + describeFailure(source.get())};
    }
    if (isUndefined(ids)) {
        throw CapeError{ECapeFailedInitialisationHR, L"The material object has no compounds"};
    }
    const std::vector<std::wstring> idTexts = handedOver<readTexts>(ids, L"compounds of the material object");
    std::vector<std::wstring> casTexts;
    if (!isUndefined(casNumbers)) {
        casTexts = handedOver<readTexts>(casNumbers, L"CAS numbers of the material object");
    }
    casTexts.resize(idTexts.size());
    std::vector<std::size_t> compounds;
    for (std::size_t i = 0; i < idTexts.size(); ++i) {
        const std::optional<std::size_t> compound = recognise(configuration, idTexts[i], casTexts[i]);
        if (!compound) {
            throw CapeError{ECapeFailedInitialisationHR,
                            L"The compound \"" + idTexts[i] +
                                L"\" of the material object is not in this package"};
        }
        if (std::ranges::find(compounds, *compound) != compounds.end()) {
            throw CapeError{ECapeFailedInitialisationHR,
                            L"The material object has the compound \"" + idTexts[i] + L"\" twice"};
        }
        compounds.push_back(*compound);
    }
    if (compounds.empty()) {
        throw CapeError{ECapeFailedInitialisationHR, L"The material object has no compounds"};
    }
    return configuration.fluidOf(compounds);
}

std::wstring quoted(std::wstring_view text) { return L"\"" + std::wstring{text} + L"\""; }

std::wstring ofPhase(std::wstring_view property, std::wstring_view label) {
    return std::wstring{property} + L" of the phase " + quoted(label);
}

// A null BSTR says "undefined" to every material; an empty text does not to all.
com::unique_bstr optionalBstr(std::wstring_view text) {
    return text.empty() ? com::unique_bstr{} : com::makeBstr(text);
}

double single(const std::vector<double>& values, const std::wstring& what) {
    if (values.size() != 1) {
        throw CapeError{ECapeFailedInitialisationHR, L"The material object has not one value for " + what};
    }
    return values.front();
}

} // namespace

Material::Material(IDispatch* object, std::shared_ptr<const Configuration> configuration)
    : material_{requireInterface<ICapeThermoMaterial>(object, L"ICapeThermoMaterial")},
      configuration_{std::move(configuration)}, fluid_{readFluid(object, *configuration_)},
      flash_{std::make_unique<eos::TPFlash>(fluid_.model())} {}

void Material::requireRead(HRESULT result, const std::wstring& what) const {
    if (FAILED(result)) {
        const std::wstring reason = describeFailure(material_.get());
        throw CapeError{ECapeFailedInitialisationHR, L"The material object has no value for " + what +
                                                         (reason.empty() ? std::wstring{} : L": " + reason)};
    }
}

void Material::requireWritten(HRESULT result, const std::wstring& what) const {
    if (FAILED(result)) {
        const std::wstring reason = describeFailure(material_.get());
        throw CapeError{ECapeUnknownHR, L"The material object does not accept " + what +
                                            (reason.empty() ? std::wstring{} : L": " + reason)};
    }
}

Material::PhaseConditions Material::conditionsOf(std::wstring_view phaseLabel) const {
    const com::unique_bstr label = com::makeBstr(phaseLabel);
    PhaseConditions conditions{};
    com::variant fractions;
    requireRead(material_->GetTPFraction(label.get(), &conditions.T, &conditions.P, &fractions),
                ofPhase(L"temperature, pressure and composition", phaseLabel));
    conditions.x = handedOver<readReals>(fractions, L"fractions of the material object");
    if (conditions.x.size() != fluid_.size()) {
        throw CapeError{ECapeFailedInitialisationHR,
                        L"The material object has not one fraction for each of its compounds in the phase " +
                            quoted(phaseLabel)};
    }
    return conditions;
}

std::vector<double> Material::overallComposition() const {
    const com::unique_bstr property = com::makeBstr(L"fraction"), basis = com::makeBstr(L"Mole");
    com::variant values;
    requireRead(material_->GetOverallProp(property.get(), basis.get(), &values), L"the overall composition");
    std::vector<double> x = handedOver<readReals>(values, L"fractions of the material object");
    if (x.size() != fluid_.size()) {
        throw CapeError{ECapeFailedInitialisationHR,
                        L"The material object has not one overall fraction for each of its compounds"};
    }
    return x;
}

double Material::overallValue(const std::wstring& property, const wchar_t* basis) const {
    const com::unique_bstr name = com::makeBstr(property), basisText = optionalBstr(basis);
    const std::wstring what = L"the overall " + property;
    com::variant values;
    requireRead(material_->GetOverallProp(name.get(), basisText.get(), &values), what);
    return single(handedOver<readReals>(values, L"values of the material object"), what);
}

double Material::phaseValue(const std::wstring& property, const std::wstring& phaseLabel,
                            const std::wstring& basis) const {
    const com::unique_bstr name = com::makeBstr(property), label = com::makeBstr(phaseLabel);
    const com::unique_bstr basisText = optionalBstr(basis);
    const std::wstring what = ofPhase(L"the " + property, phaseLabel);
    com::variant values;
    requireRead(material_->GetSinglePhaseProp(name.get(), label.get(), basisText.get(), &values), what);
    return single(handedOver<readReals>(values, L"values of the material object"), what);
}

std::optional<std::vector<std::wstring>> Material::presentPhases() const {
    com::variant labels, status;
    if (FAILED(material_->GetPresentPhases(&labels, &status))) {
        return std::nullopt;
    }
    if (isUndefined(labels)) {
        return std::vector<std::wstring>{};
    }
    return handedOver<readTexts>(labels, L"phases of the material object");
}

void Material::setOverallValue(const wchar_t* property, double value) const {
    const com::unique_bstr name = com::makeBstr(property);
    const com::variant values = com::realArray({&value, 1});
    requireWritten(material_->SetOverallProp(name.get(), nullptr, values),
                   std::wstring{L"an overall "} + property);
}

void Material::setPhaseValues(const std::wstring& property, const std::wstring& phaseLabel,
                              std::wstring_view basis, const std::vector<double>& values) const {
    const com::unique_bstr name = com::makeBstr(property), label = com::makeBstr(phaseLabel);
    const com::unique_bstr basisText = optionalBstr(basis);
    const com::variant array = com::realArray(values);
    requireWritten(material_->SetSinglePhaseProp(name.get(), label.get(), basisText.get(), array),
                   ofPhase(property, phaseLabel));
}

void Material::setTwoPhaseValues(const std::wstring& property, const std::vector<std::wstring>& phaseLabels,
                                 const std::vector<double>& values) const {
    const com::unique_bstr name = com::makeBstr(property);
    const com::variant labels = com::textArray(phaseLabels);
    const com::variant array = com::realArray(values);
    requireWritten(material_->SetTwoPhaseProp(name.get(), labels, nullptr, array),
                   property + L" of two phases");
}

void Material::setPhasesAtEquilibrium(const std::vector<std::wstring>& phaseLabels) const {
    com::unique_safearray status = com::makeVector(VT_I4, phaseLabels.size());
    {
        const com::array_lock<LONG> lock{status.get()};
        std::ranges::fill(lock.elements(), static_cast<LONG>(CAPE_ATEQUILIBRIUM));
    }
    const com::variant labels = com::textArray(phaseLabels);
    const com::variant statusArray = com::variant::array(std::move(status), VT_I4);
    requireWritten(material_->SetPresentPhases(labels, statusArray), L"the phases at equilibrium");
}

} // namespace peng_robinson
