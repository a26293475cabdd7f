// The text of a GUID, as the registry and saved workbooks have it.
#pragma once

#include "com/platform.h"

#include <string>

namespace quorvane {

/// Braces, and hexadecimal digits in upper case: 38 characters.
std::wstring guidText(REFGUID guid);

} // namespace quorvane
