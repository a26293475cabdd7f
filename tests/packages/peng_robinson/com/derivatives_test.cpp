// Derivatives as clients get them, by name: every property of the package's own lists against differences of
// the property itself.
#include "packages/peng_robinson/eos/compound.h"
#include "tests/packages/peng_robinson/com/test_material.h"
#include "tests/packages/peng_robinson/differences.h"

#include <cmath>
#include <numeric>
#include <set>

namespace peng_robinson::test {
namespace {

void expectSlope(double actual, double expected, double scale) {
    EXPECT_NEAR(actual, expected, 2e-8 * std::abs(expected) + 1e-9 * scale);
}

struct PackageDerivatives : Package {
    com::com_ptr<TestMaterial> material =
        com::make<TestMaterial>(Texts{L"propane", L"methane", L"nitrogen", L"n-heptane", L"carbon dioxide"});
    double T = 280.0, P = 2e6;
    Reals y{0.05, 0.8, 0.1, 0.01, 0.04}, x{0.3, 0.15, 0.01, 0.5, 0.04};

    PackageDerivatives() { EXPECT_EQ(context->SetMaterial(material->self()), S_OK); }

    /// Names in the list without those of derivatives.
    static std::vector<std::wstring> basesOf(const com::variant& list) {
        std::vector<std::wstring> names = textsOf(list);
        std::erase_if(names, [](const std::wstring& name) { return name.find(L'.') != std::wstring::npos; });
        return names;
    }
    std::vector<std::wstring> singlePhase() {
        com::variant names;
        EXPECT_EQ(properties->GetSinglePhasePropList(&names), S_OK);
        return basesOf(names);
    }
    std::vector<std::wstring> twoPhase() {
        com::variant names;
        EXPECT_EQ(properties->GetTwoPhasePropList(&names), S_OK);
        return basesOf(names);
    }

    struct At {
        const wchar_t* label;
        double T, P;
        Reals amounts;
    };
    TestMaterial::Value calculate(const std::wstring& name, const At& at) {
        material->setConditions(at.label, at.T, at.P, at.amounts);
        const com::unique_bstr label = com::makeBstr(at.label);
        EXPECT_EQ(properties->CalcSinglePhaseProp(texts({name}), label.get()), S_OK);
        return material->phaseValue(at.label, name).value_or(TestMaterial::Value{});
    }
    Reals calculateTwo(const std::wstring& name, double atT, double atP, const Reals& ofVapor,
                       const Reals& ofLiquid) {
        material->setConditions(L"Vapor", atT, atP, ofVapor);
        material->setConditions(L"Liquid", atT, atP, ofLiquid);
        EXPECT_EQ(properties->CalcTwoPhaseProp(texts({name}), texts({L"Vapor", L"Liquid"})), S_OK);
        const auto value = material->phaseValue(L"two", name);
        return value ? value->values : Reals{};
    }

