// Mixture and two-phase properties in cells.
#include "tests/src/server/worksheet.h"

using namespace tests;

namespace {

class Mixture : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        attach();
        for (const wchar_t* name : {L"kvalue.DmolFraction", L"fugacityCoefficient.DmolFraction"}) {
            auto& list = std::wstring_view{name}.starts_with(L"kvalue") ? package->model.twoPhase
                                                                        : package->model.singlePhase;
            list.push_back({name, 2, false});
        }
    }

    struct Property {
        com::variant package = text(L"P");
        com::variant name = text(L"enthalpy");
        com::variant phase = text(L"Vapor");
        com::variant T = number(300.0);
        com::variant P = number(100000.0);
        com::variant composition = cells({1.0, 1.0, 2.0});
        com::variant compositionBasis = omitted();
        com::variant basis = omitted();
        com::variant orientation = omitted();
        com::variant transposed = omitted();
        com::variant normalize = omitted();
    };
    std::string mixture(Property p) {
        return show(L"CapeOpenMixtureProperty", std::move(p.package), std::move(p.name), std::move(p.phase),
                    std::move(p.T), std::move(p.P), std::move(p.composition), std::move(p.compositionBasis),
                    std::move(p.basis), std::move(p.orientation), std::move(p.transposed),
                    std::move(p.normalize));
    }

    struct TwoPhases {
        com::variant package = text(L"P");
        com::variant name = text(L"kvalue");
        com::variant phase1 = text(L"Vapor");
        com::variant phase2 = text(L"Liquid");
        com::variant T = number(300.0);
        com::variant P = number(100000.0);
        com::variant composition1 = cells({1.0, 1.0, 2.0});
        com::variant composition2 = cells({2.0, 1.0, 1.0});
        com::variant compositionBasis = omitted();
        com::variant orientation = omitted();
        com::variant derivativePhase = omitted();
        com::variant transposed = omitted();
        com::variant normalize = omitted();
    };
    std::string twoPhase(TwoPhases p) {
        return show(L"CapeOpenTwoPhaseProperty", std::move(p.package), std::move(p.name), std::move(p.phase1),
                    std::move(p.phase2), std::move(p.T), std::move(p.P), std::move(p.composition1),
                    std::move(p.composition2), std::move(p.compositionBasis), std::move(p.orientation),
                    std::move(p.derivativePhase), std::move(p.transposed), std::move(p.normalize));
    }
};

