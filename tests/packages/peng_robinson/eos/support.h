// Vocabulary of these tests: mixtures from lists of numbers, relative comparisons, ready mixtures of the
// table.
#pragma once

#include "packages/peng_robinson/eos/fluid.h"
#include "packages/peng_robinson/eos/interaction.h"
#include "packages/peng_robinson/eos/peng_robinson.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace peng_robinson::eos::test {

struct PairParameter {
    std::size_t i, j;
    double k;
};

inline PengRobinson mixture(const std::vector<double>& Tc, const std::vector<double>& Pc,
                            const std::vector<double>& w, const std::vector<PairParameter>& k = {},
                            EquationConstants constants = {}) {
    std::vector<CriticalConstants> components;
    for (std::size_t i = 0; i < Tc.size(); ++i) {
        components.push_back({Tc[i], Pc[i], w[i]});
    }
    InteractionMatrix matrix{Tc.size()};
    for (const auto& [i, j, value] : k) {
        matrix.set(i, j, value);
    }
    return PengRobinson{std::move(components), std::move(matrix), constants};
}

inline Fluid fluidOf(const std::vector<std::string>& names) {
    std::vector<const Compound*> found;
    for (const std::string& name : names) {
        const Compound* compound = findCompound(name);
        EXPECT_NE(compound, nullptr) << name;
        found.push_back(compound);
    }
    return Fluid{std::move(found)};
}

inline void expectRelative(double actual, double expected, double tolerance, const std::string& what = {}) {
    EXPECT_NEAR(actual, expected, tolerance * std::abs(expected)) << what;
}

inline void expectRelative(const std::vector<double>& actual, const std::vector<double>& expected,
                           double tolerance, const std::string& what = {}) {
    ASSERT_EQ(actual.size(), expected.size()) << what;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        expectRelative(actual[i], expected[i], tolerance, what + "[" + std::to_string(i) + "]");
    }
}

inline std::vector<double> exponentials(const std::vector<double>& logarithms) {
    std::vector<double> values;
    values.reserve(logarithms.size());
    for (const double value : logarithms) {
        values.push_back(std::exp(value));
    }
    return values;
}

} // namespace peng_robinson::eos::test
