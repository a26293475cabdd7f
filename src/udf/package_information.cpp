#include "src/udf/package_information.h"

#include "src/foundation/text.h"
#include "src/udf/arguments.h"
#include "src/udf/layout.h"

#include <algorithm>

namespace quorvane::udf {

namespace {

// All elements of a text list, or the selected one in a one-dimensional array, which any cell shows as
// itself.
void giveNames(const ArrayVariant& list, std::int32_t selected, const VARIANT& orientation, VARIANT& result) {
    ArrayVariant names = list.copy();
    requireVector(names, VT_BSTR, {});
    if (selected == selectAll) {
        shapeTexts(names.elements<BSTR>(), readOrientation(orientation, false)).handOver(&result);
        return;
    }
    if (selected >= names.count) {
        throw CWStrException{changedMeanwhile};
    }
    ArrayVariant single;
    single.createVector(1, VT_BSTR);
    std::swap(single.elements<BSTR>()[0], names.elements<BSTR>()[static_cast<std::size_t>(selected)]);
    single.handOver(&result);
}

} // namespace

void packageNames(Session& session, IQuorvaneVSTOServices* services, const VARIANT& orientation,
                  VARIANT& result) {
    session.handOver(services);
    if (!Session::application()) {
        throw CWStrException{L"Cannot determine current workbook"};
    }
    const PackageTable& table = session.currentWorkbook();
    if (table.empty()) {
        throw CWStrException{L"No CAPE-OPEN packages are loaded"};
    }
    std::vector<com::unique_bstr> owned;
    std::vector<BSTR> names;
    for (const auto& entry : table) {
        names.push_back(owned.emplace_back(com::makeBstr(entry.first)).get());
    }
    std::ranges::sort(names, precedesInList);
    shapeTexts(names, readOrientation(orientation, false)).handOver(&result);
}

BSTR unitOfMeasure(BSTR propertyName, const VARIANT& basis) {
    const PropertyInfo& info = lookupProperty(propertyName);
    const wchar_t* const unit = readBasis(basis) ? info.unitMass : info.unitMole;
    return unit == nullptr ? nullptr : com::makeBstr(unit).release();
}

void compounds(Session& session, BSTR packageName, const VARIANT& orientation, const VARIANT& compound,
               VARIANT& result) {
    const std::shared_ptr<PropertyPackage> package = readPackage(session, packageName);
    const std::int32_t selected = readCompound(*package, compound);
    giveNames(package->compoundList(CompoundList_Ids), selected, orientation, result);
}

void phases(Session& session, BSTR packageName, const VARIANT& orientation, const VARIANT& phase,
            VARIANT& result) {
    const std::shared_ptr<PropertyPackage> package = readPackage(session, packageName);
    const std::int32_t selected = readPhase(*package, phase);
    giveNames(package->phaseLabels(), selected, orientation, result);
}

} // namespace quorvane::udf
