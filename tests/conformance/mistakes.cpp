#include "tests/conformance/mistakes.h"

#include <algorithm>
#include <limits>

using namespace tests;

namespace conformance {

namespace {

constexpr const char* badOrientation = "Invalid value for orientation - expected \"Auto\" (default,0), "
                                       "\"Horizontal\" (1) or \"Vertical\" (2)";
constexpr const char* badMatrixOrientation = "Invalid value for orientation - expected \"Auto\" (default,0), "
                                             "\"Horizontal\" (1), \"Vertical\" (2) or \"Matrix\" (3)";
constexpr const char* badCompound = "Invalid value for compound - expected compound name or 1-based compound "
                                    "index (\"All\" or 0 for all compounds)";
constexpr const char* badPhase = "Invalid value for phase - expected phase name or 1-based phase index "
                                 "(\"All\" or 0 for all phases)";
constexpr const char* badDerivativePhase =
    "Invalid value for compositionDerivativePhase - expected \"Both\" (default,0), \"Phase 1\" (1), "
    "\"Phase 2\" (1) or one of the two specified phase names";
constexpr const char* badOptions =
    "Unexpected value for options; expected a string consisting of comma separated values of zero or more "
    "'overallResults', 'noPhaseResults', 'noTemperature', 'noPressure', 'noPhaseFraction', 'noComposition', "
    "'normal', 'retrograde', or one or more property names";

Mistake wrong(const char* name, const char* parameter, std::function<com::variant()> value,
              const char* message) {
    const auto give = [parameter, value = std::move(value)](Scene& scene) {
        argumentNamed(parameter, scene.function, scene.arguments) = value();
    };
    return {name, parameter, give, message};
}

Mistake wrongText(const char* name, const char* parameter, const wchar_t* value, const char* message) {
    return wrong(
        name, parameter, [value] { return text(value); }, message);
}

Mistake wrongNumber(const char* name, const char* parameter, double value, const char* message) {
    return wrong(
        name, parameter, [value] { return number(value); }, message);
}

Mistake leftOut(const char* name, const char* parameter, const char* message) {
    return wrong(
        name, parameter, [] { return omitted(); }, message);
}

// A call into the package that fails with these words.
Mistake failing(const char* name, const char* method, const wchar_t* words, const char* message) {
    const auto fail = [method, words](Scene& scene) {
        scene.package.recovers(method);
        scene.package.fails(method, static_cast<HRESULT>(ECapeComputationHR), words);
    };
    return {name, method, fail, message};
}

Mistake answering(const char* name, const char* method, std::function<com::variant()> answer,
                  const char* message) {
    const auto change = [method, answer = std::move(answer)](Scene& scene) {
        scene.package.recovers(method);
        scene.package.answers(method, answer());
    };
    return {name, method, change, message};
}

com::variant values(std::vector<com::variant> given) {
    com::unique_safearray array = com::makeVector(VT_VARIANT, given.size());
    {
        const com::array_lock<VARIANT> lock{array.get()};
        std::ranges::transform(given, lock.elements().begin(),
                               [](com::variant& value) { return value.release(); });
    }
    return com::variant::array(std::move(array), VT_VARIANT);
}
com::variant textAmongNumbers() {
    std::vector<com::variant> given;
    given.push_back(number(1.0));
    given.push_back(number(2.0));
    given.push_back(text(L"unknown"));
    return values(std::move(given));
}
com::variant oneNumber() {
    std::vector<com::variant> given;
    given.push_back(number(1.0));
    return values(std::move(given));
}

Mistakes joined(std::initializer_list<Mistakes> parts) {
    Mistakes all;
    for (const Mistakes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

// --- Mistakes that several functions know

Mistakes workbookMistakes() {
    return {{"UnknownWorkbook", "workbook", [](Scene& scene) { scene.excel.fail(L"ActiveWorkbook", E_FAIL); },
             "Cannot determine current workbook"},
            {"NoWorkbook", "workbook", [](Scene& scene) { scene.excel.setActiveWorkbook({}); },
             "No current workbook"}};
}

Mistakes packageMistakes() {
    return joined(
        {{wrongText("EmptyPackageName", "packageName", L"", "Empty string is not valid for package name")},
         workbookMistakes(),
         {wrongText("UnknownPackage", "packageName", L"Q", "Invalid package name")}});
}

Mistakes compoundListMistakes() {
    return {failing("FailingCompoundList", "GetCompoundList", L"no compounds today",
                    "Failed to obtain compound data: no compounds today")};
}

Mistakes phaseListMistakes() {
    return {failing("FailingPhaseList", "GetPhaseList", L"no phases today",
                    "Failed to obtain list of phases: no phases today")};
}

Mistakes materialMistakes() {
    return {{"NoMaterialContext", "ICapeThermoMaterialContext",
             [](Scene& scene) { scene.package.omits(__uuidof(ICapeThermoMaterialContext)); },
             "ICapeThermoMaterialContext not exposed by property package"},
            failing("RefusedMaterial", "SetMaterial", L"no room for it",
                    "Failed to set active material object on property package: no room for it")};
}

Mistakes compoundMistakes() {
    return joined({compoundListMistakes(),
                   {wrongText("UnknownCompound", "compound", L"Delta", "Invalid compound name"),
                    wrongNumber("CompoundBeyondTheLast", "compound", 4.0, badCompound)}});
}

Mistakes basisMistakes(const char* parameter) {
    return {wrongText("UnknownBasis", parameter, L"kg", "Invalid basis \"kg\""),
            wrongNumber("NumberAsBasis", parameter, 1.0, "Invalid value for basis - expected string value")};
}

Mistakes conditionMistakes() {
    return {leftOut("NoTemperature", "T", "Temperature not specified"),
            wrongNumber("TemperatureOfZero", "T", 0.0, "Temperature must be positive"),
            leftOut("NoPressure", "P", "Pressure not specified"),
            wrongNumber("NegativePressure", "P", -1.0, "Pressure must be positive")};
}

Mistakes orientationMistakes(const char* message) {
    return {wrongNumber("WrongOrientation", "orientation", 4.0, message)};
}

Mistakes normalizationMistakes() {
    return {wrongText("WrongNormalization", "normalizeComposition", L"perhaps",
                      "Invalid value for normalizeComposition - expected bool value")};
}

Mistakes transpositionMistakes() {
    return {wrongText("WrongTransposition", "transposed", L"perhaps",
                      "Invalid value for transposed - expected bool value")};
}

Mistakes unreadableComposition(const char* name, const char* parameter) {
    return {wrongText(name, parameter, L"air", "not a real array")};
}

Mistakes shortComposition(const char* name, const char* parameter, const char* message) {
    return {wrong(
        name, parameter,
        [] {
            return cells({1.0, 1.0});
        },
        message)};
}

Mistakes weightMistakes() {
    const auto forget = [](Scene& scene) {
        scene.package.model.compounds[1].molecularWeight = std::numeric_limits<double>::quiet_NaN();
    };
    return {{"UnknownWeight", "molecular weights", forget,
             "Unable to perform mole-to-mass conversion, one or more unknown molecular weights"}};
}

// --- The functions

Mistakes packageNames() {
    const auto disconnect = [](Scene& scene) { scene.events.OnDisconnection(ext_dm_UserClosed, nullptr); };
    const auto remove = [](Scene& scene) {
        scene.services.DeleteWorkbookPP(scene.book, com::makeBstr(L"P").get());
    };
    return joined({{{"NoExcel", "Excel", disconnect, "Cannot determine current workbook"}},
                   workbookMistakes(),
                   {{"NoPackages", "packages", remove, "No CAPE-OPEN packages are loaded"}},
                   orientationMistakes(badOrientation)});
}

Mistakes unitOfMeasure() {
    return joined(
        {{leftOut("NoPropertyName", "propertyName", "Property name not specified"),
          wrongText("UnknownProperty", "propertyName", L"magic", "Invalid/unknown property \"magic\"")},
         basisMistakes("basis")});
}

Mistakes compounds() {
    return joined({packageMistakes(), compoundMistakes(), orientationMistakes(badOrientation)});
}

Mistakes phases() {
    return joined({packageMistakes(),
                   phaseListMistakes(),
                   {wrongText("UnknownPhase", "phase", L"Solid", "Invalid phase name"),
                    wrongNumber("PhaseBeyondTheLast", "phase", 3.0, badPhase)},
                   orientationMistakes(badOrientation)});
}

Mistakes compoundConstant() {
    constexpr const char* method = "GetCompoundConstant";
    return joined(
        {{wrongText("EmptyConstantName", "constantName", L"", "Empty string is not valid for constant name")},
         basisMistakes("basis"),
         packageMistakes(),
         compoundMistakes(),
         {failing("FailingConstant", method, L"no such constant", "no such constant"),
          wrongText("UnknownConstant", "constantName", L"magic", "Invalid/unknown property \"magic\""),
          answering(
              "NumbersForValues", method,
              [] {
                  return scripted::reals({1.0, 2.0, 3.0});
              },
              "Unable to perform mole-to-mass conversion, unexpected property values: Expected an "
              "array of type VARIANT"),
          answering("TooFewValues", method, oneNumber,
                    "Unable to perform mole-to-mass conversion, unexpected number of values"),
          answering("TextAmongValues", method, textAmongNumbers,
                    "Unable to perform mole-to-mass conversion, unexpected value data type")},
         weightMistakes(),
         orientationMistakes(badOrientation)});
}

Mistakes temperatureDependentProperty() {
    constexpr const char* method = "GetTDependentProperty";
    return joined(
        {{wrongText("EmptyPropertyName", "propertyName", L"", "Empty string is not valid for property name")},
         basisMistakes("basis"),
         packageMistakes(),
         compoundMistakes(),
         {failing("FailingProperty", method, L"valid from 200 K to 600 K", "valid from 200 K to 600 K"),
          wrongText("UnknownProperty", "propertyName", L"magic", "Invalid/unknown property \"magic\""),
          answering(
              "TextsForValues", method,
              [] {
                  return scripted::texts({L"1", L"2", L"3"});
              },
              "Unexpected property values: Expected an array of type double precision"),
          answering(
              "TooFewValues", method, [] { return scripted::reals({1.0}); }, "Unexpected number of values")},
         weightMistakes()});
}

Mistakes mixtureProperty() {
    return joined(
        {{wrongText("EmptyPropertyName", "propertyName", L"", "Empty string is not valid for property name"),
          wrongText("EmptyPhaseName", "phaseName", L"", "Empty string is not valid for phase name"),
          wrongText("UnknownPropertyBasis", "propertyBasis", L"result", "Invalid basis \"result\""),
          wrongText("UnknownCompositionBasis", "compositionBasis", L"kg", "Invalid basis \"kg\"")},
         conditionMistakes(),
         packageMistakes(),
         normalizationMistakes(),
         {leftOut("NoComposition", "composition", "value not specified")},
         unreadableComposition("TextForComposition", "composition"),
         compoundListMistakes(),
         phaseListMistakes(),
         materialMistakes(),
         shortComposition("ShortComposition", "composition", "Unexpected number of values for composition"),
         {wrongText("UnknownProperty", "propertyName", L"magic", "Invalid/unknown property \"magic\""),
          failing("FailingCalculation", "CalcSinglePhaseProp", L"no model", "no model")},
         orientationMistakes(badMatrixOrientation),
         transpositionMistakes()});
}

Mistakes twoPhaseProperty() {
    return joined(
        {{wrongText("EmptyPropertyName", "propertyName", L"", "Empty string is not valid for property name"),
          wrongText("EmptyPhase1Name", "phase1Name", L"", "Empty string is not valid for phase name"),
          wrongText("EmptyPhase2Name", "phase2Name", L"", "Empty string is not valid for phase name"),
          wrongText("EqualPhases", "phase2Name", L"VAPOR", "Phases cannot be equal")},
         basisMistakes("compositionBasis"),
         conditionMistakes(),
         packageMistakes(),
         normalizationMistakes(),
         unreadableComposition("TextForComposition1", "phase1Composition"),
         compoundListMistakes(),
         shortComposition("ShortComposition1", "phase1Composition",
                          "Unexpected number of values for phase 1 composition"),
         unreadableComposition("TextForComposition2", "phase2Composition"),
         shortComposition("ShortComposition2", "phase2Composition",
                          "Unexpected number of values for phase 2 composition"),
         {wrongText("UnknownProperty", "propertyName", L"magic", "Invalid/unknown property \"magic\"")},
         phaseListMistakes(),
         materialMistakes(),
         {failing("FailingCalculation", "CalcTwoPhaseProp", L"no model", "no model"),
          wrongNumber("WrongDerivativePhase", "compositionDerivativePhase", 3.0, badDerivativePhase)},
         orientationMistakes(badMatrixOrientation),
         transpositionMistakes()});
}

Mistakes phaseEquilibrium() {
    return joined(
        {{wrongText("EmptyCondition1", "condition1", L"", "Empty string is not valid for condition 1 name"),
          wrongText("EmptyCondition2", "condition2", L"", "Empty string is not valid for condition 2 name")},
         basisMistakes("basis"),
         {leftOut("NoValueOfCondition1", "condition1Value", "Condition 1 not specified"),
          leftOut("NoValueOfCondition2", "condition2Value", "Condition 2 not specified"),
          wrong(
              "BlockForNoNumber", "noNumber",
              [] {
                  return cells({1.0, 2.0});
              },
              "Invalid value for noNumber - expected a single value")},
         packageMistakes(),
         compoundListMistakes(),
         phaseListMistakes(),
         materialMistakes(),
         normalizationMistakes(),
         unreadableComposition("TextForComposition", "overallComposition"),
         shortComposition("ShortComposition", "overallComposition",
                          "Unexpected number of values for overall composition"),
         {wrongNumber("NumberForOptions", "options", 1.0, badOptions),
          wrongText("UnknownOption", "options", L"noVolume", "Invalid/unknown property \"noVolume\""),
          wrongText("TwoSolutionTypes", "options", L"normal,retrograde",
                    "Multiple solution type specifications"),
          wrongText("NothingToShow", "options", L"noPhaseResults",
                    "Either overall phase or phases must be included; no output"),
          wrongText("UnknownCondition1", "condition1", L"magic", "Invalid/unknown property \"magic\""),
          wrongText("UnsupportedCondition1", "condition1", L"viscosity",
                    "Unsupported flash condition \"viscosity\""),
          wrongText("UnknownCondition2", "condition2", L"sorcery", "Invalid/unknown property \"sorcery\""),
          wrongText("UnsupportedCondition2", "condition2", L"density",
                    "Unsupported flash condition \"density\""),
          failing("FailingFlash", "CalcEquilibrium", L"Flash did not converge", "Flash did not converge"),
          failing("FailingCalculation", "CalcSinglePhaseProp", L"no model", "no model")},
         orientationMistakes(badMatrixOrientation)});
}

} // namespace

const Mistakes& mistakesOf(const Function& function) {
    static const std::map<std::string_view, Mistakes> all = {
        {"PackageNames", packageNames()},
        {"UnitOfMeasure", unitOfMeasure()},
        {"Compounds", compounds()},
        {"Phases", phases()},
        {"CompoundConstant", compoundConstant()},
        {"TemperatureDependentProperty", temperatureDependentProperty()},
        {"MixtureProperty", mixtureProperty()},
        {"TwoPhaseProperty", twoPhaseProperty()},
        {"PhaseEquilibrium", phaseEquilibrium()},
    };
    return all.at(function.name);
}

} // namespace conformance
