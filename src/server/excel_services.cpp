// The front end's services.
#include "src/foundation/error_boundary.h"
#include "src/foundation/late_binding.h"
#include "src/server/excel.h"
#include "src/server/help.h"
#include "src/udf/arguments.h"
#include "src/workbook/message_box.h"
#include "src/workbook/persistence.h"

namespace quorvane {

namespace {

// The catalogue is plain C++ and declares its kinds itself.
static_assert(static_cast<int>(PropType_Temperature) == static_cast<int>(::PropType_Temperature));
static_assert(static_cast<int>(PropType_VaporFraction) == static_cast<int>(::PropType_VaporFraction));
static_assert(static_cast<int>(PropType_TwoPhase) == static_cast<int>(::PropType_TwoPhase));
static_assert(static_cast<int>(Derivative_Temperature) == static_cast<int>(::Derivative_Temperature));
static_assert(static_cast<int>(Derivative_MoleNumber) == static_cast<int>(::Derivative_MoleNumber));

template <typename Body>
HRESULT service(Body&& body) noexcept {
    return serviceCall(__uuidof(IQuorvaneVSTOServices), std::forward<Body>(body));
}

// A service with an out-argument; a failing one leaves it as it was.
template <typename Out, typename Body>
HRESULT service(Out* out, Body&& body) noexcept {
    return out == nullptr ? E_POINTER : service(std::forward<Body>(body));
}

std::wstring textOf(BSTR text) { return std::wstring{com::viewOf(text)}; }

com::unique_bstr optionalText(const wchar_t* text) {
    return text == nullptr ? com::unique_bstr{} : com::makeBstr(text);
}

VARIANT_BOOL automationBool(bool truth) noexcept { return truth ? VARIANT_TRUE : VARIANT_FALSE; }

std::shared_ptr<PropertyPackage> packageOf(Session& session, IUnknown* wb, BSTR ppName) {
    return session.store().require(workbookKey(wb), textOf(ppName));
}

Report reportTo(MessageBoxes& boxes) {
    return [&boxes](const std::wstring& message) { boxes.show(message); };
}

// The services that hand back a list of names.
HRESULT list(Session& session, IUnknown* wb, BSTR ppName, VARIANT* names,
             ArrayVariant (PropertyPackage::*read)()) noexcept {
    return service(names, [&] {
        const std::shared_ptr<PropertyPackage> package = packageOf(session, wb, ppName);
        (package.get()->*read)().handOver(names);
    });
}

} // namespace

HRESULT STDMETHODCALLTYPE Excel::CreateWorkbookPP(IUnknown* wb, BSTR managerName, GUID managerGUID,
                                                  CAPEOPENPackageManagerType type, BSTR packageName,
                                                  BSTR ppName) noexcept {
    return service([&] {
        session_.store().createPackage(workbookKey(wb), textOf(ppName), textOf(managerName), managerGUID,
                                       type, textOf(packageName));
    });
}

HRESULT STDMETHODCALLTYPE Excel::EditWorkbookPP(IUnknown* wb, BSTR ppName, VARIANT_BOOL* changed) noexcept {
    return service(changed, [&] {
        *changed = VARIANT_FALSE;
        if (session_.store().editPackage(workbookKey(wb), textOf(ppName))) {
            *changed = VARIANT_TRUE;
        }
    });
}

HRESULT STDMETHODCALLTYPE Excel::DeleteWorkbookPP(IUnknown* wb, BSTR ppName) noexcept {
    return service([&] { session_.store().deletePackage(workbookKey(wb), textOf(ppName)); });
}

HRESULT STDMETHODCALLTYPE Excel::CloseWorkbook(IUnknown* wb) noexcept {
    return service([&] { session_.store().closeWorkbook(workbookKey(wb)); });
}

HRESULT STDMETHODCALLTYPE Excel::PackageNames(IUnknown* wb, VARIANT* names) noexcept {
    return service(names, [&] { session_.store().packageNames(workbookKey(wb)).handOver(names); });
}

HRESULT STDMETHODCALLTYPE Excel::Persist(IUnknown* wb, VARIANT* data) noexcept {
    return service(data, [&] {
        MessageBoxes boxes;
        persist(session_.store(), workbookKey(wb), reportTo(boxes)).handOver(data);
    });
}

HRESULT STDMETHODCALLTYPE Excel::Depersist(IUnknown* wb, VARIANT data) noexcept {
    return service([&] {
        MessageBoxes boxes;
        depersist(session_.store(), workbookKey(wb), data, reportTo(boxes));
    });
}

HRESULT STDMETHODCALLTYPE Excel::CompoundNames(IUnknown* wb, BSTR ppName, VARIANT* names) noexcept {
    return list(session_, wb, ppName, names, &PropertyPackage::compoundNames);
}

HRESULT STDMETHODCALLTYPE Excel::CompoundConstantNames(IUnknown* wb, BSTR ppName, VARIANT* names) noexcept {
    return list(session_, wb, ppName, names, &PropertyPackage::compoundConstantList);
}

HRESULT STDMETHODCALLTYPE Excel::TemperatureDependentPropertyNames(IUnknown* wb, BSTR ppName,
                                                                   VARIANT* names) noexcept {
    return list(session_, wb, ppName, names, &PropertyPackage::temperatureDependentPropertyList);
}

HRESULT STDMETHODCALLTYPE Excel::PhaseNames(IUnknown* wb, BSTR ppName, VARIANT* names) noexcept {
    return list(session_, wb, ppName, names, &PropertyPackage::phaseNames);
}

HRESULT STDMETHODCALLTYPE Excel::GetPhaseType(IUnknown* wb, BSTR ppName, BSTR phaseName,
                                              EnumPhaseType* phaseType) noexcept {
    return service(phaseType,
                   [&] { *phaseType = packageOf(session_, wb, ppName)->phaseTypeNamed(phaseName); });
}

HRESULT STDMETHODCALLTYPE Excel::SinglePhasePropertyNames(IUnknown* wb, BSTR ppName,
                                                          VARIANT* names) noexcept {
    return list(session_, wb, ppName, names, &PropertyPackage::singlePhasePropertyList);
}

HRESULT STDMETHODCALLTYPE Excel::TwoPhasePropertyNames(IUnknown* wb, BSTR ppName, VARIANT* names) noexcept {
    return list(session_, wb, ppName, names, &PropertyPackage::twoPhasePropertyList);
}

HRESULT STDMETHODCALLTYPE Excel::CheckSinglePhaseProperty(IUnknown* wb, BSTR ppName, BSTR propertyName,
                                                          BSTR phaseName, VARIANT_BOOL* supported) noexcept {
    return service(supported, [&] {
        *supported = automationBool(packageOf(session_, wb, ppName)->canCalculate(propertyName, phaseName));
    });
}

HRESULT STDMETHODCALLTYPE Excel::CheckTwoPhaseProperty(IUnknown* wb, BSTR ppName, BSTR propertyName,
                                                       BSTR phase1Name, BSTR phase2Name,
                                                       VARIANT_BOOL* supported) noexcept {
    return service(supported, [&] {
        *supported = automationBool(
            packageOf(session_, wb, ppName)->canCalculate(propertyName, phase1Name, phase2Name));
    });
}

HRESULT STDMETHODCALLTYPE Excel::GetPropInfo(BSTR propName, BSTR* unitMole, BSTR* unitMass,
                                             ::EnumPropertyType* propType, ::EnumDerivativeType* derivType,
                                             LONG* moleConversion, LONG* rank, VARIANT_BOOL* extensive,
                                             VARIANT_BOOL* overall) noexcept {
    for (const void* out : std::initializer_list<const void*>{unitMole, unitMass, propType, derivType,
                                                              moleConversion, rank, extensive, overall}) {
        if (out == nullptr) {
            return E_POINTER;
        }
    }
    return service([&] {
        const PropertyInfo& info = lookupProperty(propName);
        com::unique_bstr mole = optionalText(info.unitMole);
        com::unique_bstr mass = optionalText(info.unitMass);
        *unitMole = mole.release();
        *unitMass = mass.release();
        *propType = static_cast<::EnumPropertyType>(info.propType);
        *derivType = static_cast<::EnumDerivativeType>(info.derivType);
        *moleConversion = info.moleConversion;
        *rank = info.rank;
        *extensive = automationBool(info.extensive);
        *overall = automationBool(info.overall);
    });
}

HRESULT STDMETHODCALLTYPE Excel::ValueFromRange(IUnknown* range, VARIANT* value) noexcept {
    return service(value, [&] { *value = readValueOfRange(range).release(); });
}

HRESULT STDMETHODCALLTYPE Excel::PhaseEquilibriumConditionNames(IUnknown* wb, BSTR ppName,
                                                                VARIANT* names) noexcept {
    return list(session_, wb, ppName, names, &PropertyPackage::equilibriumConditionNames);
}

HRESULT STDMETHODCALLTYPE Excel::Help() noexcept { return service(showHelp); }

HRESULT STDMETHODCALLTYPE Excel::GetPackageInfo(BSTR packageName, BSTR* packageInfo) noexcept {
    return service(packageInfo, [&] {
        *packageInfo = com::makeBstr(udf::readPackage(session_, packageName)->describe()).release();
    });
}

} // namespace quorvane
