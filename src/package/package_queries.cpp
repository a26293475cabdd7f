// The front end's questions about a package: its lists, the kind of a phase, and whether a property can be
// calculated.
#include "src/package/lent_texts.h"
#include "src/package/property_package.h"

namespace quorvane {

ArrayVariant PropertyPackage::compoundNames() {
    loadCompounds();
    return compoundData_[CompoundList_Names].copy();
}

ArrayVariant PropertyPackage::phaseNames() {
    loadPhases();
    return phaseLabels_.copy();
}

EnumPhaseType PropertyPackage::phaseTypeNamed(BSTR label) {
    if (label == nullptr) {
        throw CWStrException{L"Phase not specified"};
    }
    loadPhases();
    const auto index = phaseIndex_.find(label);
    if (!index) {
        throw CWStrException{L"No such phase"};
    }
    return phaseType(*index);
}

bool PropertyPackage::canCalculate(BSTR propName, BSTR phaseLabel) {
    VARIANT_BOOL valid = VARIANT_FALSE;
    // A package that cannot answer cannot calculate either.
    return SUCCEEDED(propertyRoutine_->CheckSinglePhasePropSpec(propName, phaseLabel, &valid)) &&
           valid != VARIANT_FALSE;
}

bool PropertyPackage::canCalculate(BSTR propName, BSTR phase1, BSTR phase2) {
    const LentTexts labels{propertyNameArray2_, {phase1, phase2}};
    VARIANT_BOOL valid = VARIANT_FALSE;
    return SUCCEEDED(propertyRoutine_->CheckTwoPhasePropSpec(propName, labels.value(), &valid)) &&
           valid != VARIANT_FALSE;
}

} // namespace quorvane
