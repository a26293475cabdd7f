// Calculations of the scripted package: conditions out of the material, values into it.
#include "tests/scripted_package/package_object.h"

#include <algorithm>

namespace scripted {

namespace {

// The standard's own spelling of a basis; none is a null text.
com::unique_bstr basisText(const std::wstring& basis) {
    return basis.empty() ? com::unique_bstr{} : com::makeBstr(basis);
}

} // namespace

void PackageObject::requireMaterial() const {
    if (!material_) {
        throw Refusal{static_cast<HRESULT>(ECapeBadInvOrderHR), L"No material is set"};
    }
}

// A material that refuses is quoted to the client, so that its text can be seen from outside.
void PackageObject::requireAccepted(HRESULT code) const {
    if (SUCCEEDED(code)) {
        return;
    }
    com::unique_bstr text;
    if (const auto user = material_.tryAs<ECapeUser>()) {
        static_cast<void>(user->get_description(text.put()));
    }
    throw Refusal{static_cast<HRESULT>(ECapeComputationHR),
                  std::wstring{L"The material says: "}.append(com::viewOf(text))};
}

int PackageObject::requirePhase(std::wstring_view label) const {
    const int number = phaseNumber(model(), label);
    if (number == 0) {
        throw Refusal{static_cast<HRESULT>(ECapeInvalidArgumentHR),
                      std::wstring{L"There is no phase "}.append(label)};
    }
    return number;
}

HRESULT STDMETHODCALLTYPE PackageObject::SetMaterial(IDispatch* material) noexcept {
    return respond("SetMaterial", {argument(material)}, {},
                   [&] { material_ = com::queryFor<ICapeThermoMaterial>(material); });
}

HRESULT STDMETHODCALLTYPE PackageObject::UnsetMaterial() noexcept {
    return respond("UnsetMaterial", {}, {}, [&] { material_.reset(); });
}

void PackageObject::calculateSinglePhase(const VARIANT& properties, BSTR label) {
    requireMaterial();
    const int phase = requirePhase(com::viewOf(label));
    Conditions conditions{};
    com::variant composition;
    requireAccepted(
        material_->GetTPFraction(label, &conditions.temperature, &conditions.pressure, &composition));
    for (const std::wstring& name : textsOf(properties)) {
        const auto found = calculate(model(), model().singlePhase, name, phase, 0, conditions);
        if (!found) {
            throw Refusal{static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR),
                          L"There is no property " + name};
        }
        const com::unique_bstr property = com::makeBstr(name);
        const com::unique_bstr basis = basisText(found->basis);
        const com::variant values = com::realArray(found->values);
        requireAccepted(material_->SetSinglePhaseProp(property.get(), label, basis.get(), values));
    }
}

HRESULT STDMETHODCALLTYPE PackageObject::CalcSinglePhaseProp(VARIANT properties, BSTR label) noexcept {
    return respond("CalcSinglePhaseProp", {properties, argument(label)}, {},
                   [&] { calculateSinglePhase(properties, label); });
}

void PackageObject::calculateTwoPhase(const VARIANT& properties, const VARIANT& labels) {
    requireMaterial();
    const std::vector<std::wstring> phases = textsOf(labels);
    if (phases.size() != 2) {
        throw Refusal{static_cast<HRESULT>(ECapeInvalidArgumentHR), L"Two phases are needed"};
    }
    const int first = requirePhase(phases[0]);
    const int second = requirePhase(phases[1]);
    Conditions conditions{};
    for (const std::wstring& phase : phases) {
        com::variant composition;
        const com::unique_bstr label = com::makeBstr(phase);
        requireAccepted(material_->GetTPFraction(label.get(), &conditions.temperature, &conditions.pressure,
                                                 &composition));
    }
    for (const std::wstring& name : textsOf(properties)) {
        const auto found = calculate(model(), model().twoPhase, name, first, second, conditions);
        if (!found) {
            throw Refusal{static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR),
                          L"There is no property " + name};
        }
        const com::unique_bstr property = com::makeBstr(name);
        const com::unique_bstr basis = basisText(found->basis);
        const com::variant values = com::realArray(found->values);
        requireAccepted(material_->SetTwoPhaseProp(property.get(), labels, basis.get(), values));
    }
}

