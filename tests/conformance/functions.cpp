#include "tests/conformance/functions.h"

#include "com/safe_array.h"

#include <algorithm>

namespace conformance {

namespace {

using tests::number;
using tests::text;

com::variant nothing() { return tests::omitted(); }
com::variant packageName() { return text(L"P"); }
com::variant enthalpy() { return text(L"enthalpy"); }
com::variant criticalVolume() { return text(L"criticalVolume"); }
com::variant idealGasEnthalpy() { return text(L"idealGasEnthalpy"); }
com::variant mixtureDerivative() { return text(L"fugacityCoefficient.DmolFraction"); }
com::variant twoPhaseDerivative() { return text(L"kvalue.DmolFraction"); }
com::variant vapor() { return text(L"Vapor"); }
com::variant liquid() { return text(L"Liquid"); }
com::variant temperature() { return text(L"temperature"); }
com::variant pressure() { return text(L"pressure"); }
com::variant kelvins() { return number(300.0); }
com::variant pascals() { return number(100000.0); }
com::variant composition() { return tests::cells({1.0, 1.0, 2.0}); }
com::variant mass() { return text(L"mass"); }
com::variant matrix() { return text(L"matrix"); }

com::variant variants(std::initializer_list<double> values) {
    com::unique_safearray array = com::makeVector(VT_VARIANT, values.size());
    {
        const com::array_lock<VARIANT> lock{array.get()};
        std::ranges::transform(values, lock.elements().begin(),
                               [](double value) { return number(value).release(); });
    }
    return com::variant::array(std::move(array), VT_VARIANT);
}

} // namespace

const std::vector<Function>& functions() {
    static const std::vector<Function> all = {
        {"PackageNames",
         L"CapeOpenPackageNames",
         {{"orientation", VT_VARIANT, Role::listOrientation, nothing}}},
        {"UnitOfMeasure",
         L"CapeOpenUnitOfMeasure",
         {{"propertyName", VT_BSTR, Role::unit, enthalpy}, {"basis", VT_VARIANT, Role::basis, nothing}}},
        {"Compounds",
         L"CapeOpenCompounds",
         {{"packageName", VT_BSTR, Role::package, packageName},
          {"orientation", VT_VARIANT, Role::listOrientation, nothing},
          {"compound", VT_VARIANT, Role::compound, nothing}}},
        {"Phases",
         L"CapeOpenPhases",
         {{"packageName", VT_BSTR, Role::package, packageName},
          {"orientation", VT_VARIANT, Role::listOrientation, nothing},
          {"phase", VT_VARIANT, Role::phaseSelection, nothing}}},
        {"CompoundConstant",
         L"CapeOpenCompoundConstant",
         {{"packageName", VT_BSTR, Role::package, packageName},
          {"constantName", VT_BSTR, Role::constant, criticalVolume},
          {"basis", VT_VARIANT, Role::basis, mass},
          {"orientation", VT_VARIANT, Role::listOrientation, nothing},
          {"compound", VT_VARIANT, Role::compound, nothing}}},
        {"TemperatureDependentProperty",
         L"CapeOpenTemperatureDependentProperty",
         {{"packageName", VT_BSTR, Role::package, packageName},
          {"propertyName", VT_BSTR, Role::property, idealGasEnthalpy},
          {"T", VT_R8, Role::freeReal, kelvins},
          {"basis", VT_VARIANT, Role::basis, mass},
          {"orientation", VT_VARIANT, Role::unreadOrientation, nothing},
          {"compound", VT_VARIANT, Role::compound, nothing}}},
        {"MixtureProperty",
         L"CapeOpenMixtureProperty",
         {{"packageName", VT_BSTR, Role::package, packageName},
          {"propertyName", VT_BSTR, Role::property, mixtureDerivative},
          {"phaseName", VT_BSTR, Role::phase, vapor},
          {"T", VT_R8, Role::temperature, kelvins},
          {"P", VT_R8, Role::pressure, pascals},
          {"composition", VT_VARIANT, Role::composition, composition},
          {"compositionBasis", VT_VARIANT, Role::basis, nothing},
          {"propertyBasis", VT_VARIANT, Role::basis, nothing},
          {"orientation", VT_VARIANT, Role::matrixOrientation, matrix},
          {"transposed", VT_VARIANT, Role::flag, nothing},
          {"normalizeComposition", VT_VARIANT, Role::flag, nothing}}},
        {"TwoPhaseProperty",
         L"CapeOpenTwoPhaseProperty",
         {{"packageName", VT_BSTR, Role::package, packageName},
          {"propertyName", VT_BSTR, Role::property, twoPhaseDerivative},
          {"phase1Name", VT_BSTR, Role::phase, vapor},
          {"phase2Name", VT_BSTR, Role::phase, liquid},
          {"T", VT_R8, Role::temperature, kelvins},
          {"P", VT_R8, Role::pressure, pascals},
          {"phase1Composition", VT_VARIANT, Role::composition, composition},
          {"phase2Composition", VT_VARIANT, Role::composition, composition},
          {"compositionBasis", VT_VARIANT, Role::basis, nothing},
          {"orientation", VT_VARIANT, Role::matrixOrientation, matrix},
          {"compositionDerivativePhase", VT_VARIANT, Role::derivativePhase, nothing},
          {"transposed", VT_VARIANT, Role::flag, nothing},
          {"normalizeComposition", VT_VARIANT, Role::flag, nothing}}},
        {"PhaseEquilibrium",
         L"CapeOpenPhaseEquilibrium",
         {{"packageName", VT_BSTR, Role::package, packageName},
          {"overallComposition", VT_VARIANT, Role::composition, composition},
          {"condition1", VT_BSTR, Role::condition1, temperature},
          {"condition1Value", VT_R8, Role::conditionValue1, kelvins},
          {"condition2", VT_BSTR, Role::condition2, pressure},
          {"condition2Value", VT_R8, Role::conditionValue2, pascals},
          {"basis", VT_VARIANT, Role::basis, nothing},
          {"options", VT_VARIANT, Role::options, enthalpy},
          {"noNumber", VT_VARIANT, Role::filler, nothing},
          {"orientation", VT_VARIANT, Role::matrixOrientation, matrix},
          {"normalizeComposition", VT_VARIANT, Role::flag, nothing}}},
    };
    return all;
}

const Function& functionNamed(std::string_view name) {
    return *std::ranges::find(functions(), name, &Function::name);
}

std::vector<com::variant> workingArguments(const Function& function) {
    std::vector<com::variant> arguments;
    for (const Parameter& parameter : function.parameters) {
        arguments.push_back(parameter.working());
    }
    return arguments;
}

com::variant& argumentNamed(std::string_view parameter, const Function& function,
                            std::vector<com::variant>& arguments) {
    const auto found = std::ranges::find(function.parameters, parameter, &Parameter::name);
    return arguments.at(static_cast<std::size_t>(found - function.parameters.begin()));
}

void teach(scripted::Script& package) {
    package.calculates(L"fugacityCoefficient.DmolFraction", L"", {11, 12, 13, 21, 22, 23, 31, 32, 33});
    package.calculates(L"kvalue.DmolFraction", L"",
                       {11, 12, 13, 21, 22, 23, 31, 32, 33, 16, 17, 18, 26, 27, 28, 36, 37, 38});
    // One compound gets one value.
    package.hook("GetCompoundConstant", [](scripted::Call& call) {
        call.out[0].give(call.in[1].vt == VT_EMPTY ? variants({1000.0, 2000.0, 4000.0}) : variants({2000.0}));
        return S_OK;
    });
    package.hook("GetTDependentProperty", [](scripted::Call& call) {
        call.out[0].give(call.in[2].vt == VT_EMPTY ? scripted::reals({1000.0, 2000.0, 4000.0})
                                                   : scripted::reals({2000.0}));
        return S_OK;
    });
}

} // namespace conformance
