// The four exports.
#include "com/class_factory.h"
#include "src/server/excel.h"
#include "src/server/registration.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
    return com::getClassObject<quorvane::Excel>(__uuidof(::Excel), clsid, iid, out);
}

STDAPI DllCanUnloadNow() { return com::liveObjects == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return quorvane::registerServer(); }

STDAPI DllUnregisterServer() { return quorvane::unregisterServer(); }
