// The four exports, and what the run time is told not to do.
#include "com/class_factory.h"
#include "src/server/excel.h"
#include "src/server/registration.h"

#include <cstdlib>

#ifdef __GNUG__
namespace __gnu_cxx {
// GCC's run time calls this when an exception has no handler, to print the exception's decoded name. Nobody
// sees what a DLL in Excel prints, and the decoder is a tenth of the DLL.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl51-cpp): the run time gives it the name
void __verbose_terminate_handler() { std::abort(); }
} // namespace __gnu_cxx
#endif

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
    return com::getClassObject<quorvane::Excel>(__uuidof(::Excel), clsid, iid, out);
}

STDAPI DllCanUnloadNow() { return com::liveObjects == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return quorvane::registerServer(); }

STDAPI DllUnregisterServer() { return quorvane::unregisterServer(); }
