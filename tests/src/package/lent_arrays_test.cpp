// Arrays that a package is lent for the time of a call, and takes for its own.
#include "tests/src/package/package_fixture.h"

namespace quorvane {

namespace {

struct Lending {
    const char* method;
    std::vector<std::size_t> arrays; ///< the arguments that are arrays
    std::string (*call)(PropertyPackage& package);
};

void PrintTo(const Lending& lending, std::ostream* out) { *out << lending.method; }

com::unique_bstr text(const wchar_t* characters) { return com::makeBstr(characters); }

std::string flash(PropertyPackage& package, const wchar_t* first, const wchar_t* second) {
    double T = 0.0;
    double P = 0.0;
    package.ensureMaterial();
    const std::vector<PhaseResult>& phases =
        package.calcEquilibrium({text(first).get(), 0.25}, {text(second).get(), 1e5}, text(L"normal").get(),
                                {0.2, 0.3, 0.5}, false, T, P);
    return std::to_string(phases.at(0).fraction) + " " + std::to_string(phases.at(1).fraction);
}

const Lending lendings[] = {
    {"CalcSinglePhaseProp",
     {0},
     [](PropertyPackage& package) {
         return std::to_string(package
                                   .calcSinglePhaseProperty(text(L"enthalpy").get(), text(L"Liquid").get(),
                                                            300.0, 1e5, {0.2, 0.3, 0.5}, false,
                                                            lookupProperty(L"enthalpy"), false)
                                   .front());
     }},
    {"CalcTwoPhaseProp",
     {0, 1},
     [](PropertyPackage& package) {
         return std::to_string(package
                                   .calcTwoPhaseProperty(text(L"kvalue").get(), text(L"Vapor").get(),
                                                         text(L"Liquid").get(), 300.0, 1e5, {0.2, 0.3, 0.5},
                                                         {0.2, 0.3, 0.5}, false, lookupProperty(L"kvalue"))
                                   .front());
     }},
    {"CalcEquilibrium",
     {0, 1},
     [](PropertyPackage& package) {
         return flash(package, L"vaporFraction", L"pressure") + " " +
                flash(package, L"temperature", L"pressure");
     }},
    {"GetCompoundConstant",
     {0, 1},
     [](PropertyPackage& package) {
         return scripted::textOf(package.compoundConstant(text(L"criticalTemperature").get(), 1).value);
     }},
    {"GetTDependentProperty",
     {0, 2},
     [](PropertyPackage& package) {
         return scripted::textOf(
             package.temperatureDependentProperty(text(L"vaporPressure").get(), 300.0, 1).value);
     }},
    {"CheckTwoPhasePropSpec",
     {1},
     [](PropertyPackage& package) {
         const bool can =
             package.canCalculate(text(L"kvalue").get(), text(L"Vapor").get(), text(L"Liquid").get());
         return std::string{can ? "can" : "cannot"};
     }},
};

class LentArrays : public PackageTest, public testing::WithParamInterface<Lending> {};

TEST_P(LentArrays, OutliveAPackageThatFreesThem) {
    const Lending& lending = GetParam();
    const auto bound = bind();
    const std::string expected = lending.call(*bound);
    std::size_t tried = 0;
    script.hook(lending.method, [&](scripted::Call& call) {
        for (const std::size_t position : lending.arrays) {
            VARIANT argument = call.in[position];
            EXPECT_NE(argument.vt & VT_ARRAY, 0) << position;
            EXPECT_EQ(VariantClear(&argument), DISP_E_ARRAYISLOCKED) << position;
            EXPECT_EQ(SafeArrayDestroyData(call.in[position].parray), DISP_E_ARRAYISLOCKED) << position;
            ++tried;
        }
        return call.healthy();
    });
    EXPECT_EQ(lending.call(*bound), expected);
    EXPECT_GE(tried, lending.arrays.size());
}

INSTANTIATE_TEST_SUITE_P(Of, LentArrays, testing::ValuesIn(lendings),
                         [](const auto& tested) { return std::string{tested.param.method}; });

} // namespace

} // namespace quorvane
