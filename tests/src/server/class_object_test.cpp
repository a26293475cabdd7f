// The class object, the Excel object's interfaces, and the count that decides unloading.
#include "tests/src/server/add_in.h"

#include <gtest/gtest.h>

using namespace tests;

namespace {

AddIn& addIn() { return AddIn::instance(); }

com::com_ptr<IClassFactory> factory() {
    com::com_ptr<IClassFactory> result;
    EXPECT_EQ(addIn().getClassObject(__uuidof(Excel), IID_IClassFactory, result.putVoid()), S_OK);
    return result;
}

TEST(ClassObject, OfAnotherClassIsNotAvailable) {
    void* out = &out;
    EXPECT_EQ(addIn().getClassObject(IID_IUnknown, IID_IClassFactory, &out), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(out, nullptr);
}

TEST(ClassObject, NeedsAnOutPointer) {
    EXPECT_EQ(addIn().getClassObject(__uuidof(Excel), IID_IClassFactory, nullptr), E_POINTER);
}

TEST(ClassObject, IsAFactoryAndNothingElse) {
    void* out = &out;
    EXPECT_EQ(addIn().getClassObject(__uuidof(Excel), IID_IDispatch, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_TRUE(factory().tryAs<IUnknown>());
}

TEST(ClassObject, IsNewAtEveryCall) { EXPECT_NE(factory().get(), factory().get()); }

TEST(ClassObject, RefusesAggregation) {
    const auto outer = factory();
    void* out = &out;
    EXPECT_EQ(factory()->CreateInstance(outer.get(), IID_IUnknown, &out), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(out, nullptr);
}

TEST(ClassObject, DestroysAnObjectThatLacksTheInterface) {
    void* out = &out;
    EXPECT_EQ(factory()->CreateInstance(nullptr, IID_IStream, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(addIn().canUnloadNow(), S_OK);
}

TEST(Unloading, WaitsForTheFactory) {
    auto held = factory();
    EXPECT_EQ(addIn().canUnloadNow(), S_FALSE);
    held.reset();
    EXPECT_EQ(addIn().canUnloadNow(), S_OK);
}

TEST(Unloading, WaitsForTheObject) {
    auto object = addIn().create();
    EXPECT_EQ(addIn().canUnloadNow(), S_FALSE);
    object.reset();
    EXPECT_EQ(addIn().canUnloadNow(), S_OK);
}

TEST(Unloading, WaitsForALockToBeReleased) {
    factory()->LockServer(TRUE);
    EXPECT_EQ(addIn().canUnloadNow(), S_FALSE);
    factory()->LockServer(FALSE);
    EXPECT_EQ(addIn().canUnloadNow(), S_OK);
}

TEST(ExcelObject, HasTheInterfacesOfTheAddInAndOneIdentity) {
    const auto services = addIn().create();
    const auto identity = services.tryAs<IUnknown>();
    EXPECT_TRUE(services.tryAs<IQuorvaneUDF>());
    EXPECT_TRUE(services.tryAs<IDispatch>());
    EXPECT_EQ(services.tryAs<_IDTExtensibility2>().tryAs<IUnknown>().get(), identity.get());
    EXPECT_EQ(services.tryAs<ISupportErrorInfo>().tryAs<IUnknown>().get(), identity.get());
    EXPECT_FALSE(services.tryAs<IQuorvaneVSTOContext>());
}

TEST(ExcelObject, SupportsErrorInformationForEveryInterface) {
    const auto support = addIn().create().tryAs<ISupportErrorInfo>();
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(__uuidof(IQuorvaneUDF)), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IStream), S_OK);
}

TEST(ExcelObject, DescribesTheWorksheetFunctionsToExcel) {
    const auto object = addIn().create();
    UINT count = 0;
    ASSERT_EQ(object->GetTypeInfoCount(&count), S_OK);
    ASSERT_EQ(count, 1U);
    com::com_ptr<ITypeInfo> info;
    ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_TRUE(attributes->guid == __uuidof(IQuorvaneUDF));
    info->ReleaseTypeAttr(attributes);
    wchar_t function[] = L"CapeOpenPhaseEquilibrium";
    wchar_t service[] = L"CreateWorkbookPP";
    wchar_t* names[] = {function, service};
    MEMBERID id = 0;
    EXPECT_EQ(info->GetIDsOfNames(&names[0], 1, &id), S_OK);
    EXPECT_EQ(static_cast<unsigned long>(id), 0x60020008U);
    EXPECT_EQ(info->GetIDsOfNames(&names[1], 1, &id), DISP_E_UNKNOWNNAME)
        << "a service would become a worksheet function";
    EXPECT_EQ(object->GetTypeInfo(1, LOCALE_USER_DEFAULT, info.put()), DISP_E_BADINDEX);
}

TEST(ExcelObject, EventsSucceedWithoutExcel) {
    const auto events = addIn().create().tryAs<_IDTExtensibility2>();
    EXPECT_EQ(events->OnConnection(nullptr, ext_cm_Startup, nullptr, nullptr), S_OK);
    EXPECT_EQ(events->OnAddInsUpdate(nullptr), S_OK);
    EXPECT_EQ(events->OnStartupComplete(nullptr), S_OK);
    EXPECT_EQ(events->OnBeginShutdown(nullptr), S_OK);
    EXPECT_EQ(events->OnDisconnection(ext_dm_HostShutdown, nullptr), S_OK);
}

} // namespace
