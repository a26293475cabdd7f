// What a PropertyPackage reads from its component and keeps: compounds, phases, property lists.
#include "src/foundation/error_texts.h"
#include "src/foundation/missing.h"
#include "src/foundation/outputs.h"
#include "src/foundation/text.h"
#include "src/package/busy.h"
#include "src/package/property_package.h"

#include <algorithm>

namespace quorvane {

namespace {

constexpr double kilogramsPerGram = 0.001;

// Checks a list of names and sorts it for the user.
void sortNames(ArrayVariant& names, const wchar_t* context) {
    requireVector(names, VT_BSTR, context);
    const auto elements = names.elements<BSTR>();
    if (std::ranges::any_of(elements, [](BSTR name) { return name == nullptr; })) {
        throw CWStrException{L"Property list contains empty strings"};
    }
    std::ranges::sort(elements, precedesInList);
    names.unlock();
}

EnumPhaseType aggregationState(BSTR state) noexcept {
    constexpr struct {
        const wchar_t* word;
        EnumPhaseType type;
    } states[] = {{L"vapor", VaporPhase}, {L"liquid", LiquidPhase}, {L"solid", SolidPhase}};
    for (const auto& known : states) {
        if (matchesKeyword(com::viewOf(state), known.word)) {
            return known.type;
        }
    }
    return UnknownPhase;
}

} // namespace

// The four property lists follow one pattern.
template <typename Interface>
ArrayVariant PropertyPackage::propertyList(NameList& list, Interface* source,
                                           HRESULT (STDMETHODCALLTYPE Interface::*read)(VARIANT*),
                                           const wchar_t* failure, const wchar_t* invalid) const {
    if (list.names.isEmpty()) {
        const Busy reading{list.reading};
        const Unchanged unchanged{generation_};
        ArrayVariant names;
        const HRESULT code = received((source->*read)(names.put()), names);
        unchanged.require();
        requireSuccess(code, source, failure);
        sortNames(names, invalid);
        list.names = std::move(names);
    }
    return list.names.copy();
}

void PropertyPackage::loadCompounds() {
    if (!compoundData_[CompoundList_Ids].isEmpty()) {
        return;
    }
    const Busy reading{readingCompounds_};
    const Unchanged unchanged{generation_};
    std::array<ArrayVariant, CompoundList_Count> lists;
    const HRESULT code = compounds_->GetCompoundList(
        lists[CompoundList_Ids].put(), lists[CompoundList_Formulae].put(), lists[CompoundList_Names].put(),
        lists[CompoundList_BoilingPoints].put(), lists[CompoundList_MolecularWeights].put(),
        lists[CompoundList_CasNumbers].put());
    static_cast<void>(received(code, lists));
    unchanged.require();
    requireSuccess(code, compounds_.get(), L"Failed to obtain compound data: ");
    requireVector(lists[CompoundList_Ids], VT_BSTR, L"Invalid values for compound IDs: ");
    requireVector(lists[CompoundList_Names], VT_BSTR, L"Invalid values for compound names: ");
    requireVector(lists[CompoundList_MolecularWeights], VT_R8, L"Invalid values for molecular weights: ");
    const std::int32_t count = lists[CompoundList_Ids].count;
    if (count == 0) {
        throw CWStrException{L"Property Package does not contain compounds"};
    }
    if (lists[CompoundList_Names].count != count) {
        throw CWStrException{
            L"Mismatch in number of compound names and number of compounds IDs from Property Package"};
    }
    if (lists[CompoundList_MolecularWeights].count != count) {
        throw CWStrException{
            L"Mismatch in number of compound names and number of molecular weights from Property Package"};
    }

    std::vector<double> weights;
    std::vector<double> inverses;
    bool missing = false;
    for (const double weight : lists[CompoundList_MolecularWeights].elements<double>()) {
        const bool known = !isMissing(weight);
        missing = missing || !known;
        weights.push_back(known ? weight * kilogramsPerGram : missingNumber);
        inverses.push_back(1.0 / weights.back());
    }
    NameIndexMap index;
    std::int32_t position = 0;
    for (const BSTR name : lists[CompoundList_Names].elements<BSTR>()) {
        // A text that is not there; one without characters is a name.
        if (name == nullptr) {
            throw CWStrException{L"Compound list contains empty strings"};
        }
        if (!index.insert(name, position++)) {
            throw CWStrException{L"Compound list contains duplicates"};
        }
    }
    for (ArrayVariant& list : lists) {
        list.unlock();
        // What a list that nobody else looks at refers to may be gone when the material is asked for it.
        if ((list.value.vt & VT_BYREF) != 0) {
            list.release();
        }
    }
    compoundData_ = std::move(lists);
    molecularWeights_ = std::move(weights);
    inverseMolecularWeights_ = std::move(inverses);
    missingMolecularWeight_ = missing;
    compoundIndex_ = std::move(index);
}

void PropertyPackage::loadPhases() {
    if (!phaseLabels_.isEmpty()) {
        return;
    }
    const Busy reading{readingPhases_};
    const Unchanged unchanged{generation_};
    std::array<ArrayVariant, 3> lists;
    auto& [labels, states, keyCompounds] = lists;
    const HRESULT code = phases_->GetPhaseList(labels.put(), states.put(), keyCompounds.put());
    static_cast<void>(received(code, lists));
    unchanged.require();
    requireSuccess(code, phases_.get(), L"Failed to obtain list of phases: ");
    requireVector(labels, VT_BSTR, L"Invalid phase name list: ");
    requireVector(states, VT_BSTR, L"Invalid aggregation state list: ");
    if (labels.count != states.count) {
        // Thrown as a pointer, which no handler knows: users see "Unknown exception" here, and support pages
        // say so.
        throw std::make_shared<const WStrException>(
            L"Length mismatch between list of phase names and states of aggregation");
    }
    NameIndexMap index;
    std::vector<EnumPhaseType> types;
    std::int32_t vapor = -1;
    const auto stateElements = states.elements<BSTR>();
    std::int32_t position = 0;
    for (const BSTR label : labels.elements<BSTR>()) {
        if (label == nullptr) {
            throw CWStrException{L"Phase list contains empty strings"};
        }
        index.assign(label, position);
        types.push_back(aggregationState(stateElements[static_cast<std::size_t>(position)]));
        if (types.back() == VaporPhase) {
            vapor = position;
        }
        ++position;
    }
    labels.unlock();
    phaseLabels_ = std::move(labels);
    phaseIndex_ = std::move(index);
    phaseStates_ = std::move(types);
    vaporPhaseIndex_ = vapor;
}

ArrayVariant PropertyPackage::compoundConstantList() {
    return propertyList(constantNames_, compounds_.get(), &ICapeThermoCompounds::GetConstPropList,
                        L"Failed to obtain list of compound constants: ",
                        L"Invalid compound constant list: ");
}

ArrayVariant PropertyPackage::temperatureDependentPropertyList() {
    return propertyList(
        temperatureDependentNames_, compounds_.get(), &ICapeThermoCompounds::GetTDependentPropList,
        L"Failed to obtain list of temperature dependent properties: ", L"Invalid property list: ");
}

ArrayVariant PropertyPackage::singlePhasePropertyList() {
    return propertyList(singlePhaseNames_, propertyRoutine_.get(),
                        &ICapeThermoPropertyRoutine::GetSinglePhasePropList,
                        L"Failed to obtain list of single phase properties: ", L"Invalid property list: ");
}

ArrayVariant PropertyPackage::twoPhasePropertyList() {
    return propertyList(twoPhaseNames_, propertyRoutine_.get(),
                        &ICapeThermoPropertyRoutine::GetTwoPhasePropList,
                        L"Failed to obtain list of two phase properties: ", L"Invalid property list: ");
}

ArrayVariant PropertyPackage::equilibriumConditionNames() {
    if (conditionNames_.names.isEmpty()) {
        const Busy reading{conditionNames_.reading};
        const Unchanged unchanged{generation_};
        loadPhases();
        std::vector<std::wstring> names{L"Temperature", L"Pressure"};
        if (vaporPhaseIndex_ >= 0 && phaseCount() >= 2) {
            names.emplace_back(L"VaporFraction");
        }
        // A package that cannot list its properties still offers the plain conditions.
        ArrayVariant offered;
        std::wstring ignored;
        const HRESULT code = received(propertyRoutine_->GetSinglePhasePropList(offered.put()), offered);
        unchanged.require();
        if (SUCCEEDED(code) && inspectVector(offered, VT_BSTR, ignored)) {
            for (const BSTR name : offered.elements<BSTR>()) {
                const PropertyInfo& info = lookupProperty(name);
                if (info.overall) {
                    std::wstring& entry = names.emplace_back(com::viewOf(name));
                    if (entry.front() >= L'a' && entry.front() <= L'z') {
                        entry.front() = static_cast<wchar_t>(entry.front() - L'a' + L'A');
                    }
                }
            }
        }
        std::sort(names.begin() + 2, names.end(), [](const std::wstring& a, const std::wstring& b) {
            return precedesInList(a.c_str(), b.c_str());
        });
        conditionNames_.names = stringVectorToArray(names);
    }
    return conditionNames_.names.copy();
}

} // namespace quorvane
