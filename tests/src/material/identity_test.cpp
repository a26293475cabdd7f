// What the material says of itself: its interfaces, its identity, its errors, and what it does not support.
#include "tests/src/material/material_fixture.h"

#include <stdexcept>

namespace quorvane {

namespace {

using scripted::narrow;

class MaterialIdentity : public MaterialTest {
  protected:
    template <typename Read>
    static std::string text(Read&& read) {
        com::unique_bstr value;
        const HRESULT code = read(value.put());
        return code == S_OK ? narrow(com::viewOf(value)) : "failed";
    }
    std::string errorDescription() {
        return text([&](BSTR* out) { return material->get_description(out); });
    }
};

TEST_F(MaterialIdentity, AnswersItsInterfaces) {
    const auto unknown = com::queryFor<IUnknown>(static_cast<ICapeThermoMaterial*>(material.get()));
    EXPECT_TRUE(unknown.tryAs<ICapeThermoMaterial>());
    EXPECT_TRUE(unknown.tryAs<ICapeThermoCompounds>());
    EXPECT_TRUE(unknown.tryAs<ICapeThermoEquilibriumRoutine>());
    EXPECT_TRUE(unknown.tryAs<ICapeThermoPhases>());
    EXPECT_TRUE(unknown.tryAs<ICapeThermoUniversalConstant>());
    EXPECT_TRUE(unknown.tryAs<ICapeThermoPropertyRoutine>());
    EXPECT_TRUE(unknown.tryAs<ICapeIdentification>());
    EXPECT_TRUE(unknown.tryAs<ECapeRoot>());
    EXPECT_TRUE(unknown.tryAs<ECapeUser>());
}

TEST_F(MaterialIdentity, AnswersEveryErrorInterfaceWhicheverErrorThereWas) {
    const auto user = com::queryFor<ECapeUser>(static_cast<ICapeThermoMaterial*>(material.get()));
    EXPECT_TRUE(user.tryAs<ECapeUnknown>());
    EXPECT_TRUE(user.tryAs<ECapeImplementation>());
    EXPECT_TRUE(user.tryAs<ECapeNoImpl>());
    EXPECT_TRUE(user.tryAs<ECapeLimitedImpl>());
    EXPECT_TRUE(user.tryAs<ECapeInvalidOperation>());
    EXPECT_TRUE(user.tryAs<ECapeComputation>());
    EXPECT_TRUE(user.tryAs<ECapeFailedInitialisation>());
    EXPECT_TRUE(user.tryAs<ECapeSolvingError>());
    EXPECT_TRUE(user.tryAs<ECapeThrmPropertyNotAvailable>());
}

TEST_F(MaterialIdentity, HasNoOtherInterface) {
    void* out = &owner;
    EXPECT_EQ(material->QueryInterface(__uuidof(ICapeUtilities), &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(material->QueryInterface(__uuidof(ICapeThermoMaterialContext), &out), E_NOINTERFACE);
    EXPECT_EQ(material->QueryInterface(__uuidof(ECapeBadArgument), &out), E_NOINTERFACE);
    EXPECT_EQ(material->QueryInterface(IID_IPersistStream, &out), E_NOINTERFACE);
    EXPECT_EQ(material->QueryInterface(__uuidof(ICapeThermoMaterial), nullptr), E_POINTER);
}

TEST_F(MaterialIdentity, IsOneObjectBehindAllInterfaces) {
    const auto one = com::queryFor<ICapeThermoPhases>(static_cast<ICapeThermoMaterial*>(material.get()));
    const auto other = one.tryAs<ECapeRoot>();
    EXPECT_EQ(one.tryAs<IUnknown>().get(), other.tryAs<IUnknown>().get());
}

TEST_F(MaterialIdentity, ItsIDispatchIsTheIdentification) {
    const auto dispatch = com::queryFor<IDispatch>(static_cast<ICapeThermoMaterial*>(material.get()));
    ASSERT_TRUE(dispatch);
    const auto identification = dispatch.tryAs<ICapeIdentification>();
    EXPECT_EQ(dispatch.get(), static_cast<IDispatch*>(identification.get()));
}

TEST_F(MaterialIdentity, RefusesLateBindingOnEveryInterface) {
    IDispatch* const faces[] = {
        static_cast<ICapeThermoMaterial*>(material.get()), static_cast<ICapeThermoCompounds*>(material.get()),
        static_cast<ICapeIdentification*>(material.get()), static_cast<ECapeUser*>(material.get()),
        static_cast<ECapeUnknown*>(material.get())};
    for (IDispatch* face : faces) {
        UINT count = 7;
        EXPECT_EQ(face->GetTypeInfoCount(&count), S_OK);
        EXPECT_EQ(count, 0U);
        com::com_ptr<ITypeInfo> info;
        EXPECT_EQ(face->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), TYPE_E_ELEMENTNOTFOUND);
        EXPECT_FALSE(info);
        wchar_t name[] = L"ComponentName";
        wchar_t* names[] = {name};
        DISPID member = 0;
        EXPECT_EQ(face->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member), DISP_E_UNKNOWNNAME);
        DISPPARAMS none{};
        EXPECT_EQ(face->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, nullptr,
                               nullptr, nullptr),
                  E_NOTIMPL);
    }
}

TEST_F(MaterialIdentity, ItsNameIsQuorvaneMO) {
    EXPECT_EQ(text([&](BSTR* out) { return material->get_ComponentName(out); }), "Quorvane-MO");
    EXPECT_EQ(text([&](BSTR* out) { return material->get_ComponentDescription(out); }), "");
    EXPECT_EQ(material->get_ComponentName(nullptr), E_POINTER);
    EXPECT_EQ(material->get_ComponentDescription(nullptr), E_POINTER);
}

TEST_F(MaterialIdentity, CannotBeRenamed) {
    const auto name = com::makeBstr(L"Mine");
    const auto empty = com::makeBstr(L"");
    const std::string message =
        "80040501 put_ComponentName of ICapeIdentification: The name of this object cannot be changed";
    EXPECT_EQ(told(material->put_ComponentName(name.get())), message);
    EXPECT_EQ(told(material->put_ComponentName(empty.get())), message);
    EXPECT_EQ(told(material->put_ComponentName(nullptr)), message);
    EXPECT_EQ(text([&](BSTR* out) { return material->get_ComponentName(out); }), "Quorvane-MO");
}

TEST_F(MaterialIdentity, CannotBeDescribedAnew) {
    const auto description = com::makeBstr(L"Mine");
    EXPECT_EQ(told(material->put_ComponentDescription(description.get())),
              "80040501 put_ComponentDescription of ICapeIdentification: The description of this object "
              "cannot be changed");
    EXPECT_EQ(text([&](BSTR* out) { return material->get_ComponentDescription(out); }), "");
}

// A CAPE-OPEN object whose identity is its user's to choose.
class Nameable final : public CAPEOPENBASE {
  public:
    Nameable() : CAPEOPENBASE{L"Start", false} {}

