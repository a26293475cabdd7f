// Late-bound calls. The worksheet functions take numbers and texts by type; a worksheet
// passes ranges, empty cells and omissions in their place. Automation's own conversion would turn those into
// errors without a text, so the arguments are brought into shape here first: an omitted number or an empty
// cell becomes the lowest finite double, an omitted text a null text.
#pragma once

#include "com/platform.h"
#include "src/foundation/error_boundary.h"

#include <quorvane_idl.h>

namespace quorvane {

/// True for the member identifier of a worksheet function.
bool isWorksheetFunction(DISPID member) noexcept;

/// Invokes a worksheet function on `object`, whose vtable `info` describes. An argument that is neither of
/// its parameter's type nor convertible makes the function's result a text that says so, and so does want of
/// memory.
HRESULT invokeWorksheetFunction(IQuorvaneVSTOServices* object, ITypeInfo* info, SpareMessage& spare,
                                DISPID member, WORD flags, const DISPPARAMS& given, VARIANT* result,
                                EXCEPINFO* exception, UINT* argument) noexcept;

/// Invokes a service of the front end. GetPropInfo has several results; a script, whose variables are all
/// VARIANTs, gets them as well.
HRESULT invokeService(void* object, ITypeInfo* info, DISPID member, WORD flags, const DISPPARAMS& given,
                      VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept;

} // namespace quorvane