TEST_F(Mixture, AScalarIsOneNumberWhateverTheOrientation) {
    package->calculates(L"enthalpy", L"Mole", {100.0});
    EXPECT_EQ(mixture({}), "100");
    EXPECT_EQ(mixture({.orientation = number(2)}), "100");
    EXPECT_EQ(mixture({.orientation = number(9)}), "100");
}
TEST_F(Mixture, MassBasisConvertsTheResult) {
    package->calculates(L"enthalpy", L"Mole", {100.0});
    EXPECT_EQ(mixture({.composition = cells({0.0, 1.0, 0.0}), .basis = text(L"mass")}), "5000");
}
TEST_F(Mixture, APropertyPerCompoundIsAListOrAColumn) {
    package->calculates(L"fugacityCoefficient", L"", {1.0, 2.0, 3.0});
    EXPECT_EQ(mixture({.name = text(L"fugacityCoefficient")}), "list: 1 | 2 | 3");
    EXPECT_EQ(mixture({.name = text(L"fugacityCoefficient"), .orientation = text(L"vertical")}), "1 / 2 / 3");
    EXPECT_EQ(mixture({.name = text(L"fugacityCoefficient"), .orientation = number(3)}),
              "Invalid value for orientation - expected \"Auto\" (default,0), \"Horizontal\" (1) or "
              "\"Vertical\" (2)");
}
TEST_F(Mixture, AMatrixHasARowForEachCompoundOfTheProperty) {
    const com::variant name = text(L"fugacityCoefficient.DmolFraction");
    package->calculates(L"fugacityCoefficient.DmolFraction", L"", {11, 12, 13, 21, 22, 23, 31, 32, 33});
    const auto shows = [&](com::variant orientation, com::variant transposed) {
        return mixture({.name = com::variant::copyOf(name),
                        .orientation = std::move(orientation),
                        .transposed = std::move(transposed)});
    };
    EXPECT_EQ(shows(number(3), omitted()), "11 | 12 | 13 / 21 | 22 | 23 / 31 | 32 | 33");
    EXPECT_EQ(shows(number(3), truth(true)), "11 | 21 | 31 / 12 | 22 | 32 / 13 | 23 | 33");
    EXPECT_EQ(shows(omitted(), omitted()), "list: 11 | 12 | 13 | 21 | 22 | 23 | 31 | 32 | 33");
    EXPECT_EQ(shows(number(2), omitted()), "11 / 12 / 13 / 21 / 22 / 23 / 31 / 32 / 33");
    EXPECT_EQ(shows(number(3), text(L"perhaps")), "Invalid value for transposed - expected bool value");
}
TEST_F(Mixture, TransposedIsNotReadWithoutAMatrix) {
    package->calculates(L"fugacityCoefficient", L"", {1.0, 2.0, 3.0});
    EXPECT_EQ(mixture({.name = text(L"fugacityCoefficient"), .transposed = text(L"perhaps")}),
              "list: 1 | 2 | 3");
}
TEST_F(Mixture, MissingConditionsAreReported) {
    EXPECT_EQ(mixture({.T = emptyCell()}), "Temperature not specified");
    EXPECT_EQ(mixture({.T = number(0)}), "Temperature must be positive");
    EXPECT_EQ(mixture({.P = omitted()}), "Pressure not specified");
    EXPECT_EQ(mixture({.P = number(-1)}), "Pressure must be positive");
}
TEST_F(Mixture, AWrongCompositionIsReported) {
    EXPECT_EQ(mixture({.composition = cells({1, 1})}), "Unexpected number of values for composition");
    EXPECT_EQ(mixture({.composition = text(L"air")}), "not a real array");
}
TEST_F(Mixture, ThePackagesFailuresAreShown) {
    EXPECT_EQ(mixture({.name = text(L"Enthalpie")}), "Invalid/unknown property \"Enthalpie\"");
    package->hook("CalcSinglePhaseProp", [](scripted::Call&) { return S_OK; });
    EXPECT_EQ(mixture({}), "Property was not calculated by property package");
}
TEST_F(Mixture, ChecksComeInTheirOrder) {
    const auto steps = [&](int from) {
        Property wrong;
        if (from <= 1)
            wrong.name = text(L"");
        if (from <= 2)
            wrong.phase = text(L"");
        if (from <= 3)
            wrong.basis = text(L"result");
        if (from <= 4)
            wrong.compositionBasis = text(L"composition");
        if (from <= 5)
            wrong.T = number(0);
        if (from <= 6)
            wrong.P = number(0);
        if (from <= 7)
            wrong.package = text(L"Q");
        if (from <= 8)
            wrong.normalize = text(L"perhaps");
        if (from <= 9)
            wrong.composition = cells({1, 1});
        if (from <= 10 && from > 1)
            wrong.name = text(L"Enthalpie");
        return mixture(std::move(wrong));
    };
    EXPECT_EQ(steps(1), "Empty string is not valid for property name");
    EXPECT_EQ(steps(2), "Empty string is not valid for phase name");
    EXPECT_EQ(steps(3), "Invalid basis \"result\"");
    EXPECT_EQ(steps(4), "Invalid basis \"composition\"");
    EXPECT_EQ(steps(5), "Temperature must be positive");
    EXPECT_EQ(steps(6), "Pressure must be positive");
    EXPECT_EQ(steps(7), "Invalid package name");
    EXPECT_EQ(steps(8), "Invalid value for normalizeComposition - expected bool value");
    EXPECT_EQ(steps(9), "Unexpected number of values for composition");
    EXPECT_EQ(steps(10), "Invalid/unknown property \"Enthalpie\"");
}