    template <typename Body>
    HRESULT failing(Body&& body) noexcept {
        return capeCall(L"Nameable::Operation", L"ICapeIdentification", std::forward<Body>(body));
    }
};

TEST_F(MaterialIdentity, AnObjectWithAFreeIdentityTakesANameButNoEmptyOne) {
    const auto object = com::make<Nameable>();
    const auto name = com::makeBstr(L"Mine");
    const auto empty = com::makeBstr(L"");
    EXPECT_EQ(object->put_ComponentName(name.get()), S_OK);
    EXPECT_EQ(object->put_ComponentName(empty.get()), ecapeUnknown);
    EXPECT_EQ(text([&](BSTR* out) { return object->get_description(out); }), "Name cannot be empty");
    EXPECT_EQ(text([&](BSTR* out) { return object->get_scope(out); }), "put_ComponentName");
    EXPECT_EQ(text([&](BSTR* out) { return object->get_interfaceName(out); }), "ICapeIdentification");
    EXPECT_EQ(object->put_ComponentName(nullptr), ecapeUnknown);
    EXPECT_EQ(text([&](BSTR* out) { return object->get_ComponentName(out); }), "Mine");
}

TEST_F(MaterialIdentity, AnObjectWithAFreeIdentityMayHaveAnEmptyDescription) {
    const auto object = com::make<Nameable>();
    const auto description = com::makeBstr(L"About me");
    EXPECT_EQ(object->put_ComponentDescription(description.get()), S_OK);
    EXPECT_EQ(text([&](BSTR* out) { return object->get_ComponentDescription(out); }), "About me");
    EXPECT_EQ(object->put_ComponentDescription(nullptr), S_OK);
    EXPECT_EQ(text([&](BSTR* out) { return object->get_ComponentDescription(out); }), "");
    const auto empty = com::makeBstr(L"");
    EXPECT_EQ(object->put_ComponentDescription(description.get()), S_OK);
    EXPECT_EQ(object->put_ComponentDescription(empty.get()), S_OK);
    EXPECT_EQ(text([&](BSTR* out) { return object->get_ComponentDescription(out); }), "");
}

TEST_F(MaterialIdentity, AFailureWithoutAMessageOfTheSystemsOwnIsUnhandled) {
    const auto object = com::make<Nameable>();
    EXPECT_EQ(object->failing([] { throw std::runtime_error{"vector too long"}; }), ecapeUnknown);
    EXPECT_EQ(text([&](BSTR* out) { return object->get_description(out); }), "Unhandled exception");
    EXPECT_EQ(text([&](BSTR* out) { return object->get_scope(out); }), "Nameable::Operation");
    EXPECT_EQ(object->failing([] { throw CWStrException{L"No value available"}; }), ecapeUnknown);
    EXPECT_EQ(text([&](BSTR* out) { return object->get_description(out); }), "No value available");
    EXPECT_EQ(object->failing([] { throw 42; }), ecapeUnknown);
    EXPECT_EQ(text([&](BSTR* out) { return object->get_description(out); }), "Unhandled exception");
}

TEST_F(MaterialIdentity, TellsOfItsLastError) {
    requestSinglePhase(L"enthalpy", L"Liquid");
    ASSERT_NE(getTPFraction(L"Vapor"), "");
    EXPECT_EQ(text([&](BSTR* out) { return material->get_name(out); }), "No value available");
    EXPECT_EQ(errorDescription(), "No value available");
    EXPECT_EQ(text([&](BSTR* out) { return material->get_scope(out); }), "MaterialObject11::GetTPFraction");
    EXPECT_EQ(text([&](BSTR* out) { return material->get_interfaceName(out); }), "ICapeThermoMaterial");
    EXPECT_EQ(text([&](BSTR* out) { return material->get_operation(out); }), "N/A");
    EXPECT_EQ(text([&](BSTR* out) { return material->get_moreInfo(out); }),
              "For more info, please see https://tarnwick.example/quorvane");
    LONG code = 7;
    EXPECT_EQ(material->get_code(&code), S_OK);
    EXPECT_EQ(code, 0);
}

TEST_F(MaterialIdentity, ASuccessKeepsTheErrorAndANewErrorReplacesIt) {
    requestSinglePhase(L"enthalpy", L"Liquid");
    ASSERT_NE(getTPFraction(L"Vapor"), "");
    ASSERT_EQ(getSinglePhase(L"temperature", L"Liquid", nullptr), "[350]");
    EXPECT_EQ(errorDescription(), "No value available");
    ASSERT_EQ(material->ClearAllProps(), S_OK);
    EXPECT_EQ(errorDescription(), "No value available");
    ASSERT_NE(getSinglePhase(L"temperature", L"Liquid", L"mole"), "");
    EXPECT_EQ(errorDescription(), "invalid basis");
}

TEST_F(MaterialIdentity, BeforeAnyErrorThereIsNothingToTell) {
    EXPECT_EQ(text([&](BSTR* out) { return material->get_name(out); }), "");
    EXPECT_EQ(errorDescription(), "");
}

TEST_F(MaterialIdentity, ErrorTextsNeedSomewhereToGo) {
    EXPECT_EQ(material->get_name(nullptr), E_POINTER);
    EXPECT_EQ(material->get_code(nullptr), E_POINTER);
    EXPECT_EQ(material->get_description(nullptr), E_POINTER);
    EXPECT_EQ(material->get_scope(nullptr), E_POINTER);
    EXPECT_EQ(material->get_interfaceName(nullptr), E_POINTER);
    EXPECT_EQ(material->get_operation(nullptr), E_POINTER);
    EXPECT_EQ(material->get_moreInfo(nullptr), E_POINTER);
}

TEST_F(MaterialIdentity, HandsOutTheCompoundsOfItsPackage) {
    com::variant lists[6];
    lists[3] = com::variant{L"old text"};
    ASSERT_EQ(material->GetCompoundList(&lists[0], &lists[1], &lists[2], &lists[3], &lists[4], &lists[5]),
              S_OK);
    EXPECT_EQ(scripted::textOf(lists[0]), "[A1, B2, C3]");
    EXPECT_EQ(scripted::textOf(lists[1]), "[A, B, C]");
    EXPECT_EQ(scripted::textOf(lists[2]), "[Alpha, Beta, Gamma]");
    EXPECT_EQ(scripted::textOf(lists[3]), "[100, 200, 300]");
    EXPECT_EQ(scripted::textOf(lists[4]), "[10, 20, 40]");
    EXPECT_EQ(scripted::textOf(lists[5]), "[11-11-1, 22-22-2, 33-33-3]");
    LONG count = 0;
    EXPECT_EQ(material->GetNumCompounds(&count), S_OK);
    EXPECT_EQ(count, 3);
}

TEST_F(MaterialIdentity, TheListOfCompoundsNeedsAllSixOutputs) {
    for (std::size_t missing = 0; missing < 6; ++missing) {
        com::variant values[6];
        VARIANT* out[6];
        for (std::size_t i = 0; i < 6; ++i) {
            out[i] = i == missing ? nullptr : &values[i];
        }
        EXPECT_EQ(material->GetCompoundList(out[0], out[1], out[2], out[3], out[4], out[5]), E_POINTER);
        for (const com::variant& value : values) {
            EXPECT_EQ(value.vt, VT_EMPTY);
        }
    }
    EXPECT_EQ(material->GetNumCompounds(nullptr), E_POINTER);
    EXPECT_EQ(errorDescription(), "");
}

} // namespace

} // namespace quorvane
