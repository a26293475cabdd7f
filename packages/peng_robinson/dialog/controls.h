// The controls of the window that edits a package; also read by the resource compiler.
#pragma once

// NOLINTBEGIN(cppcoreguidelines-macro-usage): the resource compiler knows no constants
#define EDIT_PACKAGE 101

#define CONTROL_AVAILABLE 1001
#define CONTROL_CHOSEN 1002
#define CONTROL_ADD 1003
#define CONTROL_REMOVE 1004
#define CONTROL_UP 1005
#define CONTROL_DOWN 1006
#define CONTROL_PAIRS 1007
#define CONTROL_PARAMETER 1008
#define CONTROL_TABULATED 1009
#define CONTROL_USE_TABULATED 1010
#define CONTROL_MESSAGE 1011
// NOLINTEND(cppcoreguidelines-macro-usage)
