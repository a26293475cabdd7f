// Late-bound reads of Excel's objects. Only properties and items of collections are read: nothing else is
// called, nothing is written.
#pragma once

#include "com/com_ptr.h"
#include "com/owned.h"
#include "com/platform.h"

namespace quorvane {

/// Reads property `name` of `object` with the given positional arguments (last first, as Automation wants
/// them). Throws CWStrException for a null object, WStrException with the object's own description when the
/// read fails.
void readProperty(com::variant& result, IDispatch* object, const wchar_t* name, UINT argumentCount,
                  VARIANT* arguments);

/// readProperty without arguments.
com::variant readProperty(IDispatch* object, const wchar_t* name);

/// The object that property `name` gives, or null when it gives none.
com::com_ptr<IDispatch> readObject(IDispatch* object, const wchar_t* name);

/// Item `index` of a collection, or null when it gives none. Throws as readProperty does.
com::com_ptr<IDispatch> readItem(IDispatch* collection, const wchar_t* index);

/// The Excel range that `value` refers to, or null when it is something else.
com::com_ptr<IDispatch> asRange(const VARIANT& value) noexcept;

/// The value of a range that a caller holds as any object, in Excel's own default form. Throws CWStrException
/// "not a range" for another object or null, and as readProperty does.
com::variant readValueOfRange(IUnknown* object);

/// The contents of a range: a scalar, or a two-dimensional array of VARIANT. Throws as readProperty does.
com::variant readRangeValue(IDispatch* range);

} // namespace quorvane