HRESULT STDMETHODCALLTYPE PackageObject::CalcTwoPhaseProp(VARIANT properties, VARIANT labels) noexcept {
    return respond("CalcTwoPhaseProp", {properties, labels}, {},
                   [&] { calculateTwoPhase(properties, labels); });
}

HRESULT STDMETHODCALLTYPE PackageObject::CheckSinglePhasePropSpec(BSTR property, BSTR label,
                                                                  VARIANT_BOOL* valid) noexcept {
    return respond("CheckSinglePhasePropSpec", {argument(property), argument(label)}, {valid}, [&] {
        const bool known = phaseNumber(model(), com::viewOf(label)) != 0 &&
                           calculate(model(), model().singlePhase, com::viewOf(property), 1, 0, {});
        *valid = known ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

HRESULT STDMETHODCALLTYPE PackageObject::CheckTwoPhasePropSpec(BSTR property, VARIANT labels,
                                                               VARIANT_BOOL* valid) noexcept {
    return respond("CheckTwoPhasePropSpec", {argument(property), labels}, {valid}, [&] {
        const bool known = calculate(model(), model().twoPhase, com::viewOf(property), 1, 2, {}).has_value();
        *valid = known ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

HRESULT STDMETHODCALLTYPE PackageObject::CalcAndGetLnPhi(BSTR label, double T, double P, VARIANT moles,
                                                         INT flags, VARIANT* lnPhi, VARIANT* lnPhiDT,
                                                         VARIANT* lnPhiDP, VARIANT* lnPhiDn) noexcept {
    constexpr auto inOut = Out::Kind::InOut;
    return respond(
        "CalcAndGetLnPhi", {argument(label), argument(T), argument(P), moles, argument(LONG{flags})},
        {{lnPhi, inOut}, {lnPhiDT, inOut}, {lnPhiDP, inOut}, {lnPhiDn, inOut}}, [&] {
            const int phase = requirePhase(com::viewOf(label));
            const struct {
                eCapeCalculationCode flag;
                const wchar_t* property;
                VARIANT* out;
            } wanted[] = {
                {CAPE_LOG_FUGACITY_COEFFICIENTS, L"fugacityCoefficient", lnPhi},
                {CAPE_T_DERIVATIVE, L"fugacityCoefficient.Dtemperature", lnPhiDT},
                {CAPE_P_DERIVATIVE, L"fugacityCoefficient.Dpressure", lnPhiDP},
                {CAPE_MOLE_NUMBERS_DERIVATIVES, L"fugacityCoefficient.Dmoles", lnPhiDn},
            };
            for (const auto& part : wanted) {
                if ((flags & part.flag) == 0) {
                    continue;
                }
                const auto found = calculate(model(), model().singlePhase, part.property, phase, 0, {T, P});
                if (!found) {
                    throw Refusal{static_cast<HRESULT>(ECapeLimitedImplHR),
                                  L"There are no fugacity coefficients"};
                }
                Out{part.out, inOut}.give(com::realArray(found->values));
            }
        });
}

// Reads the value of a condition into `conditions`, or gives the vapor fraction that it asks for. An energy
// (or the like) h, whose temperature the scripted package cannot know, stands for 300 K + h/1000.
double PackageObject::specification(const VARIANT& given, Conditions& conditions, double vaporFraction) {
    const std::vector<std::wstring> parts = textsOf(given);
    if (parts.size() < 3) {
        throw Refusal{static_cast<HRESULT>(ECapeInvalidArgumentHR), L"A condition has three parts"};
    }
    const com::unique_bstr property = com::makeBstr(parts[0]);
    com::variant value;
    if (sameName(parts[0], L"phaseFraction")) {
        const com::unique_bstr basis = com::makeBstr(parts[1]);
        const com::unique_bstr label = com::makeBstr(parts[2]);
        requireAccepted(material_->GetSinglePhaseProp(property.get(), label.get(), basis.get(), &value));
        return realsOf(value).at(0);
    }
    const bool isTemperature = sameName(parts[0], L"temperature");
    if (isTemperature || sameName(parts[0], L"pressure")) {
        requireAccepted(material_->GetOverallProp(property.get(), nullptr, &value));
        (isTemperature ? conditions.temperature : conditions.pressure) = realsOf(value).at(0);
    } else {
        const com::unique_bstr mole = com::makeBstr(L"Mole");
        requireAccepted(material_->GetOverallProp(property.get(), mole.get(), &value));
        conditions.temperature = 300.0 + realsOf(value).at(0) / 1000.0;
    }
    return vaporFraction;
}

void PackageObject::calculateEquilibrium(const VARIANT& first, const VARIANT& second) {
    requireMaterial();
    if (model().flash) {
        report(*model().flash);
        return;
    }
    Conditions conditions{300.0, 1e5};
    double vaporFraction = specification(first, conditions, 0.25);
    vaporFraction = specification(second, conditions, vaporFraction);
    const com::unique_bstr fraction = com::makeBstr(L"fraction");
    const com::unique_bstr mole = com::makeBstr(L"Mole");
    com::variant composition;
    requireAccepted(material_->GetOverallProp(fraction.get(), mole.get(), &composition));
    report(split(model(), realsOf(composition), vaporFraction, conditions));
}

void PackageObject::report(const Flash& flash) {
    std::vector<std::wstring> labels;
    for (const FlashPhase& phase : flash.phases) {
        labels.push_back(phase.label);
    }
    com::unique_safearray status = com::makeVector(VT_I4, labels.size());
    {
        const com::array_lock<LONG> lock{status.get()};
        std::ranges::fill(lock.elements(), static_cast<LONG>(CAPE_ATEQUILIBRIUM));
    }
    const com::variant present = com::textArray(labels);
    const com::variant atEquilibrium = com::variant::array(std::move(status), VT_I4);
    requireAccepted(material_->SetPresentPhases(present, atEquilibrium));

    const auto set = [&](const std::wstring& label, const wchar_t* property, const std::wstring& basis,
                         std::span<const double> values) {
        const com::unique_bstr name = com::makeBstr(property);
        const com::unique_bstr basisName = basisText(basis);
        const com::variant array = com::realArray(values);
        if (label.empty()) {
            requireAccepted(material_->SetOverallProp(name.get(), basisName.get(), array));
        } else {
            const com::unique_bstr phase = com::makeBstr(label);
            requireAccepted(material_->SetSinglePhaseProp(name.get(), phase.get(), basisName.get(), array));
        }
    };
    const auto setNumber = [&](const std::wstring& label, const wchar_t* property, const std::wstring& basis,
                               const std::optional<double>& value) {
        if (value) {
            set(label, property, basis, {&*value, 1});
        }
    };
    for (const FlashPhase& phase : flash.phases) {
        setNumber(phase.label, L"temperature", {}, phase.temperature);
        setNumber(phase.label, L"pressure", {}, phase.pressure);
        setNumber(phase.label, L"phaseFraction", phase.fractionBasis, phase.fraction);
        if (phase.composition) {
            set(phase.label, L"fraction", phase.compositionBasis, *phase.composition);
        }
    }
    setNumber({}, L"temperature", {}, flash.temperature);
    setNumber({}, L"pressure", {}, flash.pressure);
}

HRESULT STDMETHODCALLTYPE PackageObject::CalcEquilibrium(VARIANT first, VARIANT second,
                                                         BSTR solutionType) noexcept {
    return respond("CalcEquilibrium", {first, second, argument(solutionType)}, {},
                   [&] { calculateEquilibrium(first, second); });
}

HRESULT STDMETHODCALLTYPE PackageObject::CheckEquilibriumSpec(VARIANT first, VARIANT second,
                                                              BSTR solutionType,
                                                              VARIANT_BOOL* supported) noexcept {
    return respond("CheckEquilibriumSpec", {first, second, argument(solutionType)}, {supported},
                   [&] { *supported = VARIANT_TRUE; });
}

} // namespace scripted
