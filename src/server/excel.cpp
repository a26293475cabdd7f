// Connection with Excel and the worksheet functions.
#include "src/server/excel.h"

#include "src/udf/compound_properties.h"
#include "src/udf/mixture_properties.h"
#include "src/udf/package_information.h"
#include "src/udf/phase_equilibrium.h"

namespace quorvane {

// A worksheet function gives its result, or the text of its failure.
template <typename Body>
HRESULT Excel::worksheet(VARIANT* result, Body&& body) noexcept {
    if (result == nullptr) {
        return E_POINTER;
    }
    VariantInit(result);
    return worksheetCall(
        __uuidof(IQuorvaneUDF), spare_,
        [&] {
            com::variant value;
            body(value);
            *result = value.release();
        },
        [&](com::unique_bstr message) { *result = com::variant{std::move(message)}.release(); });
}

// Excel does nothing with a failing event but complain, so every event succeeds.
template <typename Body>
HRESULT Excel::event(Body&& body) noexcept {
    try {
        body();
    } catch (...) {
        installErrorInfo(currentFailureMessage().get(), __uuidof(_IDTExtensibility2));
    }
    return S_OK;
}

void* Excel::findInterface(REFIID iid) noexcept {
    const bool isServicesBase = iid == IID_IDispatch || iid == __uuidof(IQuorvaneUDF);
    return implements::findInterface(isServicesBase ? __uuidof(IQuorvaneVSTOServices) : iid);
}

HRESULT STDMETHODCALLTYPE Excel::InterfaceSupportsErrorInfo(REFIID) noexcept { return S_OK; }

HRESULT STDMETHODCALLTYPE Excel::OnConnection(IDispatch* application, ext_ConnectMode, IDispatch*,
                                              SAFEARRAY**) noexcept {
    return event([&] {
        session_.connect(application);
        session_.handOver(this);
    });
}

HRESULT STDMETHODCALLTYPE Excel::OnDisconnection(ext_DisconnectMode, SAFEARRAY**) noexcept {
    return event([&] { session_.disconnect(); });
}

HRESULT STDMETHODCALLTYPE Excel::OnAddInsUpdate(SAFEARRAY**) noexcept { return S_OK; }

HRESULT STDMETHODCALLTYPE Excel::OnStartupComplete(SAFEARRAY**) noexcept { return S_OK; }

HRESULT STDMETHODCALLTYPE Excel::OnBeginShutdown(SAFEARRAY**) noexcept {
    return event([&] { session_.beginShutdown(); });
}

HRESULT STDMETHODCALLTYPE Excel::CapeOpenPackageNames(VARIANT orientation, VARIANT* packageNames) noexcept {
    return worksheet(packageNames,
                     [&](VARIANT& result) { udf::packageNames(session_, this, orientation, result); });
}

HRESULT STDMETHODCALLTYPE Excel::CapeOpenUnitOfMeasure(BSTR propertyName, VARIANT basis,
                                                       BSTR* unit) noexcept {
    if (unit == nullptr) {
        return E_POINTER;
    }
    *unit = nullptr;
    return worksheetCall(
        __uuidof(IQuorvaneUDF), spare_, [&] { *unit = udf::unitOfMeasure(propertyName, basis); },
        [&](com::unique_bstr message) { *unit = message.release(); });
}

HRESULT STDMETHODCALLTYPE Excel::CapeOpenCompounds(BSTR packageName, VARIANT orientation, VARIANT compound,
                                                   VARIANT* compounds) noexcept {
    return worksheet(compounds, [&](VARIANT& result) {
        udf::compounds(session_, packageName, orientation, compound, result);
    });
}

HRESULT STDMETHODCALLTYPE Excel::CapeOpenPhases(BSTR packageName, VARIANT orientation, VARIANT phase,
                                                VARIANT* phases) noexcept {
    return worksheet(
        phases, [&](VARIANT& result) { udf::phases(session_, packageName, orientation, phase, result); });
}

HRESULT STDMETHODCALLTYPE Excel::CapeOpenCompoundConstant(BSTR packageName, BSTR constantName, VARIANT basis,
                                                          VARIANT orientation, VARIANT compound,
                                                          VARIANT* values) noexcept {
    return worksheet(values, [&](VARIANT& result) {
        udf::compoundConstant(session_, {packageName, constantName, basis, orientation, compound}, result);
    });
}

HRESULT STDMETHODCALLTYPE Excel::CapeOpenTemperatureDependentProperty(BSTR packageName, BSTR propertyName,
                                                                      double T, VARIANT basis,
                                                                      VARIANT orientation, VARIANT compound,
                                                                      VARIANT* values) noexcept {
    return worksheet(values, [&](VARIANT& result) {
        udf::temperatureDependentProperty(session_, {packageName, propertyName, basis, orientation, compound},
                                          T, result);
    });
}

HRESULT STDMETHODCALLTYPE Excel::CapeOpenMixtureProperty(BSTR packageName, BSTR propertyName, BSTR phaseName,
                                                         double T, double P, VARIANT composition,
                                                         VARIANT compositionBasis, VARIANT propertyBasis,
                                                         VARIANT orientation, VARIANT transposed,
                                                         VARIANT normalizeComposition,
                                                         VARIANT* values) noexcept {
    return worksheet(values, [&](VARIANT& result) {
        udf::mixtureProperty(session_,
                             {packageName, propertyName, phaseName, T, P, composition, compositionBasis,
                              propertyBasis, orientation, transposed, normalizeComposition},
                             result);
    });
}

HRESULT STDMETHODCALLTYPE Excel::CapeOpenTwoPhaseProperty(
    BSTR packageName, BSTR propertyName, BSTR phase1Name, BSTR phase2Name, double T, double P,
    VARIANT phase1Composition, VARIANT phase2Composition, VARIANT compositionBasis, VARIANT orientation,
    VARIANT compositionDerivativePhase, VARIANT transposed, VARIANT normalizeComposition,
    VARIANT* values) noexcept {
    return worksheet(values, [&](VARIANT& result) {
        udf::twoPhaseProperty(session_,
                              {packageName, propertyName, phase1Name, phase2Name, T, P, phase1Composition,
                               phase2Composition, compositionBasis, orientation, compositionDerivativePhase,
                               transposed, normalizeComposition},
                              result);
    });
}

HRESULT STDMETHODCALLTYPE Excel::CapeOpenPhaseEquilibrium(BSTR packageName, VARIANT overallComposition,
                                                          BSTR condition1, double condition1Value,
                                                          BSTR condition2, double condition2Value,
                                                          VARIANT basis, VARIANT options, VARIANT noNumber,
                                                          VARIANT orientation, VARIANT normalizeComposition,
                                                          VARIANT* values) noexcept {
    return worksheet(values, [&](VARIANT& result) {
        udf::phaseEquilibrium(session_,
                              {packageName, overallComposition, condition1, condition1Value, condition2,
                               condition2Value, basis, options, noNumber, orientation, normalizeComposition},
                              result);
    });
}

} // namespace quorvane
