// The message box that tells the user which package was not saved or restored.
#pragma once

#include <string>

namespace quorvane {

/// Shows the message until the user closes it. For programs that run without a screen it also stays in the
/// thread's Automation error information, although the call that it belongs to succeeds.
void showMessage(const std::wstring& message);

} // namespace quorvane
