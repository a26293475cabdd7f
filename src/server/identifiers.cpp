// The one place where the identifiers of the interface description get storage.
#include <initguid.h>

#include "com/platform.h"

#include <quorvane_idl.h>
