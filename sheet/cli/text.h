// UTF-8 inside, UTF-16 towards Windows; and what Windows says about a failure.
#pragma once

#include "com/platform.h"

#include <string>
#include <string_view>

namespace sheet::cli {

std::wstring toWide(std::string_view text);
std::string toUtf8(std::wstring_view text);

/// What the system says about an error code, without a line end; the code itself when it says nothing.
std::string systemText(HRESULT code);

} // namespace sheet::cli
