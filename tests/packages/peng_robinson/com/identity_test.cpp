#include "packages/peng_robinson/com/identity.h"
#include "tests/packages/peng_robinson/com/support.h"

namespace peng_robinson::test {
namespace {

struct Identity : Package {};

TEST_F(Identity, PackageTellsItsNameAndTakesAnother) {
    com::unique_bstr name;
    ASSERT_EQ(identification->get_ComponentName(name.put()), S_OK);
    EXPECT_EQ(com::viewOf(name), L"Peng-Robinson");
    const com::unique_bstr mine = com::makeBstr(L"my package");
    ASSERT_EQ(identification->put_ComponentName(mine.get()), S_OK);
    ASSERT_EQ(identification->get_ComponentName(name.put()), S_OK);
    EXPECT_EQ(com::viewOf(name), L"my package");
}

TEST_F(Identity, EmptyNameIsRefused) {
    expectFailure(identification->put_ComponentName(nullptr), ECapeInvalidArgumentHR,
                  L"The name of the component cannot be empty", L"ICapeIdentification", L"ComponentName");
}

TEST_F(Identity, AllInterfacesBelongToOneObject) {
    const auto unknown = object.tryAs<IUnknown>();
    EXPECT_EQ(identification.tryAs<IUnknown>().get(), unknown.get());
    EXPECT_EQ(properties.tryAs<IUnknown>().get(), unknown.get());
    EXPECT_EQ(com::queryFor<ECapeUser>(compounds.get()).tryAs<IUnknown>().get(), unknown.get());
    EXPECT_FALSE(object.tryAs<ICapeThermoMaterial>());
}

TEST_F(Identity, MethodsAreFoundByName) {
    const auto late = compounds.tryAs<ICapeThermoCompounds>();
    wchar_t name[] = L"GetNumCompounds";
    LPOLESTR names[] = {name};
    DISPID id = 0;
    ASSERT_EQ(late->GetIDsOfNames(IID_NULL, names, 1, 0, &id), S_OK);
    EXPECT_EQ(id, 4);
    DISPPARAMS none{};
    com::variant result;
    ASSERT_EQ(late->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &none, &result, nullptr, nullptr), S_OK);
    EXPECT_EQ(result.vt, VT_I4);
    EXPECT_EQ(result.lVal, 25);
}

TEST_F(Identity, LifeCycle) {
    EXPECT_EQ(utilities->put_simulationContext(nullptr), S_OK);
    EXPECT_EQ(utilities->Initialize(), S_OK);
    EXPECT_EQ(utilities->Terminate(), S_OK);
}

TEST_F(Identity, PackageHasNoParameters) {
    com::com_ptr<IDispatch> parameters;
    expectFailure(utilities->get_parameters(parameters.put()), ECapeNoImplHR,
                  L"This package has no parameters", L"ICapeUtilities", L"parameters");
    EXPECT_EQ(lastFailure(object.get()).name, L"ECapeNoImpl");
    EXPECT_FALSE(parameters);
}

TEST(Dll, UnloadsWhenTheLastObjectIsGone) {
    const PackageDll& dll = PackageDll::instance();
    ASSERT_EQ(dll.canUnloadNow(), S_OK);
    {
        const auto package = dll.createPackage();
        EXPECT_EQ(dll.canUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(dll.canUnloadNow(), S_OK);
}

TEST(Dll, KnowsItsOwnClassOnly) {
    com::com_ptr<IClassFactory> factory;
    EXPECT_EQ(PackageDll::instance().getClassObject(IID_IUnknown, IID_IClassFactory, factory.putVoid()),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(PackageDll::instance().getClassObject(packageClsid, IID_IClassFactory, nullptr), E_POINTER);
}

} // namespace
} // namespace peng_robinson::test
