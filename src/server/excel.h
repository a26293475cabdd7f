// Excel: the add-in's one creatable class, a thin face. Every method is an error boundary and one call down.
//
// Excel offers the methods of the class's default interface as worksheet functions. IDispatch therefore
// describes IQuorvaneUDF alone, while late-bound calls by name or member identifier reach the front end's
// services as well.
#pragma once

#include "com/dual.h"
#include "com/implements.h"
#include "src/foundation/error_boundary.h"
#include "src/workbook/session.h"

#include <office_idl.h>
#include <quorvane_idl.h>

namespace quorvane {

class Excel final
    : public com::implements<com::COMObject, IQuorvaneVSTOServices, _IDTExtensibility2, ISupportErrorInfo> {
  public:
    void* findInterface(REFIID iid) noexcept override;

    // IDispatch
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) noexcept override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* argument) noexcept override;

    // IQuorvaneUDF
    HRESULT STDMETHODCALLTYPE CapeOpenPackageNames(VARIANT orientation,
                                                   VARIANT* packageNames) noexcept override;
    HRESULT STDMETHODCALLTYPE CapeOpenUnitOfMeasure(BSTR propertyName, VARIANT basis,
                                                    BSTR* unit) noexcept override;
    HRESULT STDMETHODCALLTYPE CapeOpenCompounds(BSTR packageName, VARIANT orientation, VARIANT compound,
                                                VARIANT* compounds) noexcept override;
    HRESULT STDMETHODCALLTYPE CapeOpenPhases(BSTR packageName, VARIANT orientation, VARIANT phase,
                                             VARIANT* phases) noexcept override;
    HRESULT STDMETHODCALLTYPE CapeOpenCompoundConstant(BSTR packageName, BSTR constantName, VARIANT basis,
                                                       VARIANT orientation, VARIANT compound,
                                                       VARIANT* values) noexcept override;
    HRESULT STDMETHODCALLTYPE CapeOpenTemperatureDependentProperty(BSTR packageName, BSTR propertyName,
                                                                   double T, VARIANT basis,
                                                                   VARIANT orientation, VARIANT compound,
                                                                   VARIANT* values) noexcept override;
    HRESULT STDMETHODCALLTYPE CapeOpenMixtureProperty(BSTR packageName, BSTR propertyName, BSTR phaseName,
                                                      double T, double P, VARIANT composition,
                                                      VARIANT compositionBasis, VARIANT propertyBasis,
                                                      VARIANT orientation, VARIANT transposed,
                                                      VARIANT normalizeComposition,
                                                      VARIANT* values) noexcept override;
    HRESULT STDMETHODCALLTYPE CapeOpenTwoPhaseProperty(BSTR packageName, BSTR propertyName, BSTR phase1Name,
                                                       BSTR phase2Name, double T, double P,
                                                       VARIANT phase1Composition, VARIANT phase2Composition,
                                                       VARIANT compositionBasis, VARIANT orientation,
                                                       VARIANT compositionDerivativePhase, VARIANT transposed,
                                                       VARIANT normalizeComposition,
                                                       VARIANT* values) noexcept override;
    HRESULT STDMETHODCALLTYPE CapeOpenPhaseEquilibrium(BSTR packageName, VARIANT overallComposition,
                                                       BSTR condition1, double condition1Value,
                                                       BSTR condition2, double condition2Value, VARIANT basis,
                                                       VARIANT options, VARIANT noNumber, VARIANT orientation,
                                                       VARIANT normalizeComposition,
                                                       VARIANT* values) noexcept override;

    // IQuorvaneVSTOServices
    HRESULT STDMETHODCALLTYPE CreateWorkbookPP(IUnknown* wb, BSTR managerName, GUID managerGUID,
                                               CAPEOPENPackageManagerType type, BSTR packageName,
                                               BSTR ppName) noexcept override;
    HRESULT STDMETHODCALLTYPE EditWorkbookPP(IUnknown* wb, BSTR ppName,
                                             VARIANT_BOOL* changed) noexcept override;
    HRESULT STDMETHODCALLTYPE DeleteWorkbookPP(IUnknown* wb, BSTR ppName) noexcept override;
    HRESULT STDMETHODCALLTYPE CloseWorkbook(IUnknown* wb) noexcept override;
    HRESULT STDMETHODCALLTYPE PackageNames(IUnknown* wb, VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE Persist(IUnknown* wb, VARIANT* persistenceData) noexcept override;
    HRESULT STDMETHODCALLTYPE Depersist(IUnknown* wb, VARIANT persistenceData) noexcept override;
    HRESULT STDMETHODCALLTYPE CompoundNames(IUnknown* wb, BSTR ppName, VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE CompoundConstantNames(IUnknown* wb, BSTR ppName,
                                                    VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE TemperatureDependentPropertyNames(IUnknown* wb, BSTR ppName,
                                                                VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE PhaseNames(IUnknown* wb, BSTR ppName, VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPhaseType(IUnknown* wb, BSTR ppName, BSTR phaseName,
                                           EnumPhaseType* phaseType) noexcept override;
    HRESULT STDMETHODCALLTYPE SinglePhasePropertyNames(IUnknown* wb, BSTR ppName,
                                                       VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE TwoPhasePropertyNames(IUnknown* wb, BSTR ppName,
                                                    VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckSinglePhaseProperty(IUnknown* wb, BSTR ppName, BSTR propertyName,
                                                       BSTR phaseName,
                                                       VARIANT_BOOL* supported) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckTwoPhaseProperty(IUnknown* wb, BSTR ppName, BSTR propertyName,
                                                    BSTR phase1Name, BSTR phase2Name,
                                                    VARIANT_BOOL* supported) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPropInfo(BSTR propName, BSTR* unitMole, BSTR* unitMass,
                                          ::EnumPropertyType* propType, ::EnumDerivativeType* derivType,
                                          LONG* moleConversion, LONG* rank, VARIANT_BOOL* extensive,
                                          VARIANT_BOOL* overall) noexcept override;
    HRESULT STDMETHODCALLTYPE ValueFromRange(IUnknown* range, VARIANT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE PhaseEquilibriumConditionNames(IUnknown* wb, BSTR ppName,
                                                             VARIANT* names) noexcept override;
    HRESULT STDMETHODCALLTYPE Help() noexcept override;
    HRESULT STDMETHODCALLTYPE GetPackageInfo(BSTR packageName, BSTR* packageInfo) noexcept override;

    // _IDTExtensibility2
    HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* application, ext_ConnectMode mode, IDispatch* addIn,
                                           SAFEARRAY** custom) noexcept override;
    HRESULT STDMETHODCALLTYPE OnDisconnection(ext_DisconnectMode mode, SAFEARRAY** custom) noexcept override;
    HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) noexcept override;
    HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) noexcept override;
    HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** custom) noexcept override;

    // ISupportErrorInfo
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override;

  private:
    template <typename Body>
    HRESULT worksheet(VARIANT* result, Body&& body) noexcept;
    template <typename Body>
    HRESULT event(Body&& body) noexcept;

    Session session_;
    SpareMessage spare_;
};

} // namespace quorvane
