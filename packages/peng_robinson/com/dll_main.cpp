// The four exports.
#include "com/class_factory.h"
#include "packages/peng_robinson/com/identity.h"
#include "packages/peng_robinson/com/property_package.h"
#include "packages/peng_robinson/com/registration.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
    return com::getClassObject<peng_robinson::PropertyPackage>(peng_robinson::packageClsid, clsid, iid, out);
}

STDAPI DllCanUnloadNow() { return com::liveObjects == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return peng_robinson::registerPackage(); }

STDAPI DllUnregisterServer() { return peng_robinson::unregisterPackage(); }
