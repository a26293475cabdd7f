// What Excel gives for the cells of a composition: arrays of every type, shape and length, with any bounds,
// and numbers that are none. The user sees the result by mass, which depends on each amount, or what is wrong
// with the cells.
#include "tests/faults/expect.h"
#include "tests/faults/numbers.h"

#include "com/safe_array.h"

#include <algorithm>

namespace faults {

namespace {

constexpr const char* way = "CapeOpenMixtureProperty by mass of cells";

constexpr const char* miscounted = "! Unexpected number of values for composition";
constexpr const char* notReal = "! not a real array";
constexpr const char* nothing = "! Unable to perform basis conversion, composition sums to zero";
constexpr const char* unreadable = "! failed to access array data";

/// The amounts 1:1:2, as numbers or as cells.
com::variant amounts(VARTYPE element) {
    constexpr double values[] = {1.0, 1.0, 2.0};
    com::variant reals = com::realArray(values);
    if (element == VT_R8) {
        return reals;
    }
    com::unique_safearray cells = com::makeVector(VT_VARIANT, std::size(values));
    for (std::size_t i = 0; i < std::size(values); ++i) {
        static_cast<VARIANT*>(cells.get()->pvData)[i] = com::variant{values[i]}.release();
    }
    return com::variant::array(std::move(cells), VT_VARIANT);
}

class Cells : public Stage {
  protected:
    std::string goWith(const std::function<com::variant()>& make) {
        return go(way, [&] { objectNamed("cells")->instead(L"Value", make); });
    }
    void expectHealthyOtherwise(const std::string& result) {
        objectNamed("cells")->readsAgain();
        forgetReferences();
        expectHealthyAgain(way, result);
    }
};

/// What is seen; "-" as without fault.
const char* outcomeOf(VARTYPE element, const ValueFault& fault) {
    static constexpr std::string_view singleNumbers[] = {"R8", "ReferenceToNumber"};
    // Cells in another form, without any amount.
    const std::string other = element == VT_R8 ? "ArrayOfVariant" : "ArrayOfR8";
    const std::string_view name = fault.name;
    if (name.ends_with(other) || name == "OneRow" || name == "OneColumn" || name == "ThreeDimensions") {
        return nothing;
    }
    if (name == "NoDimension") {
        return unreadable;
    }
    switch (fault.effect) {
    case Effect::same:
    case Effect::reference:
        return "-";
    case Effect::wrong:
        return std::ranges::find(singleNumbers, name) == std::end(singleNumbers) ? notReal : miscounted;
    case Effect::unreadable:
        return unreadable;
    default:
        return miscounted;
    }
}

struct Case {
    VARTYPE element;
    const ValueFault* fault;
};

std::string nameOf(const Case& tested) {
    return std::string{tested.element == VT_R8 ? "Numbers_" : "Values_"} + tested.fault->name;
}

void PrintTo(const Case& tested, std::ostream* out) { *out << nameOf(tested); }

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const VARTYPE element : {VARTYPE{VT_R8}, VARTYPE{VT_VARIANT}}) {
        for (const ValueFault& fault : valueFaults(element)) {
            cases.push_back({element, &fault});
        }
    }
    return cases;
}

class CellsArray : public Cells, public ::testing::WithParamInterface<Case> {};

TEST_P(CellsArray, IsReadOrRefused) {
    const auto& [element, fault] = GetParam();
    const std::string result =
        goWith([element = element, fault = fault] { return fault->make(amounts(element)); });
    const std::string outcome = outcomeOf(element, *fault);
    EXPECT_EQ(result, outcome == "-" ? healthy(way) : outcome);
    expectHealthyOtherwise(result);
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, CellsArray, ::testing::ValuesIn(allCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

// --- Numbers

// With the amounts v:1:2 and weights 10, 20 and 40 g/mol.
std::string byMass(double v) {
    constexpr double molarEnthalpy = 22000.3501; // of the scripted package, J/mol
    const double sum = v + 1.0 + 2.0;
    const double kilograms = (v * 0.01 + 1.0 * 0.02 + 2.0 * 0.04) / sum;
    return scripted::textOf(com::variant{molarEnthalpy / kilograms});
}

class CellsNumber : public Cells, public ::testing::WithParamInterface<Number> {};

TEST_P(CellsNumber, IsAnAmountLikeAnother) {
    for (const VARTYPE element : {VARTYPE{VT_R8}, VARTYPE{VT_VARIANT}}) {
        const std::string result = goWith([element] {
            com::variant list = amounts(element);
            if (element == VT_R8) {
                *static_cast<double*>(list.parray->pvData) = GetParam().value;
            } else {
                *static_cast<VARIANT*>(list.parray->pvData) = com::variant{GetParam().value}.release();
            }
            return list;
        });
        EXPECT_EQ(result, byMass(GetParam().value));
        expectHealthyOtherwise(result);
    }
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, CellsNumber, ::testing::ValuesIn(numbers),
                         [](const auto& tested) { return tested.param.name; });

} // namespace

} // namespace faults
