// Single values in what packages hand over: numbers that are none or at the edge of what there is, and what a
// package may put into an array of values.
#include "tests/faults/expect.h"
#include "tests/faults/numbers.h"

#include <algorithm>
#include <cmath>

namespace faults {

namespace {

bool isMissing(double value) { return std::isnan(value) || value == Limits::lowest(); }

std::string shown(double value) { return scripted::textOf(com::variant{value}); }

// Of a table, the cells of the first row with one replaced.
std::string with(const std::string& table, std::size_t column, const std::string& cell) {
    const std::size_t end = std::min(table.find(" / "), table.size());
    std::vector<std::string> cells = split(table.substr(0, end), " | ");
    cells.at(column) = cell;
    return joinedList(cells) + table.substr(end);
}

constexpr double idealGasEnthalpy = 20010.3; // of its first compound, J/mol
constexpr double molarEnthalpy = 22000.3501; // of the scripted package, J/mol

// With the compounds' amounts 1:1:2 and weights 10, 20 and 40 g/mol, of which the first is replaced.
std::string enthalpyByMass(const std::string&, double weight) {
    if (isMissing(weight)) {
        return "! Unable to perform basis conversion, one or more missing values for molecular weight";
    }
    const double kilograms = 0.25 * (weight * 0.001) + 0.25 * 0.02 + 0.5 * 0.04;
    return shown(molarEnthalpy * (1.0 / kilograms));
}

// The weight of the first compound is replaced, which concerns no other.
std::string idealGasEnthalpyByMass(const std::string& healthy, double weight) {
    return isMissing(weight)
               ? "! Unable to perform mole-to-mass conversion, one or more unknown molecular weights"
               : with(healthy, 0, shown(idealGasEnthalpy * (1.0 / (weight * 0.001))));
}

using Material = ICapeThermoMaterial;

HRESULT single(Material& material, const wchar_t* property, const wchar_t* phase, const wchar_t* basis,
               std::initializer_list<double> values) {
    const com::unique_bstr basisText = basis == nullptr ? com::unique_bstr{} : com::makeBstr(basis);
    return material.SetSinglePhaseProp(com::makeBstr(property).get(), com::makeBstr(phase).get(),
                                       basisText.get(), scripted::reals(values));
}

com::variant withNumber(const VARIANT& honest, double number) {
    com::variant values = scripted::duplicate(honest);
    if ((values.vt & VT_TYPEMASK) == VT_R8) {
        *static_cast<double*>(values.parray->pvData) = number;
    } else {
        *static_cast<VARIANT*>(values.parray->pvData) = com::variant{number}.release();
    }
    return values;
}

struct Place {
    const char* name;
    const char* way;
    const char* method;
    int output;                          ///< in which the first number is replaced; -1: `write` is done
    HRESULT (*write)(Material&, double); ///< behind what the healthy package writes
    std::string (*seen)(const std::string& healthy, double number);
};

const Place places[] = {
    {"MolecularWeight", "CapeOpenMixtureProperty by mass", "GetCompoundList", 4, nullptr, enthalpyByMass},
    {"BoilingPoint", "CapeOpenMixtureProperty by mass", "GetCompoundList", 3, nullptr,
     [](const std::string& healthy, double) { return healthy; }},
    {"Constant", "CapeOpenCompoundConstant", "GetCompoundConstant", 0, nullptr,
     [](const std::string& healthy, double number) { return with(healthy, 0, shown(number)); }},
    {"MolecularWeightByItself", "CapeOpenTemperatureDependentProperty by mass", "GetCompoundList", 4, nullptr,
     idealGasEnthalpyByMass},
    {"TemperatureDependentValue", "CapeOpenTemperatureDependentProperty", "GetTDependentProperty", 0, nullptr,
     [](const std::string& healthy, double number) {
         return with(healthy, 0, std::isnan(number) ? "" : shown(number));
     }},
    {"Enthalpy", "CapeOpenMixtureProperty", "CalcSinglePhaseProp", -1,
     [](Material& m, double v) { return single(m, L"enthalpy", L"Liquid", L"Mole", {v}); },
     [](const std::string&, double number) { return shown(number); }},
    {"EnthalpyByMass", "CapeOpenMixtureProperty by mass", "CalcSinglePhaseProp", -1,
     [](Material& m, double v) { return single(m, L"enthalpy", L"Liquid", L"Mole", {v}); },
     [](const std::string&, double number) { return shown(number * (1.0 / 0.0275)); }},
    {"FugacityCoefficient", "CapeOpenMixtureProperty of compounds", "CalcSinglePhaseProp", -1,
     [](Material& m, double v) {
         return single(m, L"fugacityCoefficient", L"Liquid", nullptr, {v, 2.0, 3.0});
     },
     [](const std::string&, double number) { return shown(number) + " | 2 | 3"; }},
    {"KValue", "CapeOpenTwoPhaseProperty", "CalcTwoPhaseProp", -1,
     [](Material& m, double v) {
         return m.SetTwoPhaseProp(com::makeBstr(L"kvalue").get(), scripted::texts({L"Vapor", L"Liquid"}),
                                  nullptr, scripted::reals({v, 2.0, 3.0}));
     },
     [](const std::string&, double number) { return shown(number) + " | 2 | 3"; }},
    {"VaporTemperature", "CapeOpenPhaseEquilibrium", "CalcEquilibrium", -1,
     [](Material& m, double v) { return single(m, L"temperature", L"Vapor", nullptr, {v}); },
     [](const std::string& healthy, double number) {
         return with(healthy, 0, isMissing(number) ? "#" : shown(number));
     }},
    {"OverallTemperature", "CapeOpenPhaseEquilibrium", "CalcEquilibrium", -1,
     [](Material& m, double v) {
         return m.SetOverallProp(com::makeBstr(L"temperature").get(), nullptr, scripted::reals({v}));
     },
     [](const std::string& healthy, double) { return healthy; }},
    {"OverallPressure", "CapeOpenPhaseEquilibrium", "CalcEquilibrium", -1,
     [](Material& m, double v) {
         return m.SetOverallProp(com::makeBstr(L"pressure").get(), nullptr, scripted::reals({v}));
     },
     [](const std::string& healthy, double) { return healthy; }},
    {"VaporPressure", "CapeOpenPhaseEquilibrium", "CalcEquilibrium", -1,
     [](Material& m, double v) { return single(m, L"pressure", L"Vapor", nullptr, {v}); },
     [](const std::string& healthy, double number) {
         return with(healthy, 1, isMissing(number) ? "#" : shown(number));
     }},
    {"VaporFraction", "CapeOpenPhaseEquilibrium", "CalcEquilibrium", -1,
     [](Material& m, double v) { return single(m, L"phaseFraction", L"Vapor", L"Mole", {v}); },
     [](const std::string& healthy, double number) {
         return with(healthy, 2, isMissing(number) ? "#" : shown(number));
     }},
    {"VaporComposition", "CapeOpenPhaseEquilibrium", "CalcEquilibrium", -1,
     [](Material& m, double v) {
         return single(m, L"fraction", L"Vapor", L"Mole", {v, 0.2, 0.3});
     },
     [](const std::string& healthy, double number) {
         return with(with(with(healthy, 3, isMissing(number) ? "#" : shown(number)), 4, "0.2"), 5, "0.3");
     }},
};

struct NumberCase {
    const Place* place;
    const Number* number;
};

std::string nameOf(const NumberCase& tested) {
    return std::string{tested.place->name} + "_" + tested.number->name;
}

void PrintTo(const NumberCase& tested, std::ostream* out) { *out << nameOf(tested); }

std::vector<NumberCase> numberCases() {
    std::vector<NumberCase> cases;
    for (const Place& place : places) {
        for (const Number& number : numbers) {
            cases.push_back({&place, &number});
        }
    }
    return cases;
}

class NumberOf : public Stage, public ::testing::WithParamInterface<NumberCase> {};

TEST_P(NumberOf, APackageIsShown) {
    const Place* const place = GetParam().place;
    const Number* const number = GetParam().number;
    const std::string without = healthy(place->way);
    const std::string result = go(place->way, [&] {
        package->hook(place->method, [place, value = number->value](scripted::Call& call) {
            const HRESULT code = call.healthy();
            if (place->output < 0) {
                return place->write(*call.material, value);
            }
            const scripted::Out& out = call.out[static_cast<std::size_t>(place->output)];
            out.replace(withNumber(out.value(), value));
            return code;
        });
    });
    EXPECT_EQ(result, place->seen(without, number->value));
    package->recovers(place->method);
    expectHealthyAgain(place->way, result, Memory::ofEverything);
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, NumberOf, ::testing::ValuesIn(numberCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

// --- Constants

double referredNumber = 12.5;
com::variant referredValue{12.5};
VARIANT illegalValue{{{VT_ILLEGALMASKED, 0, 0, 0, {}}}};

VARIANT reference(VARTYPE vt, void* target) {
    VARIANT value{};
    value.vt = static_cast<VARTYPE>(vt | VT_BYREF);
    value.byref = target;
    return value;
}

struct Constant {
    const char* name;
    VARIANT (*make)();
    const char* shown;
};

const Constant constants[] = {
    {"Text", [] { return com::variant{L"water"}.release(); }, "water"},
    {"NullText", [] { return com::variant{com::unique_bstr{}}.release(); }, ""},
    {"Surrogate", [] { return com::variant{L"a\xD800z"}.release(); }, "a\xEF\xBF\xBDz"},
    {"Nothing", [] { return VARIANT{}; }, "empty"},
    {"Whole", [] { return com::variant{7L}.release(); }, "7"},
    {"Truth", [] { return com::variant{true}.release(); }, "true"},
    {"Omitted", [] { return com::variant::missing().release(); }, "type 10"},
    {"NoObject", [] { return com::variant::object(nullptr).release(); }, "object"},
    {"List",
     [] {
         return scripted::reals({1.0, 2.0}).release();
     },
     "1 | 2"},
    {"ReferenceToNumber", [] { return reference(VT_R8, &referredNumber); }, "12.5"},
    {"ReferenceToValue", [] { return reference(VT_VARIANT, &referredValue); }, "12.5"},
    {"ReferenceToNoNumber", [] { return reference(VT_R8, nullptr); }, "empty"},
    {"ReferenceToNoText", [] { return reference(VT_BSTR, nullptr); }, "empty"},
    {"ReferenceToNoList", [] { return reference(VT_ARRAY | VT_R8, nullptr); }, "empty"},
    {"ReferenceToIllegalKind", [] { return reference(VT_VARIANT, &illegalValue); }, "empty"},
    {"ReferenceToNoDecimal", [] { return reference(VT_DECIMAL, nullptr); }, "empty"},
};

void PrintTo(const Constant& tested, std::ostream* out) { *out << tested.name; }

class ConstantOf : public Stage, public ::testing::WithParamInterface<Constant> {
  protected:
    void SetUp() override {
        Stage::SetUp();
        attachNew();
        package->hook("GetCompoundConstant", [](scripted::Call& call) {
            const HRESULT code = call.healthy();
            com::variant values = scripted::duplicate(call.out[0].value());
            auto* const first = static_cast<VARIANT*>(values.parray->pvData);
            const com::variant old = com::variant::attach(*first);
            *first = GetParam().make();
            call.out[0].replace(std::move(values));
            return code;
        });
    }
};

TEST_P(ConstantOf, APackageStandsInItsCell) {
    const std::vector<std::wstring> orientations = {L"horizontal", L"vertical"};
    for (const std::wstring& orientation : orientations) {
        std::vector<com::variant> arguments;
        arguments.emplace_back(L"P");
        arguments.emplace_back(L"criticalTemperature");
        arguments.push_back(com::variant::missing());
        arguments.emplace_back(std::wstring_view{orientation});
        const std::string separator = orientation == L"vertical" ? " / " : " | ";
        EXPECT_EQ(worksheet(L"CapeOpenCompoundConstant", std::move(arguments)),
                  std::string{GetParam().shown}.append(separator).append("10020").append(separator).append(
                      "10030"));
    }
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, ConstantOf, ::testing::ValuesIn(constants),
                         [](const auto& tested) { return tested.param.name; });

} // namespace

} // namespace faults
