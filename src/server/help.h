// The help file Quorvane.chm, which lies beside the add-in, in the HTML Help viewer of Windows. The viewer is
// found at run time, once per process, so that the add-in also loads where there is none.
#pragma once

namespace quorvane {

/// Opens the help file. Throws CWStrException "Failed to load help file" when the viewer is not there or
/// shows no window.
void showHelp();

} // namespace quorvane
