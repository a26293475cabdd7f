// ICapeThermoPhases and ICapeThermoUniversalConstant.
#include "com/safe_array.h"
#include "packages/peng_robinson/com/phases.h"
#include "packages/peng_robinson/com/property_package.h"
#include "packages/peng_robinson/eos/constants.h"

namespace peng_robinson {
namespace {

constexpr const wchar_t* phasesInterface = L"ICapeThermoPhases";
constexpr const wchar_t* constantsInterface = L"ICapeThermoUniversalConstant";

struct Attribute {
    std::wstring_view name;
    std::wstring_view PhaseKind::*text; ///< null: a phase of a fluid has no such attribute
};
constexpr Attribute attributes[] = {
    {L"StateOfAggregation", &PhaseKind::stateOfAggregation},
    {L"UserDescription", &PhaseKind::description},
    {L"KeyCompoundId", nullptr},
    {L"ExcludedCompoundId", nullptr},
    {L"DensityDescription", nullptr},
    {L"TypeOfSolid", nullptr},
};

constexpr std::wstring_view molarGasConstant = L"molarGasConstant";

struct UniversalConstant {
    std::wstring_view name;
    double value;
};
constexpr UniversalConstant universalConstants[] = {
    {L"avogadroConstant", eos::avogadroConstant},
    {L"boltzmannConstant", eos::boltzmannConstant},
    {L"idealGasStateReferencePressure", eos::referencePressure},
    {molarGasConstant, eos::molarGasConstant},
    {L"speedOfLightInVacuum", eos::speedOfLightInVacuum},
    {L"standardAccelerationOfGravity", eos::standardAccelerationOfGravity},
};

} // namespace

HRESULT STDMETHODCALLTYPE PropertyPackage::GetNumPhases(LONG* num) noexcept {
    return call(phasesInterface, L"GetNumPhases", [&] {
        requirePointer(num);
        *num = static_cast<LONG>(phaseKinds.size());
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetPhaseInfo(BSTR phaseLabel, BSTR phaseAttribute,
                                                        VARIANT* value) noexcept {
    return call(phasesInterface, L"GetPhaseInfo", [&] {
        returnValue(value, com::variant{});
        const PhaseKind& phase = requirePhase(com::viewOf(phaseLabel), 1);
        for (const Attribute& attribute : attributes) {
            if (isSameName(attribute.name, com::viewOf(phaseAttribute))) {
                if (attribute.text != nullptr) {
                    returnValue(value, com::variant{phase.*attribute.text});
                }
                return;
            }
        }
        throw ArgumentError{2, L"\"" + std::wstring{com::viewOf(phaseAttribute)} +
                                   L"\" is not an attribute of phases"};
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetPhaseList(VARIANT* phaseLabels, VARIANT* stateOfAggregation,
                                                        VARIANT* keyCompoundId) noexcept {
    return call(phasesInterface, L"GetPhaseList", [&] {
        for (const VARIANT* out : {phaseLabels, stateOfAggregation, keyCompoundId}) {
            requirePointer(out);
        }
        std::vector<std::wstring_view> labels, states;
        for (const PhaseKind& phase : phaseKinds) {
            labels.push_back(phase.label);
            states.push_back(phase.stateOfAggregation);
        }
        replaceValue(phaseLabels, com::textArray(labels));
        replaceValue(stateOfAggregation, com::textArray(states));
        replaceValue(keyCompoundId, com::textArray(std::vector<std::wstring_view>(phaseKinds.size())));
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetUniversalConstant(BSTR constantId,
                                                                VARIANT* constantValue) noexcept {
    return call(constantsInterface, L"GetUniversalConstant", [&] {
        returnValue(constantValue, com::variant{});
        for (const UniversalConstant& constant : universalConstants) {
            if (isSameName(constant.name, com::viewOf(constantId))) {
                // The one with which this package calculates.
                returnValue(constantValue,
                            com::variant{constant.name == molarGasConstant ? configuration_->constants().R
                                                                           : constant.value});
                return;
            }
        }
        throw ArgumentError{1, L"\"" + std::wstring{com::viewOf(constantId)} +
                                   L"\" is not a universal constant"};
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetUniversalConstantList(VARIANT* constantId) noexcept {
    return call(constantsInterface, L"GetUniversalConstantList", [&] {
        std::vector<std::wstring_view> names;
        for (const UniversalConstant& constant : universalConstants) {
            names.push_back(constant.name);
        }
        returnValue(constantId, com::textArray(names));
    });
}

} // namespace peng_robinson
