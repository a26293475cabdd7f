// The optional life-cycle calls on a CAPE-OPEN component.
#pragma once

#include "com/platform.h"

namespace quorvane {

/// True for the codes with which a component says that it has no such operation.
bool isNotImplemented(HRESULT code) noexcept;

/// Calls ICapeUtilities::Initialize. A component without ICapeUtilities, or without an implementation of
/// Initialize, is used as it is; another failure is thrown as WStrException.
void initializeObject(IUnknown* object);

/// Calls ICapeUtilities::Terminate where there is one; its result says nothing that anybody could act on.
void terminateObject(IUnknown* object) noexcept;

} // namespace quorvane
