// The front end's services.
#include "src/foundation/error_boundary.h"
#include "src/server/excel.h"
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

[[noreturn]] void notImplemented() { throw CWStrException{L"Not implemented"}; }

std::wstring textOf(BSTR text) { return std::wstring{com::viewOf(text)}; }

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
    return service(data, [&] { persist(session_.store(), workbookKey(wb), showMessage).handOver(data); });
}

HRESULT STDMETHODCALLTYPE Excel::Depersist(IUnknown* wb, VARIANT data) noexcept {
    return service([&] { depersist(session_.store(), workbookKey(wb), data, showMessage); });
}

HRESULT STDMETHODCALLTYPE Excel::CompoundNames(IUnknown*, BSTR, VARIANT* names) noexcept {
    return service(names, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::CompoundConstantNames(IUnknown*, BSTR, VARIANT* names) noexcept {
    return service(names, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::TemperatureDependentPropertyNames(IUnknown*, BSTR, VARIANT* names) noexcept {
    return service(names, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::PhaseNames(IUnknown*, BSTR, VARIANT* names) noexcept {
    return service(names, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::GetPhaseType(IUnknown*, BSTR, BSTR, EnumPhaseType* phaseType) noexcept {
    return service(phaseType, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::SinglePhasePropertyNames(IUnknown*, BSTR, VARIANT* names) noexcept {
    return service(names, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::TwoPhasePropertyNames(IUnknown*, BSTR, VARIANT* names) noexcept {
    return service(names, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::CheckSinglePhaseProperty(IUnknown*, BSTR, BSTR, BSTR,
                                                          VARIANT_BOOL* supported) noexcept {
    return service(supported, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::CheckTwoPhaseProperty(IUnknown*, BSTR, BSTR, BSTR, BSTR,
                                                       VARIANT_BOOL* supported) noexcept {
    return service(supported, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::GetPropInfo(BSTR, BSTR* unitMole, BSTR* unitMass,
                                             ::EnumPropertyType* propType, ::EnumDerivativeType* derivType,
                                             LONG* moleConversion, LONG* rank, VARIANT_BOOL* extensive,
                                             VARIANT_BOOL* overall) noexcept {
    for (const void* out : std::initializer_list<const void*>{unitMole, unitMass, propType, derivType,
                                                              moleConversion, rank, extensive, overall}) {
        if (out == nullptr) {
            return E_POINTER;
        }
    }
    return service(notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::ValueFromRange(IUnknown*, VARIANT* value) noexcept {
    return service(value, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::PhaseEquilibriumConditionNames(IUnknown*, BSTR, VARIANT* names) noexcept {
    return service(names, notImplemented);
}

HRESULT STDMETHODCALLTYPE Excel::Help() noexcept { return service(notImplemented); }

HRESULT STDMETHODCALLTYPE Excel::GetPackageInfo(BSTR, BSTR* packageInfo) noexcept {
    return service(packageInfo, notImplemented);
}

} // namespace quorvane
