// Late binding, served from the type library embedded in this program, or refused.
#include "com/com_ptr.h"
#include "com/dual.h"
#include "com/implements.h"
#include "com/owned.h"
#include "tests/leak_gate/allocations.h"

#include <quorvane_idl.h>

#include <gtest/gtest.h>

namespace com {
namespace {

template <template <typename> class Face>
class Context final : public implements<COMObject, Face<IQuorvaneVSTOContext>> {
  public:
    int calls = 0;
    HRESULT STDMETHODCALLTYPE SetServices(IQuorvaneVSTOServices* services) noexcept override {
        calls += services == nullptr ? 1 : 100;
        return S_OK;
    }
    IDispatch* dispatch() noexcept {
        return static_cast<IQuorvaneVSTOContext*>(static_cast<Face<IQuorvaneVSTOContext>*>(this));
    }
};

using Served = Context<ServedDual>;
using Refused = Context<RefusedDual>;

HRESULT memberNamed(IDispatch* object, const wchar_t* name, DISPID& id) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): it is only read
    wchar_t* names[] = {const_cast<wchar_t*>(name)};
    return object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
}

HRESULT callWithoutServices(IDispatch* object, DISPID id) {
    variant argument = variant::object(nullptr);
    DISPPARAMS parameters{&argument, nullptr, 1, 0};
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                          nullptr);
}

// Before any other test of late binding in this program: nothing is known of the type library yet.
TEST(ServedDual, ServesAfterMemoryWasShortForItsFirstCalls) {
    using leak_gate::Refusal;
    const auto object = make<Served>();
    DISPID id = 0;
    bool happened = true;
    for (long long position = 1; happened; ++position) {
        const Refusal refusal{leak_gate::testProgram, position, Refusal::Extent::One};
        memberNamed(object->dispatch(), L"SetServices", id);
        happened = refusal.happened();
    }
    EXPECT_EQ(memberNamed(object->dispatch(), L"SetServices", id), S_OK);
    EXPECT_EQ(callWithoutServices(object->dispatch(), id), S_OK);
}

TEST(ServedDual, FindsItsMembersByName) {
    const auto object = make<Served>();
    DISPID id = 0;
    EXPECT_EQ(memberNamed(object->dispatch(), L"SetServices", id), S_OK);
    EXPECT_EQ(id, 1);
    EXPECT_EQ(memberNamed(object->dispatch(), L"setservices", id), S_OK);
    EXPECT_EQ(memberNamed(object->dispatch(), L"TakeServices", id), DISP_E_UNKNOWNNAME);
}

TEST(ServedDual, CallsItsMembersByNumber) {
    const auto object = make<Served>();
    EXPECT_EQ(callWithoutServices(object->dispatch(), 1), S_OK);
    EXPECT_EQ(object->calls, 1);
    EXPECT_EQ(callWithoutServices(object->dispatch(), 2), DISP_E_MEMBERNOTFOUND);
}

TEST(ServedDual, GivesItsTypeInformation) {
    const auto object = make<Served>();
    UINT count = 0;
    EXPECT_EQ(object->dispatch()->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    com_ptr<ITypeInfo> info;
    ASSERT_EQ(object->dispatch()->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), S_OK);
    unique_bstr name;
    info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
    EXPECT_EQ(viewOf(name), L"IQuorvaneVSTOContext");
    EXPECT_EQ(object->dispatch()->GetTypeInfo(1, LOCALE_USER_DEFAULT, info.put()), DISP_E_BADINDEX);
    EXPECT_FALSE(info);
}

TEST(ServedDual, RefusesToAnswerIntoNothing) {
    const auto object = make<Served>();
    EXPECT_EQ(object->dispatch()->GetTypeInfoCount(nullptr), E_POINTER);
    EXPECT_EQ(object->dispatch()->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
}

TEST(RefusedDual, HasNoNamesAndNoTypeInformation) {
    const auto object = make<Refused>();
    DISPID id = 0;
    EXPECT_EQ(memberNamed(object->dispatch(), L"SetServices", id), DISP_E_UNKNOWNNAME);
    UINT count = 7;
    EXPECT_EQ(object->dispatch()->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 0U);
    auto* info = reinterpret_cast<ITypeInfo*>(&count);
    EXPECT_EQ(object->dispatch()->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(object->dispatch()->GetTypeInfoCount(nullptr), E_POINTER);
    EXPECT_EQ(object->dispatch()->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
}

TEST(RefusedDual, CallsNothing) {
    const auto object = make<Refused>();
    EXPECT_EQ(callWithoutServices(object->dispatch(), 1), E_NOTIMPL);
    EXPECT_EQ(object->calls, 0);
}

TEST(RefusedDual, IsStillCalledThroughItsOwnInterface) {
    const auto object = make<Refused>();
    const auto context = queryFor<IQuorvaneVSTOContext>(object->dispatch());
    ASSERT_TRUE(context);
    EXPECT_EQ(context->SetServices(nullptr), S_OK);
    EXPECT_EQ(object->calls, 1);
}

TEST(TypeLibrary, HasNothingForAnInterfaceThatIsNotInIt) {
    EXPECT_EQ(typeInfoOf(IID_IPersist), nullptr);
    EXPECT_NE(typeInfoOf(__uuidof(IQuorvaneUDF)), nullptr);
    EXPECT_EQ(typeInfoOf(__uuidof(IQuorvaneUDF)), typeInfoOf(__uuidof(IQuorvaneUDF)));
}

TEST(TypeLibrary, KnowsTheModuleThatItIsIn) {
    EXPECT_EQ(thisModule(), GetModuleHandleW(nullptr));
    EXPECT_TRUE(thisModulePath().ends_with(L"\\com_test.exe"));
}

} // namespace
} // namespace com
