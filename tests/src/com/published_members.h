// The published interfaces that packages of other makers are compiled against: identifier, and for every
// member its slot, its member identifier and the types of its arguments.
#pragma once

#include "tests/src/com/slot_of.h"

#include <capeopen_idl.h>

#include <cstddef>

namespace quorvane {

struct PublishedInterface {
    const wchar_t* name;
    const wchar_t* identifier;
    GUID compiled; ///< what the header was made into
};

struct PublishedMember {
    const wchar_t* interfaceName;
    const wchar_t* name; ///< get_ and put_ before the name of a property
    std::size_t slot;
    MEMBERID member;
    std::size_t compiled; ///< slot in the header
};

// Converting to this type is the check of the argument types.
template <typename Interface, typename... Arguments>
using Method = HRESULT (STDMETHODCALLTYPE Interface::*)(Arguments...);

inline const PublishedInterface publishedInterfaces[] = {
    {L"ICapeIdentification", L"{678C0990-7D66-11D2-A67D-00105A42887F}", __uuidof(ICapeIdentification)},
    {L"ICapeUtilities", L"{678C0A9B-0100-11D2-A67D-00105A42887F}", __uuidof(ICapeUtilities)},
    {L"ICapeCollection", L"{678C099A-0093-11D2-A67D-00105A42887F}", __uuidof(ICapeCollection)},
    {L"ICapeThermoMaterial", L"{678C0A9B-7D66-11D2-A67D-00105A42887F}", __uuidof(ICapeThermoMaterial)},
    {L"ICapeThermoMaterialContext", L"{678C0A9C-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ICapeThermoMaterialContext)},
    {L"ICapeThermoCompounds", L"{678C0A9D-7D66-11D2-A67D-00105A42887F}", __uuidof(ICapeThermoCompounds)},
    {L"ICapeThermoPhases", L"{678C0A9E-7D66-11D2-A67D-00105A42887F}", __uuidof(ICapeThermoPhases)},
    {L"ICapeThermoPropertyRoutine", L"{678C0A9F-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ICapeThermoPropertyRoutine)},
    {L"ICapeThermoEquilibriumRoutine", L"{678C0AA0-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ICapeThermoEquilibriumRoutine)},
    {L"ICapeThermoUniversalConstant", L"{678C0AA1-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ICapeThermoUniversalConstant)},
    {L"ICapeThermoPropertyPackageManager", L"{678C0AA2-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ICapeThermoPropertyPackageManager)},
    {L"ECapeRoot", L"{678C0B10-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeRoot)},
    {L"ECapeUser", L"{678C0B11-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeUser)},
    {L"ECapeBoundaries", L"{678C0B29-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeBoundaries)},
    {L"ECapeBadCOParameter", L"{678C0B15-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeBadCOParameter)},
    {L"ECapeBadArgument", L"{E29E42B3-E481-45C6-A737-78F4A7FC0391}", __uuidof(ECapeBadArgument)},
    {L"ECapeBadInvOrder", L"{678C0B22-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeBadInvOrder)},
    {L"ECapePersistenceNotFound", L"{678C0B26-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ECapePersistenceNotFound)},
    {L"ECapeOutsideSolverScope", L"{678C0B0F-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ECapeOutsideSolverScope)},
    {L"ECapeHessianInfoNotAvailable", L"{3FF0B24B-4299-4DAC-A46E-7843728AD205}",
     __uuidof(ECapeHessianInfoNotAvailable)},
    {L"ECapeUnknown", L"{678C0B12-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeUnknown)},
    {L"ECapeData", L"{678C0B13-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeData)},
    {L"ECapeLicenceError", L"{678C0B14-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeLicenceError)},
    {L"ECapeInvalidArgument", L"{678C0B17-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeInvalidArgument)},
    {L"ECapeOutOfBounds", L"{678C0B18-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeOutOfBounds)},
    {L"ECapeImplementation", L"{678C0B19-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeImplementation)},
    {L"ECapeNoImpl", L"{678C0B1A-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeNoImpl)},
    {L"ECapeLimitedImpl", L"{678C0B1B-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeLimitedImpl)},
    {L"ECapeComputation", L"{678C0B1C-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeComputation)},
    {L"ECapeOutOfResources", L"{678C0B1D-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeOutOfResources)},
    {L"ECapeNoMemory", L"{678C0B1E-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeNoMemory)},
    {L"ECapeTimeOut", L"{678C0B1F-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeTimeOut)},
    {L"ECapeFailedInitialisation", L"{678C0B20-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ECapeFailedInitialisation)},
    {L"ECapeSolvingError", L"{678C0B21-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeSolvingError)},
    {L"ECapeInvalidOperation", L"{678C0B23-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeInvalidOperation)},
    {L"ECapePersistence", L"{678C0B24-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapePersistence)},
    {L"ECapeIllegalAccess", L"{678C0B25-7D66-11D2-A67D-00105A42887F}", __uuidof(ECapeIllegalAccess)},
    {L"ECapePersistenceSystemError", L"{678C0B27-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ECapePersistenceSystemError)},
    {L"ECapePersistenceOverflow", L"{678C0B28-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ECapePersistenceOverflow)},
    {L"ECapeThrmPropertyNotAvailable", L"{678C09B6-7D66-11D2-A67D-00105A42887F}",
     __uuidof(ECapeThrmPropertyNotAvailable)},
    {L"ICapeParameter", L"{678C09A0-0093-11D2-A67D-00105A42887F}", __uuidof(ICapeParameter)},
    {L"ICapeParameterSpec", L"{678C099C-0093-11D2-A67D-00105A42887F}", __uuidof(ICapeParameterSpec)},
    {L"ICapeRealParameterSpec", L"{678C099D-0093-11D2-A67D-00105A42887F}", __uuidof(ICapeRealParameterSpec)},
    {L"ICapeSimulationContext", L"{678C0A9C-0100-11D2-A67D-00105A42887F}", __uuidof(ICapeSimulationContext)},
};

inline const PublishedMember publishedMembers[] = {
    {L"ICapeIdentification", L"get_ComponentName", 7, 1,
     slotOf<Method<ICapeIdentification, BSTR*>>(&ICapeIdentification::get_ComponentName)},
    {L"ICapeIdentification", L"put_ComponentName", 8, 1,
     slotOf<Method<ICapeIdentification, BSTR>>(&ICapeIdentification::put_ComponentName)},
    {L"ICapeIdentification", L"get_ComponentDescription", 9, 2,
     slotOf<Method<ICapeIdentification, BSTR*>>(&ICapeIdentification::get_ComponentDescription)},
    {L"ICapeIdentification", L"put_ComponentDescription", 10, 2,
     slotOf<Method<ICapeIdentification, BSTR>>(&ICapeIdentification::put_ComponentDescription)},
    {L"ICapeUtilities", L"get_parameters", 7, 1,
     slotOf<Method<ICapeUtilities, IDispatch**>>(&ICapeUtilities::get_parameters)},
    {L"ICapeUtilities", L"put_simulationContext", 8, 2,
     slotOf<Method<ICapeUtilities, IDispatch*>>(&ICapeUtilities::put_simulationContext)},
    {L"ICapeUtilities", L"Initialize", 9, 3, slotOf<Method<ICapeUtilities>>(&ICapeUtilities::Initialize)},
    {L"ICapeUtilities", L"Terminate", 10, 4, slotOf<Method<ICapeUtilities>>(&ICapeUtilities::Terminate)},
    {L"ICapeUtilities", L"Edit", 11, 5, slotOf<Method<ICapeUtilities>>(&ICapeUtilities::Edit)},
    {L"ICapeCollection", L"Item", 7, 1,
     slotOf<Method<ICapeCollection, VARIANT, IDispatch**>>(&ICapeCollection::Item)},
    {L"ICapeCollection", L"Count", 8, 2, slotOf<Method<ICapeCollection, LONG*>>(&ICapeCollection::Count)},
    {L"ICapeThermoMaterial", L"ClearAllProps", 7, 1,
     slotOf<Method<ICapeThermoMaterial>>(&ICapeThermoMaterial::ClearAllProps)},
    {L"ICapeThermoMaterial", L"CopyFromMaterial", 8, 2,
     slotOf<Method<ICapeThermoMaterial, IDispatch**>>(&ICapeThermoMaterial::CopyFromMaterial)},
    {L"ICapeThermoMaterial", L"CreateMaterial", 9, 3,
     slotOf<Method<ICapeThermoMaterial, IDispatch**>>(&ICapeThermoMaterial::CreateMaterial)},
    {L"ICapeThermoMaterial", L"GetOverallProp", 10, 4,
     slotOf<Method<ICapeThermoMaterial, BSTR, BSTR, VARIANT*>>(&ICapeThermoMaterial::GetOverallProp)},
    {L"ICapeThermoMaterial", L"GetOverallTPFraction", 11, 5,
     slotOf<Method<ICapeThermoMaterial, double*, double*, VARIANT*>>(
         &ICapeThermoMaterial::GetOverallTPFraction)},
    {L"ICapeThermoMaterial", L"GetPresentPhases", 12, 6,
     slotOf<Method<ICapeThermoMaterial, VARIANT*, VARIANT*>>(&ICapeThermoMaterial::GetPresentPhases)},
    {L"ICapeThermoMaterial", L"GetSinglePhaseProp", 13, 7,
     slotOf<Method<ICapeThermoMaterial, BSTR, BSTR, BSTR, VARIANT*>>(
         &ICapeThermoMaterial::GetSinglePhaseProp)},
    {L"ICapeThermoMaterial", L"GetTPFraction", 14, 8,
     slotOf<Method<ICapeThermoMaterial, BSTR, double*, double*, VARIANT*>>(
         &ICapeThermoMaterial::GetTPFraction)},
    {L"ICapeThermoMaterial", L"GetTwoPhaseProp", 15, 9,
     slotOf<Method<ICapeThermoMaterial, BSTR, VARIANT, BSTR, VARIANT*>>(
         &ICapeThermoMaterial::GetTwoPhaseProp)},
    {L"ICapeThermoMaterial", L"SetOverallProp", 16, 10,
     slotOf<Method<ICapeThermoMaterial, BSTR, BSTR, VARIANT>>(&ICapeThermoMaterial::SetOverallProp)},
    {L"ICapeThermoMaterial", L"SetPresentPhases", 17, 11,
     slotOf<Method<ICapeThermoMaterial, VARIANT, VARIANT>>(&ICapeThermoMaterial::SetPresentPhases)},
    {L"ICapeThermoMaterial", L"SetSinglePhaseProp", 18, 12,
     slotOf<Method<ICapeThermoMaterial, BSTR, BSTR, BSTR, VARIANT>>(
         &ICapeThermoMaterial::SetSinglePhaseProp)},
    {L"ICapeThermoMaterial", L"SetTwoPhaseProp", 19, 13,
     slotOf<Method<ICapeThermoMaterial, BSTR, VARIANT, BSTR, VARIANT>>(
         &ICapeThermoMaterial::SetTwoPhaseProp)},
    {L"ICapeThermoMaterialContext", L"SetMaterial", 7, 1,
     slotOf<Method<ICapeThermoMaterialContext, IDispatch*>>(&ICapeThermoMaterialContext::SetMaterial)},
    {L"ICapeThermoMaterialContext", L"UnsetMaterial", 8, 2,
     slotOf<Method<ICapeThermoMaterialContext>>(&ICapeThermoMaterialContext::UnsetMaterial)},
    {L"ICapeThermoCompounds", L"GetCompoundConstant", 7, 1,
     slotOf<Method<ICapeThermoCompounds, VARIANT, VARIANT, VARIANT*>>(
         &ICapeThermoCompounds::GetCompoundConstant)},
    {L"ICapeThermoCompounds", L"GetCompoundList", 8, 2,
     slotOf<Method<ICapeThermoCompounds, VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*>>(
         &ICapeThermoCompounds::GetCompoundList)},
    {L"ICapeThermoCompounds", L"GetConstPropList", 9, 3,
     slotOf<Method<ICapeThermoCompounds, VARIANT*>>(&ICapeThermoCompounds::GetConstPropList)},
    {L"ICapeThermoCompounds", L"GetNumCompounds", 10, 4,
     slotOf<Method<ICapeThermoCompounds, LONG*>>(&ICapeThermoCompounds::GetNumCompounds)},
    {L"ICapeThermoCompounds", L"GetPDependentProperty", 11, 5,
     slotOf<Method<ICapeThermoCompounds, VARIANT, double, VARIANT, VARIANT*>>(
         &ICapeThermoCompounds::GetPDependentProperty)},
    {L"ICapeThermoCompounds", L"GetPDependentPropList", 12, 6,
     slotOf<Method<ICapeThermoCompounds, VARIANT*>>(&ICapeThermoCompounds::GetPDependentPropList)},
    {L"ICapeThermoCompounds", L"GetTDependentProperty", 13, 7,
     slotOf<Method<ICapeThermoCompounds, VARIANT, double, VARIANT, VARIANT*>>(
         &ICapeThermoCompounds::GetTDependentProperty)},
    {L"ICapeThermoCompounds", L"GetTDependentPropList", 14, 8,
     slotOf<Method<ICapeThermoCompounds, VARIANT*>>(&ICapeThermoCompounds::GetTDependentPropList)},
    {L"ICapeThermoPhases", L"GetNumPhases", 7, 1,
     slotOf<Method<ICapeThermoPhases, LONG*>>(&ICapeThermoPhases::GetNumPhases)},
    {L"ICapeThermoPhases", L"GetPhaseInfo", 8, 2,
     slotOf<Method<ICapeThermoPhases, BSTR, BSTR, VARIANT*>>(&ICapeThermoPhases::GetPhaseInfo)},
    {L"ICapeThermoPhases", L"GetPhaseList", 9, 3,
     slotOf<Method<ICapeThermoPhases, VARIANT*, VARIANT*, VARIANT*>>(&ICapeThermoPhases::GetPhaseList)},
    {L"ICapeThermoPropertyRoutine", L"CalcAndGetLnPhi", 7, 1,
     slotOf<Method<ICapeThermoPropertyRoutine, BSTR, double, double, VARIANT, int, VARIANT*, VARIANT*,
                   VARIANT*, VARIANT*>>(&ICapeThermoPropertyRoutine::CalcAndGetLnPhi)},
    {L"ICapeThermoPropertyRoutine", L"CalcSinglePhaseProp", 8, 2,
     slotOf<Method<ICapeThermoPropertyRoutine, VARIANT, BSTR>>(
         &ICapeThermoPropertyRoutine::CalcSinglePhaseProp)},
    {L"ICapeThermoPropertyRoutine", L"CalcTwoPhaseProp", 9, 3,
     slotOf<Method<ICapeThermoPropertyRoutine, VARIANT, VARIANT>>(
         &ICapeThermoPropertyRoutine::CalcTwoPhaseProp)},
    {L"ICapeThermoPropertyRoutine", L"CheckSinglePhasePropSpec", 10, 4,
     slotOf<Method<ICapeThermoPropertyRoutine, BSTR, BSTR, VARIANT_BOOL*>>(
         &ICapeThermoPropertyRoutine::CheckSinglePhasePropSpec)},
    {L"ICapeThermoPropertyRoutine", L"CheckTwoPhasePropSpec", 11, 5,
     slotOf<Method<ICapeThermoPropertyRoutine, BSTR, VARIANT, VARIANT_BOOL*>>(
         &ICapeThermoPropertyRoutine::CheckTwoPhasePropSpec)},
    {L"ICapeThermoPropertyRoutine", L"GetSinglePhasePropList", 12, 6,
     slotOf<Method<ICapeThermoPropertyRoutine, VARIANT*>>(
         &ICapeThermoPropertyRoutine::GetSinglePhasePropList)},
    {L"ICapeThermoPropertyRoutine", L"GetTwoPhasePropList", 13, 7,
     slotOf<Method<ICapeThermoPropertyRoutine, VARIANT*>>(&ICapeThermoPropertyRoutine::GetTwoPhasePropList)},
    {L"ICapeThermoEquilibriumRoutine", L"CalcEquilibrium", 7, 1,
     slotOf<Method<ICapeThermoEquilibriumRoutine, VARIANT, VARIANT, BSTR>>(
         &ICapeThermoEquilibriumRoutine::CalcEquilibrium)},
    {L"ICapeThermoEquilibriumRoutine", L"CheckEquilibriumSpec", 8, 2,
     slotOf<Method<ICapeThermoEquilibriumRoutine, VARIANT, VARIANT, BSTR, VARIANT_BOOL*>>(
         &ICapeThermoEquilibriumRoutine::CheckEquilibriumSpec)},
    {L"ICapeThermoUniversalConstant", L"GetUniversalConstant", 7, 1,
     slotOf<Method<ICapeThermoUniversalConstant, BSTR, VARIANT*>>(
         &ICapeThermoUniversalConstant::GetUniversalConstant)},
    {L"ICapeThermoUniversalConstant", L"GetUniversalConstantList", 8, 2,
     slotOf<Method<ICapeThermoUniversalConstant, VARIANT*>>(
         &ICapeThermoUniversalConstant::GetUniversalConstantList)},
    {L"ICapeThermoPropertyPackageManager", L"GetPropertyPackageList", 7, 1,
     slotOf<Method<ICapeThermoPropertyPackageManager, VARIANT*>>(
         &ICapeThermoPropertyPackageManager::GetPropertyPackageList)},
    {L"ICapeThermoPropertyPackageManager", L"GetPropertyPackage", 8, 2,
     slotOf<Method<ICapeThermoPropertyPackageManager, BSTR, IDispatch**>>(
         &ICapeThermoPropertyPackageManager::GetPropertyPackage)},
    {L"ICapeParameter", L"get_Specification", 7, 1,
     slotOf<Method<ICapeParameter, IDispatch**>>(&ICapeParameter::get_Specification)},
    {L"ICapeParameter", L"get_value", 8, 2,
     slotOf<Method<ICapeParameter, VARIANT*>>(&ICapeParameter::get_value)},
    {L"ICapeParameter", L"put_value", 9, 2,
     slotOf<Method<ICapeParameter, VARIANT>>(&ICapeParameter::put_value)},
    {L"ICapeParameter", L"get_ValStatus", 10, 3,
     slotOf<Method<ICapeParameter, eCapeValidationStatus*>>(&ICapeParameter::get_ValStatus)},
    {L"ICapeParameter", L"get_Mode", 11, 4,
     slotOf<Method<ICapeParameter, eCapeParamMode*>>(&ICapeParameter::get_Mode)},
    {L"ICapeParameter", L"put_Mode", 12, 4,
     slotOf<Method<ICapeParameter, eCapeParamMode>>(&ICapeParameter::put_Mode)},
    {L"ICapeParameter", L"Validate", 13, 5,
     slotOf<Method<ICapeParameter, BSTR*, VARIANT_BOOL*>>(&ICapeParameter::Validate)},
    {L"ICapeParameter", L"Reset", 14, 6, slotOf<Method<ICapeParameter>>(&ICapeParameter::Reset)},
    {L"ICapeParameterSpec", L"get_Type", 7, 1,
     slotOf<Method<ICapeParameterSpec, eCapeParamType*>>(&ICapeParameterSpec::get_Type)},
    {L"ICapeParameterSpec", L"get_Dimensionality", 8, 2,
     slotOf<Method<ICapeParameterSpec, VARIANT*>>(&ICapeParameterSpec::get_Dimensionality)},
    {L"ICapeRealParameterSpec", L"get_DefaultValue", 7, 1,
     slotOf<Method<ICapeRealParameterSpec, double*>>(&ICapeRealParameterSpec::get_DefaultValue)},
    {L"ICapeRealParameterSpec", L"get_LowerBound", 8, 2,
     slotOf<Method<ICapeRealParameterSpec, double*>>(&ICapeRealParameterSpec::get_LowerBound)},
    {L"ICapeRealParameterSpec", L"get_UpperBound", 9, 3,
     slotOf<Method<ICapeRealParameterSpec, double*>>(&ICapeRealParameterSpec::get_UpperBound)},
    {L"ICapeRealParameterSpec", L"Validate", 10, 4,
     slotOf<Method<ICapeRealParameterSpec, double, BSTR*, VARIANT_BOOL*>>(&ICapeRealParameterSpec::Validate)},
    {L"ECapeRoot", L"get_name", 7, 1, slotOf<Method<ECapeRoot, BSTR*>>(&ECapeRoot::get_name)},
    {L"ECapeUser", L"get_code", 7, 1, slotOf<Method<ECapeUser, LONG*>>(&ECapeUser::get_code)},
    {L"ECapeUser", L"get_description", 8, 2, slotOf<Method<ECapeUser, BSTR*>>(&ECapeUser::get_description)},
    {L"ECapeUser", L"get_scope", 9, 3, slotOf<Method<ECapeUser, BSTR*>>(&ECapeUser::get_scope)},
    {L"ECapeUser", L"get_interfaceName", 10, 4,
     slotOf<Method<ECapeUser, BSTR*>>(&ECapeUser::get_interfaceName)},
    {L"ECapeUser", L"get_operation", 11, 5, slotOf<Method<ECapeUser, BSTR*>>(&ECapeUser::get_operation)},
    {L"ECapeUser", L"get_moreInfo", 12, 6, slotOf<Method<ECapeUser, BSTR*>>(&ECapeUser::get_moreInfo)},
    {L"ECapeBoundaries", L"get_LowerBound", 7, 1,
     slotOf<Method<ECapeBoundaries, double*>>(&ECapeBoundaries::get_LowerBound)},
    {L"ECapeBoundaries", L"get_UpperBound", 8, 2,
     slotOf<Method<ECapeBoundaries, double*>>(&ECapeBoundaries::get_UpperBound)},
    {L"ECapeBoundaries", L"get_value", 9, 3,
     slotOf<Method<ECapeBoundaries, double*>>(&ECapeBoundaries::get_value)},
    {L"ECapeBoundaries", L"get_Type", 10, 4,
     slotOf<Method<ECapeBoundaries, BSTR*>>(&ECapeBoundaries::get_Type)},
    {L"ECapeBadCOParameter", L"get_parameterName", 7, 1,
     slotOf<Method<ECapeBadCOParameter, BSTR*>>(&ECapeBadCOParameter::get_parameterName)},
    {L"ECapeBadCOParameter", L"get_parameter", 8, 2,
     slotOf<Method<ECapeBadCOParameter, IDispatch**>>(&ECapeBadCOParameter::get_parameter)},
    {L"ECapeBadArgument", L"get_position", 7, 1,
     slotOf<Method<ECapeBadArgument, short*>>(&ECapeBadArgument::get_position)},
    {L"ECapeBadInvOrder", L"get_requestedOperation", 7, 1,
     slotOf<Method<ECapeBadInvOrder, BSTR*>>(&ECapeBadInvOrder::get_requestedOperation)},
    {L"ECapePersistenceNotFound", L"get_itemName", 7, 1,
     slotOf<Method<ECapePersistenceNotFound, BSTR*>>(&ECapePersistenceNotFound::get_itemName)},
    {L"ECapeOutsideSolverScope", L"get_code", 7, 1,
     slotOf<Method<ECapeOutsideSolverScope, LONG*>>(&ECapeOutsideSolverScope::get_code)},
    {L"ECapeOutsideSolverScope", L"get_description", 8, 2,
     slotOf<Method<ECapeOutsideSolverScope, BSTR*>>(&ECapeOutsideSolverScope::get_description)},
    {L"ECapeOutsideSolverScope", L"get_scope", 9, 3,
     slotOf<Method<ECapeOutsideSolverScope, BSTR*>>(&ECapeOutsideSolverScope::get_scope)},
    {L"ECapeOutsideSolverScope", L"get_interfaceName", 10, 4,
     slotOf<Method<ECapeOutsideSolverScope, BSTR*>>(&ECapeOutsideSolverScope::get_interfaceName)},
    {L"ECapeOutsideSolverScope", L"get_operation", 11, 5,
     slotOf<Method<ECapeOutsideSolverScope, BSTR*>>(&ECapeOutsideSolverScope::get_operation)},
    {L"ECapeOutsideSolverScope", L"get_moreInfo", 12, 6,
     slotOf<Method<ECapeOutsideSolverScope, BSTR*>>(&ECapeOutsideSolverScope::get_moreInfo)},
    {L"ECapeHessianInfoNotAvailable", L"get_code", 7, 1,
     slotOf<Method<ECapeHessianInfoNotAvailable, LONG*>>(&ECapeHessianInfoNotAvailable::get_code)},
    {L"ECapeHessianInfoNotAvailable", L"get_description", 8, 2,
     slotOf<Method<ECapeHessianInfoNotAvailable, BSTR*>>(&ECapeHessianInfoNotAvailable::get_description)},
    {L"ECapeHessianInfoNotAvailable", L"get_scope", 9, 3,
     slotOf<Method<ECapeHessianInfoNotAvailable, BSTR*>>(&ECapeHessianInfoNotAvailable::get_scope)},
    {L"ECapeHessianInfoNotAvailable", L"get_interfaceName", 10, 4,
     slotOf<Method<ECapeHessianInfoNotAvailable, BSTR*>>(&ECapeHessianInfoNotAvailable::get_interfaceName)},
    {L"ECapeHessianInfoNotAvailable", L"get_operation", 11, 5,
     slotOf<Method<ECapeHessianInfoNotAvailable, BSTR*>>(&ECapeHessianInfoNotAvailable::get_operation)},
    {L"ECapeHessianInfoNotAvailable", L"get_moreInfo", 12, 6,
     slotOf<Method<ECapeHessianInfoNotAvailable, BSTR*>>(&ECapeHessianInfoNotAvailable::get_moreInfo)},
};

} // namespace quorvane
