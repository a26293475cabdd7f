// Compositions between mole and mass basis, molecular weights missing or not.
#include "tests/src/material/material_fixture.h"

namespace quorvane {

namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class CompositionConversion : public MaterialTest {
  protected:
    template <typename Body>
    static std::string failureOf(Body&& body) {
        try {
            std::forward<Body>(body)();
        } catch (const WException& failure) {
            return scripted::narrow(failure.message());
        }
        return "no failure";
    }
    std::string messageOf(const std::vector<double>& values, std::int32_t from, std::int32_t to) {
        return failureOf([&] { material->convertComposition(values, from, to); });
    }
    std::string totalsFailure() {
        return failureOf([&] { material->totals(); });
    }
};

TEST_F(CompositionConversion, IsTheInputItselfOnTheSameBasis) {
    const std::vector<double> values = {2.0, 3.0, 5.0};
    EXPECT_EQ(&material->convertComposition(values, Basis_Mole, Basis_Mole), &values);
    EXPECT_EQ(&material->convertComposition(values, Basis_Mass, Basis_Mass), &values);
    EXPECT_EQ(&material->convertComposition(values, Basis_Undefined, Basis_Undefined), &values);
}

TEST_F(CompositionConversion, MolesToMassIsNormalised) {
    // 20, 60 and 200 g of 280 g.
    EXPECT_THAT(material->convertComposition({2.0, 3.0, 5.0}, Basis_Mole, Basis_Mass),
                Pointwise(DoubleNear(1e-15), {20.0 / 280.0, 60.0 / 280.0, 200.0 / 280.0}));
}

TEST_F(CompositionConversion, MassToMolesIsNormalised) {
    // 200, 100 and 50 mol of 350 mol.
    EXPECT_THAT(material->convertComposition({2.0, 2.0, 2.0}, Basis_Mass, Basis_Mole),
                Pointwise(DoubleNear(1e-15), {200.0 / 350.0, 100.0 / 350.0, 50.0 / 350.0}));
}

TEST_F(CompositionConversion, ThereAndBackIsTheSame) {
    const std::vector<double> mass = material->convertComposition({0.2, 0.3, 0.5}, Basis_Mole, Basis_Mass);
    EXPECT_THAT(material->convertComposition(mass, Basis_Mass, Basis_Mole),
                Pointwise(DoubleNear(1e-15), {0.2, 0.3, 0.5}));
}

TEST_F(CompositionConversion, AnUndefinedBasisConvertsToNothing) {
    EXPECT_EQ(messageOf({1.0, 0.0, 0.0}, Basis_Undefined, Basis_Mole), "Specified basis does not apply");
    EXPECT_EQ(messageOf({1.0, 0.0, 0.0}, Basis_Mass, Basis_Undefined), "Specified basis does not apply");
}

constexpr const char* missingWeight =
    "Unable to perform basis conversion, one or more missing values for molecular weight";

TEST_F(CompositionConversion, ACompoundThatIsNotThereNeedsNoWeight) {
    owner.weights({0.01, nan, 0.04});
    EXPECT_THAT(material->convertComposition({0.5, 0.0, 0.5}, Basis_Mole, Basis_Mass),
                ElementsAre(DoubleNear(0.2, 1e-15), 0.0, DoubleNear(0.8, 1e-15)));
    EXPECT_THAT(material->convertComposition({0.2, 0.0, 0.8}, Basis_Mass, Basis_Mole),
                ElementsAre(DoubleNear(0.5, 1e-15), 0.0, DoubleNear(0.5, 1e-15)));
}

TEST_F(CompositionConversion, ACompoundThatIsThereNeedsItsWeight) {
    for (const double weight : {nan, missingMarker}) {
        owner.weights({0.01, weight, 0.04});
        EXPECT_EQ(messageOf({0.5, 1e-30, 0.5}, Basis_Mole, Basis_Mass), missingWeight);
        EXPECT_EQ(messageOf({0.5, 1e-30, 0.5}, Basis_Mass, Basis_Mole), missingWeight);
        EXPECT_EQ(messageOf({0.5, 1e-30, 0.5}, Basis_Mole, Basis_Mole), "no failure");
    }
}

constexpr const char* zeroAmount = "Unable to perform basis conversion, composition sums to zero";

TEST_F(CompositionConversion, NothingHasNoOtherBasis) {
    for (const std::vector<double>& nothing : {std::vector{0.0, 0.0, 0.0}, std::vector{1.0, -0.5, 0.0}}) {
        EXPECT_EQ(messageOf(nothing, Basis_Mole, Basis_Mass), zeroAmount);
        EXPECT_EQ(messageOf(nothing, Basis_Mole, Basis_Mole), "no failure");
    }
    EXPECT_EQ(messageOf({0.0, 0.0, 0.0}, Basis_Mass, Basis_Mole), zeroAmount);
    owner.weights({0.01, nan, 0.04});
    EXPECT_EQ(messageOf({0.0, 0.0, 0.0}, Basis_Mass, Basis_Mole), zeroAmount);
}

TEST_F(CompositionConversion, PackagesSeeTheMissingAmountAsAnError) {
    material->setComposition({0.0, 0.0, 0.0}, Basis_Mass);
    requestSinglePhase(L"enthalpy", L"Vapor");
    EXPECT_EQ(getSinglePhase(L"fraction", L"Vapor", L"mole"), refused("GetSinglePhaseProp", zeroAmount));
    EXPECT_EQ(getTPFraction(L"Vapor"), refused("GetTPFraction", zeroAmount));
    requestEquilibrium({L"pressure", 1e5, Basis_Undefined}, {L"enthalpy", 1.0, Basis_Mass});
    material->setComposition({0.0, 0.0, 0.0}, Basis_Mass);
    EXPECT_EQ(getOverall(L"enthalpy", L"mole"), refused("GetOverallProp", zeroAmount));
    EXPECT_EQ(getOverall(L"enthalpy", L"mass"), "[1]");
}

TEST_F(CompositionConversion, PackagesSeeTheMissingWeightAsAnError) {
    owner.weights({0.01, nan, 0.04});
    requestSinglePhase(L"enthalpy", L"Vapor");
    EXPECT_EQ(getSinglePhase(L"fraction", L"Vapor", L"mass"), refused("GetSinglePhaseProp", missingWeight));
    material->setComposition({0.2, 0.3, 0.5}, Basis_Mass);
    EXPECT_EQ(getTPFraction(L"Vapor"), refused("GetTPFraction", missingWeight));
    requestEquilibrium({L"pressure", 1e5, Basis_Undefined}, {L"enthalpy", 1.0, Basis_Mole});
    EXPECT_EQ(getOverall(L"enthalpy", L"mass"), refused("GetOverallProp", missingWeight));
    EXPECT_EQ(getOverall(L"enthalpy", L"mole"), "[1]");
}

TEST_F(CompositionConversion, TotalsAreThoseOfTheCompositionAsGiven) {
    material->setComposition({2.0, 3.0, 5.0}, Basis_Mole);
    EXPECT_DOUBLE_EQ(material->totals().moles, 10.0);
    EXPECT_DOUBLE_EQ(material->totals().mass, 0.28);
    material->setComposition({2.0, 2.0, 2.0}, Basis_Mass);
    EXPECT_DOUBLE_EQ(material->totals().moles, 350.0);
    EXPECT_DOUBLE_EQ(material->totals().mass, 6.0);
}

TEST_F(CompositionConversion, TotalsOfAnAbsentCompoundNeedNoWeight) {
    owner.weights({0.01, nan, 0.04});
    material->setComposition({0.5, 0.0, 0.5}, Basis_Mole);
    EXPECT_DOUBLE_EQ(material->totals().mass, 0.025);
    material->setComposition({0.5, 0.0, 0.5}, Basis_Mass);
    EXPECT_DOUBLE_EQ(material->totals().moles, 62.5);
}

TEST_F(CompositionConversion, TotalsOfAPresentCompoundNeedItsWeightOnEitherBasis) {
    for (const double weight : {nan, missingMarker}) {
        owner.weights({0.01, weight, 0.04});
        for (const Basis basis : {Basis_Mole, Basis_Mass}) {
            material->setComposition({0.5, 1e-30, 0.5}, basis);
            EXPECT_EQ(totalsFailure(), missingWeight);
        }
    }
}

TEST_F(CompositionConversion, TotalsAreKeptUntilTheCompositionChanges) {
    material->setComposition({0.5, 0.5, 0.0}, Basis_Mole);
    EXPECT_DOUBLE_EQ(material->totals().mass, 0.015);
    owner.weights({1.0, 1.0, 1.0});
    material->setComposition({0.5, 0.5, 0.0}, Basis_Mole);
    EXPECT_DOUBLE_EQ(material->totals().mass, 0.015);
    material->setComposition({0.5, 0.0, 0.5}, Basis_Mole);
    EXPECT_DOUBLE_EQ(material->totals().mass, 1.0);
}

TEST_F(CompositionConversion, TotalsWithoutBasisAreNone) {
    material->setComposition({0.2, 0.3, 0.5}, Basis_Undefined);
    EXPECT_EQ(material->totals().mass, 0.0);
}

TEST(BasisExponent, SaysHowToConvert) {
    EXPECT_EQ(basisExponent(Basis_Undefined, Basis_Undefined), 0);
    EXPECT_EQ(basisExponent(Basis_Mole, Basis_Mole), 0);
    EXPECT_EQ(basisExponent(Basis_Mass, Basis_Mass), 0);
    EXPECT_EQ(basisExponent(Basis_Mole, Basis_Mass), -1);
    EXPECT_EQ(basisExponent(Basis_Mass, Basis_Mole), 1);
    EXPECT_EQ(basisExponent(Basis_Mole, 7), -1);
    EXPECT_EQ(basisExponent(3, Basis_Mole), 0);
    EXPECT_EQ(basisExponent(3, Basis_Undefined), 0);
}

TEST(BasisExponent, AnUndefinedSideDoesNotApply) {
    for (const auto& [from, to] : {std::pair{0, 1}, std::pair{0, 2}, std::pair{1, 0}, std::pair{2, 0}}) {
        try {
            basisExponent(from, to);
            ADD_FAILURE() << from << " to " << to;
        } catch (const CWStrException& failure) {
            EXPECT_STREQ(failure.message(), L"Specified basis does not apply");
        }
    }
}

} // namespace

} // namespace quorvane