TEST_F(Mixture, ATwoPhasePropertyIsAListOrAColumn) {
    package->calculates(L"kvalue", L"", {1.0, 2.0, 3.0});
    EXPECT_EQ(twoPhase({}), "list: 1 | 2 | 3");
    EXPECT_EQ(twoPhase({.orientation = number(2)}), "1 / 2 / 3");
}
TEST_F(Mixture, ATwoPhaseDerivativeHasBothPhasesSideBySide) {
    const auto shows = [&](com::variant phase, com::variant transposed = omitted()) {
        package->calculates(L"kvalue.DmolFraction", L"",
                            {11, 12, 13, 21, 22, 23, 31, 32, 33, 16, 17, 18, 26, 27, 28, 36, 37, 38});
        return twoPhase({.name = text(L"kvalue.DmolFraction"),
                         .orientation = number(3),
                         .derivativePhase = std::move(phase),
                         .transposed = std::move(transposed)});
    };
    EXPECT_EQ(shows(omitted()),
              "11 | 12 | 13 | 16 | 17 | 18 / 21 | 22 | 23 | 26 | 27 | 28 / 31 | 32 | 33 | 36 | 37 | 38");
    EXPECT_EQ(shows(omitted(), truth(true)),
              "11 | 21 | 31 / 12 | 22 | 32 / 13 | 23 | 33 / 16 | 26 | 36 / 17 | 27 | 37 / 18 | 28 | 38");
    const std::string first = "11 | 12 | 13 / 21 | 22 | 23 / 31 | 32 | 33";
    const std::string second = "16 | 17 | 18 / 26 | 27 | 28 / 36 | 37 | 38";
    EXPECT_EQ(shows(number(1)), first);
    EXPECT_EQ(shows(text(L"Phase 1")), first);
    EXPECT_EQ(shows(text(L"vapor")), first);
    EXPECT_EQ(shows(number(2)), second);
    EXPECT_EQ(shows(text(L"PHASE 2")), second);
    EXPECT_EQ(shows(text(L"Liquid")), second);
    EXPECT_EQ(shows(text(L"both")), shows(number(0)));
    const std::string invalid =
        "Invalid value for compositionDerivativePhase - expected \"Both\" (default,0), \"Phase 1\" (1), "
        "\"Phase 2\" (1) or one of the two specified phase names";
    EXPECT_EQ(shows(number(-1)), invalid);
    EXPECT_EQ(shows(number(3)), invalid);
    EXPECT_EQ(shows(text(L"Solid")), invalid);
}
TEST_F(Mixture, TheDerivativePhaseIsNotReadForAnotherProperty) {
    package->calculates(L"kvalue", L"", {1.0, 2.0, 3.0});
    EXPECT_EQ(twoPhase({.derivativePhase = number(9)}), "list: 1 | 2 | 3");
}
TEST_F(Mixture, TwoPhaseChecksComeInTheirOrder) {
    const auto steps = [&](int from) {
        TwoPhases wrong;
        if (from <= 1)
            wrong.name = text(L"");
        if (from <= 2)
            wrong.phase2 = text(L"");
        if (from == 3)
            wrong.phase2 = text(L"VAPOR");
        if (from <= 4)
            wrong.compositionBasis = text(L"kg");
        if (from <= 5)
            wrong.T = omitted();
        if (from <= 6)
            wrong.P = omitted();
        if (from <= 7)
            wrong.package = text(L"Q");
        if (from <= 8)
            wrong.normalize = text(L"perhaps");
        if (from <= 9)
            wrong.composition1 = cells({1, 1});
        if (from <= 10)
            wrong.composition2 = cells({1, 1});
        if (from <= 11 && from > 1)
            wrong.name = text(L"K");
        return twoPhase(std::move(wrong));
    };
    EXPECT_EQ(steps(1), "Empty string is not valid for property name");
    EXPECT_EQ(steps(2), "Empty string is not valid for phase name");
    EXPECT_EQ(steps(3), "Phases cannot be equal");
    EXPECT_EQ(steps(4), "Invalid basis \"kg\"");
    EXPECT_EQ(steps(5), "Temperature not specified");
    EXPECT_EQ(steps(6), "Pressure not specified");
    EXPECT_EQ(steps(7), "Invalid package name");
    EXPECT_EQ(steps(8), "Invalid value for normalizeComposition - expected bool value");
    EXPECT_EQ(steps(9), "Unexpected number of values for phase 1 composition");
    EXPECT_EQ(steps(10), "Unexpected number of values for phase 2 composition");
    EXPECT_EQ(steps(11), "Invalid/unknown property \"K\"");
}

} // namespace
