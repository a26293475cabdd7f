// The module's count of live COM objects. DllCanUnloadNow may answer S_OK only while it is zero, so every
// object derived from COMObject counts itself; nothing else does. Changed atomically: it is the one value
// that threads share.
#pragma once

#include <atomic>

namespace com {

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): there is one module
inline std::atomic<long> liveObjects{0};

} // namespace com
