// The window in which a person edits a package: chooses compounds and types binary parameters. The model
// holds all of its logic.
#pragma once

#include "packages/peng_robinson/editing/edit_model.h"

#include <string>

namespace peng_robinson {

enum class DialogAnswer {
    accepted, ///< the person wants what the model has now
    cancelled,
    unavailable, ///< there is no screen on which to show a window
};

/// Shows the window before the active one of this thread and waits for the person's answer.
DialogAnswer showEditDialog(EditModel& model, const std::wstring& title);

} // namespace peng_robinson
