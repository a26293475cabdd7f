#include "tests/packages/peng_robinson/com/support.h"

#include "com/safe_array.h"
#include "packages/peng_robinson/com/identity.h"

#include <stdexcept>

namespace peng_robinson::test {
namespace {

std::wstring folderOfTheProgram() {
    std::wstring path(2048, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.find_last_of(L'\\') + 1);
}

template <typename Interface>
com::com_ptr<Interface> require(const com::com_ptr<IDispatch>& object) {
    auto found = object.tryAs<Interface>();
    if (!found) {
        throw std::runtime_error{"the package misses an interface"};
    }
    return found;
}

} // namespace

PackageDll::PackageDll() : module_{LoadLibraryW((folderOfTheProgram() + L"PengRobinson.dll").c_str())} {
    if (module_ == nullptr) {
        throw std::runtime_error{"PengRobinson.dll could not be loaded from the folder of the test program"};
    }
}

const PackageDll& PackageDll::instance() {
    static const PackageDll dll;
    return dll;
}

template <typename Function>
Function* PackageDll::entry(const char* name) const {
    const auto address = GetProcAddress(module_, name);
    if (address == nullptr) {
        throw std::runtime_error{std::string{"PengRobinson.dll does not export "} + name};
    }
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(address));
}

HRESULT PackageDll::getClassObject(REFCLSID clsid, REFIID iid, void** out) const {
    return entry<HRESULT STDAPICALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject")(clsid, iid, out);
}
HRESULT PackageDll::canUnloadNow() const { return entry<HRESULT STDAPICALLTYPE()>("DllCanUnloadNow")(); }
HRESULT PackageDll::registerServer() const { return entry<HRESULT STDAPICALLTYPE()>("DllRegisterServer")(); }
HRESULT PackageDll::unregisterServer() const {
    return entry<HRESULT STDAPICALLTYPE()>("DllUnregisterServer")();
}

com::com_ptr<IDispatch> PackageDll::createPackage() const { return create(packageClsid); }
com::com_ptr<IDispatch> PackageDll::createManager() const { return create(managerClsid); }

com::com_ptr<IDispatch> PackageDll::create(REFCLSID clsid) const {
    com::com_ptr<IClassFactory> factory;
    com::com_ptr<IDispatch> object;
    if (FAILED(getClassObject(clsid, IID_IClassFactory, factory.putVoid())) ||
        FAILED(factory->CreateInstance(nullptr, IID_IDispatch, object.putVoid()))) {
        throw std::runtime_error{"the object could not be created"};
    }
    return object;
}

com::variant texts(const Texts& values) { return com::textArray(values); }
com::variant reals(const Reals& values) { return com::realArray(values); }

Texts textsOf(const VARIANT& value) {
    Texts result;
    EXPECT_EQ(value.vt, VT_ARRAY | VT_BSTR);
    if (value.vt == (VT_ARRAY | VT_BSTR)) {
        const com::array_lock<BSTR> lock{value.parray};
        for (const BSTR text : lock.elements()) {
            result.emplace_back(com::viewOf(text));
        }
    }
    return result;
}

Reals realsOf(const VARIANT& value) {
    EXPECT_EQ(value.vt, VT_ARRAY | VT_R8);
    if (value.vt != (VT_ARRAY | VT_R8)) {
        return {};
    }
    const com::array_lock<double> lock{value.parray};
    return {lock.elements().begin(), lock.elements().end()};
}

Failure lastFailure(IUnknown* object) {
    Failure failure;
    const auto user = com::queryFor<ECapeUser>(object);
    const auto root = com::queryFor<ECapeRoot>(object);
    const auto read = [](auto source, auto method, std::wstring& target) {
        com::unique_bstr text;
        EXPECT_EQ((source.get()->*method)(text.put()), S_OK);
        target = com::viewOf(text);
    };
    read(root, &ECapeRoot::get_name, failure.name);
    read(user, &ECapeUser::get_description, failure.description);
    read(user, &ECapeUser::get_interfaceName, failure.interfaceName);
    read(user, &ECapeUser::get_operation, failure.operation);
    read(user, &ECapeUser::get_scope, failure.scope);
    return failure;
}

Package::Package()
    : object{PackageDll::instance().createPackage()}, identification{require<ICapeIdentification>(object)},
      utilities{require<ICapeUtilities>(object)}, compounds{require<ICapeThermoCompounds>(object)},
      phases{require<ICapeThermoPhases>(object)}, properties{require<ICapeThermoPropertyRoutine>(object)},
      equilibrium{require<ICapeThermoEquilibriumRoutine>(object)},
      constants{require<ICapeThermoUniversalConstant>(object)}, context{require<ICapeThermoMaterialContext>(
                                                                    object)} {}

void expectFailure(IUnknown* object, HRESULT result, eCapeErrorInterfaceHR code,
                   const std::wstring& description, const std::wstring& interfaceName,
                   const std::wstring& operation) {
    EXPECT_EQ(result, static_cast<HRESULT>(code));
    const Failure failure = lastFailure(object);
    EXPECT_EQ(failure.description, description);
    EXPECT_EQ(failure.interfaceName, interfaceName);
    EXPECT_EQ(failure.operation, operation);
    EXPECT_EQ(failure.scope, L"PengRobinson::" + interfaceName + L"::" + operation);
}

Texts compoundIdsOf(ICapeThermoCompounds& compounds) {
    com::variant ids, formulae, names, boilingPoints, weights, casNumbers;
    EXPECT_EQ(compounds.GetCompoundList(&ids, &formulae, &names, &boilingPoints, &weights, &casNumbers),
              S_OK);
    return textsOf(ids);
}

void Package::expectFailure(HRESULT result, eCapeErrorInterfaceHR code, const std::wstring& description,
                            const std::wstring& interfaceName, const std::wstring& operation) const {
    test::expectFailure(object.get(), result, code, description, interfaceName, operation);
}

} // namespace peng_robinson::test