    std::vector<At> states() const {
        return {{L"Vapor", T, P, y}, {L"Liquid", T, P, x}, {L"Vapor", 500.0, 5e7, x}};
    }
};

Reals changed(const Reals& amounts, std::size_t j, double amount) {
    Reals result = amounts;
    result[j] = amount;
    return result;
}
double sumOf(const Reals& amounts) { return std::accumulate(amounts.begin(), amounts.end(), 0.0); }

TEST_F(PackageDerivatives, AreThereForEveryPropertyByEveryVariable) {
    com::variant single, two;
    ASSERT_EQ(properties->GetSinglePhasePropList(&single), S_OK);
    ASSERT_EQ(properties->GetTwoPhasePropList(&two), S_OK);
    for (const com::variant* list : {&single, &two}) {
        const Texts names = textsOf(*list);
        const std::set<std::wstring> known(names.begin(), names.end());
        EXPECT_EQ(known.size(), names.size());
        for (const std::wstring& base : basesOf(*list)) {
            for (const wchar_t* suffix : {L".Dtemperature", L".Dpressure", L".DmolFraction", L".Dmoles"}) {
                EXPECT_TRUE(known.contains(base + suffix)) << testing::PrintToString(base + suffix);
            }
        }
    }
}

TEST_F(PackageDerivatives, ByTemperatureAndPressureMatchDifferences) {
    for (const At& at : states()) {
        for (const std::wstring& name : singlePhase()) {
            SCOPED_TRACE(testing::PrintToString(name));
            const auto byT = [&](double t) {
                return calculate(name, {at.label, t, at.P, at.amounts}).values;
            };
            const auto byP = [&](double p) {
                return calculate(name, {at.label, at.T, p, at.amounts}).values;
            };
            const Reals value = byT(at.T), ofT = calculate(name + L".Dtemperature", at).values,
                        ofP = calculate(name + L".Dpressure", at).values;
            const Reals expectedT = slopes(byT, at.T), expectedP = slopes(byP, at.P);
            ASSERT_TRUE(ofT.size() == value.size() && ofP.size() == value.size());
            for (std::size_t i = 0; i < value.size(); ++i) {
                expectSlope(ofT[i], expectedT[i], std::abs(value[i]) / at.T);
                expectSlope(ofP[i], expectedP[i], std::abs(value[i]) / at.P);
            }
        }
    }
}

// Of a molar property the derivative is that of the whole amount.
TEST_F(PackageDerivatives, ByMoleNumberMatchDifferences) {
    for (const At& at : states()) {
        for (const std::wstring& name : singlePhase()) {
            SCOPED_TRACE(testing::PrintToString(name));
            const TestMaterial::Value value = calculate(name, at),
                                      derivative = calculate(name + L".Dmoles", at);
            const bool isMolar = value.basis == L"Mole" && name != L"density";
            ASSERT_EQ(derivative.values.size(), value.values.size() * at.amounts.size());
            for (std::size_t j = 0; j < at.amounts.size(); ++j) {
                const Reals expected = slopes(
                    [&](double amount) {
                        const Reals amounts = changed(at.amounts, j, amount);
                        Reals values = calculate(name, {at.label, at.T, at.P, amounts}).values;
                        for (double& one : values) {
                            one *= isMolar ? sumOf(amounts) : 1.0;
                        }
                        return values;
                    },
                    at.amounts[j]);
                for (std::size_t i = 0; i < expected.size(); ++i) {
                    expectSlope(derivative.values[i * at.amounts.size() + j], expected[i],
                                std::abs(value.values[i]) / at.amounts[j]);
                }
            }
        }
    }
}

// d/dn_j = d/dx_j - sum_k x_k d/dx_k, and the value besides for a molar property.
TEST_F(PackageDerivatives, ByMoleFractionAndMoleNumberBelongTogether) {
    for (const At& at : states()) {
        const std::size_t n = at.amounts.size();
        for (const std::wstring& name : singlePhase()) {
            SCOPED_TRACE(testing::PrintToString(name));
            const TestMaterial::Value value = calculate(name, at);
            const Reals byFraction = calculate(name + L".DmolFraction", at).values,
                        byMoles = calculate(name + L".Dmoles", at).values;
            const bool isMolar = value.basis == L"Mole" && name != L"density";
            ASSERT_EQ(byFraction.size(), value.values.size() * n);
            for (std::size_t i = 0; i < value.values.size(); ++i) {
                double common = isMolar ? -value.values[i] : 0.0, size = std::abs(value.values[i]);
                for (std::size_t k = 0; k < n; ++k) {
                    common += at.amounts[k] * byFraction[i * n + k];
                    size += std::abs(byFraction[i * n + k]);
                }
                for (std::size_t j = 0; j < n; ++j) {
                    EXPECT_NEAR(byMoles[i * n + j], byFraction[i * n + j] - common, 1e-13 * size);
                }
            }
        }
    }
}

TEST_F(PackageDerivatives, HaveTheBasisOfTheirProperty) {
    for (const std::wstring& name : singlePhase()) {
        const std::wstring basis = calculate(name, states()[0]).basis;
        for (const wchar_t* suffix : {L".Dtemperature", L".Dpressure", L".DmolFraction", L".Dmoles"}) {
            EXPECT_EQ(calculate(name + suffix, states()[0]).basis, basis) << testing::PrintToString(name);
        }
    }
    EXPECT_EQ(calculate(L"density", states()[0]).basis, L"Mole");
    EXPECT_EQ(calculate(L"viscosity", states()[0]).basis, L"");
}

TEST_F(PackageDerivatives, AreUnderstoodUnderOlderNames) {
    EXPECT_EQ(calculate(L"gibbsFreeEnergy.Dmoles", states()[0]).values,
              calculate(L"gibbsEnergy.Dmoles", states()[0]).values);
    EXPECT_EQ(calculate(L"heatcapacity.dtemperature", states()[0]).values,
              calculate(L"heatCapacityCp.Dtemperature", states()[0]).values);
    EXPECT_EQ(calculateTwo(L"logKvalues.Dmoles", T, P, y, x), calculateTwo(L"logKvalue.Dmoles", T, P, y, x));
}

TEST_F(PackageDerivatives, OfTwoPhasesByTemperatureAndPressureMatchDifferences) {
    for (const std::wstring& name : twoPhase()) {
        SCOPED_TRACE(testing::PrintToString(name));
        const Reals value = calculateTwo(name, T, P, y, x);
        const Reals byT = slopes([&](double t) { return calculateTwo(name, t, P, y, x); }, T),
                    byP = slopes([&](double p) { return calculateTwo(name, T, p, y, x); }, P),
                    ofT = calculateTwo(name + L".Dtemperature", T, P, y, x),
                    ofP = calculateTwo(name + L".Dpressure", T, P, y, x);
        ASSERT_TRUE(ofT.size() == value.size() && ofP.size() == value.size());
        for (std::size_t i = 0; i < value.size(); ++i) {
            expectSlope(ofT[i], byT[i], std::abs(value[i]) / T);
            expectSlope(ofP[i], byP[i], std::abs(value[i]) / P);
        }
    }
}

TEST_F(PackageDerivatives, OfTwoPhasesByMoleNumberAreThoseOfTheFirstPhaseThenOfTheSecond) {
    const std::size_t n = x.size();
    for (const std::wstring& name : twoPhase()) {
        SCOPED_TRACE(testing::PrintToString(name));
        const Reals value = calculateTwo(name, T, P, y, x),
                    derivative = calculateTwo(name + L".Dmoles", T, P, y, x);
        ASSERT_EQ(derivative.size(), 2 * value.size() * n);
        for (std::size_t j = 0; j < n; ++j) {
            const Reals first = slopes(
                [&](double amount) { return calculateTwo(name, T, P, changed(y, j, amount), x); }, y[j]);
            const Reals second = slopes(
                [&](double amount) { return calculateTwo(name, T, P, y, changed(x, j, amount)); }, x[j]);
            for (std::size_t i = 0; i < value.size(); ++i) {
                expectSlope(derivative[i * n + j], first[i], std::abs(value[i]) / y[j]);
                expectSlope(derivative[(value.size() + i) * n + j], second[i], std::abs(value[i]) / x[j]);
            }
        }
    }
}

TEST_F(PackageDerivatives, OfPureCompoundsByTemperatureMatchDifferences) {
    com::variant list;
    ASSERT_EQ(compounds->GetTDependentPropList(&list), S_OK);
    const Texts names = textsOf(list);
    for (const eos::Compound& compound : eos::compounds()) {
        const std::wstring id{compound.name.begin(), compound.name.end()};
        const auto valueAt = [&](const std::wstring& name, double temperature) {
            com::variant value;
            EXPECT_EQ(compounds->GetTDependentProperty(texts({name}), temperature, texts({id}), &value),
                      S_OK);
            return realsOf(value);
        };
        const double temperature = 0.7 * compound.Tc;
        for (const std::wstring& base : basesOf(list)) {
            SCOPED_TRACE(testing::PrintToString(base) + " of " + std::string{compound.name});
            const Reals value = valueAt(base, temperature),
                        derivative = valueAt(base + L".Dtemperature", temperature);
            const Reals expected = slopes([&](double t) { return valueAt(base, t); }, temperature);
            ASSERT_EQ(derivative.size(), 1u);
            expectSlope(derivative[0], expected[0], std::abs(value[0]) / temperature);
        }
    }
    EXPECT_EQ(names.size(), 12u);
}

} // namespace
} // namespace peng_robinson::test
