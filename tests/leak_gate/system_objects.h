// What this process holds of the system: handles of the kernel (files, registry keys, events, ...), objects
// of the window system, windows of this thread.
#pragma once

namespace leak_gate {

/// Also registry keys are kernel objects here.
long kernelHandles();
/// Zero where the system does not count them, as Wine does not.
long userObjects();
long gdiObjects();
/// Top-level windows of the calling thread.
long windows();

} // namespace leak_gate
