// The four exports.
#include "com/class_factory.h"
#include "packages/peng_robinson/com/identity.h"
#include "packages/peng_robinson/com/package_manager.h"
#include "packages/peng_robinson/com/property_package.h"
#include "packages/peng_robinson/com/registration.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
    using namespace peng_robinson;
    return clsid == managerClsid ? com::getClassObject<PackageManager>(managerClsid, clsid, iid, out)
                                 : com::getClassObject<PropertyPackage>(packageClsid, clsid, iid, out);
}

STDAPI DllCanUnloadNow() { return com::liveObjects == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return peng_robinson::registerClasses(); }

STDAPI DllUnregisterServer() { return peng_robinson::unregisterClasses(); }
