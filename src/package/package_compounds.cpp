// Constants and temperature-dependent properties of a PropertyPackage's compounds.
#include "src/foundation/error_texts.h"
#include "src/foundation/outputs.h"
#include "src/package/lent_texts.h"
#include "src/package/property_package.h"

namespace quorvane {

namespace {

// Some values may be missing; the others are there all the same. Of a package that was edited meanwhile
// nobody knows which compounds they belong to.
void requireValues(HRESULT code, ArrayVariant& values, IUnknown* source, const Unchanged& unchanged) {
    const bool given = code == static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR);
    if (!given) {
        static_cast<void>(received(code, values));
    }
    unchanged.require();
    if (!given) {
        requireSuccess(code, source, {});
    }
}

} // namespace

// By the standard's convention no identifiers at all stand for all compounds.
ArrayVariant PropertyPackage::compoundIds(std::int32_t compound) const {
    ArrayVariant ids;
    if (compound >= 0) {
        ArrayVariant all = compoundData_[CompoundList_Ids].copy();
        requireVector(all, VT_BSTR, {});
        if (compound >= all.count) {
            throw CWStrException{changedMeanwhile};
        }
        ids.createVector(1, VT_BSTR);
        // They stay locked, for the reason that LentTexts has.
        std::swap(ids.elements<BSTR>()[0], all.elements<BSTR>()[static_cast<std::size_t>(compound)]);
    }
    return ids;
}

ArrayVariant PropertyPackage::compoundConstant(BSTR constantName, std::int32_t compound) {
    loadCompounds();
    const Unchanged unchanged{generation_};
    const ArrayVariant ids = compoundIds(compound);
    const LentTexts names{propertyNameArray1_, {constantName}};
    ArrayVariant values;
    const HRESULT code = compounds_->GetCompoundConstant(names.value(), ids.value, values.put());
    requireValues(code, values, compounds_.get(), unchanged);
    return values;
}

ArrayVariant PropertyPackage::temperatureDependentProperty(BSTR propertyName, double T,
                                                           std::int32_t compound) {
    loadCompounds();
    const Unchanged unchanged{generation_};
    const ArrayVariant ids = compoundIds(compound);
    const LentTexts names{propertyNameArray1_, {propertyName}};
    ArrayVariant values;
    const HRESULT code = compounds_->GetTDependentProperty(names.value(), T, ids.value, values.put());
    requireValues(code, values, compounds_.get(), unchanged);
    return values;
}

} // namespace quorvane
