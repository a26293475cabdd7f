// Texts that other programs left in the registry.
#pragma once

#include "com/platform.h"

#include <string>

namespace quorvane {

/// The text of value `name` of an open key (null: its default value), environment variables expanded where
/// the value asks for it. Empty when there is no such value, or none that is a text.
std::wstring registryText(HKEY key, const wchar_t* name);

} // namespace quorvane
