// The material of a package: when it is made, how often it is set, and what becomes of it.
#include "tests/src/package/package_fixture.h"

namespace quorvane {

namespace {

using testing::ElementsAre;

class MaterialLife : public PackageTest {
  protected:
    std::unique_ptr<PropertyPackage> bound = bind();

    std::string failure() {
        return failureOf([&] { bound->ensureMaterial(); });
    }
};

TEST_F(MaterialLife, IsSetOnce) {
    EXPECT_EQ(failure(), "no failure");
    EXPECT_EQ(failure(), "no failure");
    EXPECT_THAT(script.calls(),
                ElementsAre("Initialize()", "GetCompoundList()", "GetPhaseList()", "SetMaterial(true)"));
}

TEST_F(MaterialLife, IsMadeAnewAfterAReset) {
    ASSERT_EQ(failure(), "no failure");
    const long live = com::liveObjects;
    bound->reset();
    ASSERT_EQ(failure(), "no failure");
    EXPECT_EQ(script.count("SetMaterial"), 2U);
    EXPECT_EQ(com::liveObjects, live) << "the former material is gone";
}

TEST_F(MaterialLife, APackageThatTakesNoMaterialIsNamed) {
    script.omits(__uuidof(ICapeThermoMaterialContext));
    EXPECT_EQ(failure(), "ICapeThermoMaterialContext not exposed by property package");
}

TEST_F(MaterialLife, CompoundsAndPhasesAreReadBeforeTheMaterialIsOffered) {
    script.omits(__uuidof(ICapeThermoMaterialContext));
    script.fails("GetPhaseList", ecapeComputation, L"No phases");
    EXPECT_EQ(failure(), "Failed to obtain list of phases: No phases");
    script.fails("GetCompoundList", ecapeComputation, L"No compounds");
    bound->reset();
    EXPECT_EQ(failure(), "Failed to obtain compound data: No compounds");
}

TEST_F(MaterialLife, APackageThatRefusesTheMaterialIsShownAndAskedAgain) {
    script.fails("SetMaterial", ecapeComputation, L"I know none of these compounds");
    EXPECT_EQ(failure(),
              "Failed to set active material object on property package: I know none of these compounds");
    script.fails("SetMaterial", E_FAIL);
    EXPECT_EQ(failure(), "Failed to set active material object on property package: " + systemText(E_FAIL));
    script.recovers("SetMaterial");
    EXPECT_EQ(failure(), "no failure");
}

TEST_F(MaterialLife, MayBeWrittenToWhileItIsSet) {
    script.hook("SetMaterial", [](scripted::Call& call) {
        const auto material = com::queryFor<ICapeThermoMaterial>(call.in[0].punkVal);
        const auto enthalpy = com::makeBstr(L"enthalpy");
        const auto mole = com::makeBstr(L"Mole");
        const com::variant values = scripted::reals({1.0});
        EXPECT_EQ(material->SetSinglePhaseProp(enthalpy.get(), nullptr, mole.get(), values), S_OK);
        com::variant labels, status;
        EXPECT_EQ(material->GetPresentPhases(&labels, &status), S_OK);
        EXPECT_EQ(scripted::textOf(labels), "[Vapor, Liquid]");
        return call.healthy();
    });
    EXPECT_EQ(failure(), "no failure");
}

TEST_F(MaterialLife, IsTheOneThatThePackageKeepsWhetherItKeepsItBeforeOrAfterItAsksForAnother) {
    for (const bool before : {true, false}) {
        bound->reset();
        com::com_ptr<ICapeThermoMaterial> kept;
        std::string inner;
        script.hook("SetMaterial", [&](scripted::Call& call) {
            const auto offered = com::queryFor<ICapeThermoMaterial>(call.in[0].punkVal);
            if (before) {
                kept = com::queryFor<ICapeThermoMaterial>(offered.get());
            }
            inner = failure();
            if (!before) {
                kept = com::queryFor<ICapeThermoMaterial>(offered.get());
            }
            return call.healthy();
        });
        EXPECT_EQ(failure(), "no failure");
        EXPECT_EQ(inner, "Property package is already calculating");
        com::variant labels, status;
        EXPECT_EQ(kept->GetPresentPhases(&labels, &status), S_OK) << before;
        kept.reset();
    }
}

TEST_F(MaterialLife, APackageMayKeepItBeyondItsEnd) {
    com::com_ptr<ICapeThermoMaterial> kept;
    script.hook("SetMaterial", [&](scripted::Call& call) {
        kept = com::queryFor<ICapeThermoMaterial>(call.in[0].punkVal);
        return call.healthy();
    });
    ASSERT_EQ(failure(), "no failure");
    com::variant labels, status;
    EXPECT_EQ(kept->GetPresentPhases(&labels, &status), S_OK);
    bound.reset();
    EXPECT_EQ(kept->GetPresentPhases(&labels, &status), ecapeUnknown);
    com::unique_bstr text;
    ASSERT_EQ(kept.tryAs<ECapeUser>()->get_description(text.put()), S_OK);
    EXPECT_EQ(scripted::narrow(com::viewOf(text)),
              "The material object is no longer in use by its property package");
    kept.reset();
}

TEST_F(MaterialLife, AMaterialFromBeforeAResetIsOutOfUse) {
    com::com_ptr<ICapeThermoMaterial> kept;
    script.hook("SetMaterial", [&](scripted::Call& call) {
        kept = com::queryFor<ICapeThermoMaterial>(call.in[0].punkVal);
        return call.healthy();
    });
    ASSERT_EQ(failure(), "no failure");
    bound->reset();
    com::variant labels, status;
    EXPECT_EQ(kept->GetPresentPhases(&labels, &status), ecapeUnknown);
    kept.reset();
}

TEST_F(MaterialLife, ARefusedMaterialThatIsKeptIsOutOfUse) {
    com::com_ptr<ICapeThermoMaterial> kept;
    script.hook("SetMaterial", [&](scripted::Call& call) {
        kept = com::queryFor<ICapeThermoMaterial>(call.in[0].punkVal);
        return E_FAIL;
    });
    ASSERT_NE(failure(), "no failure");
    com::variant labels, status;
    EXPECT_EQ(kept->GetPresentPhases(&labels, &status), ecapeUnknown);
    kept.reset();
}

} // namespace

} // namespace quorvane
