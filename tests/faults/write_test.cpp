// What a package writes into the material is of the wrong type, shape or length: the material refuses it in
// words, and the package works the next time.
#include "tests/faults/expect.h"

#include <algorithm>
#include <limits>

namespace faults {

namespace {

using scripted::reals;
using scripted::texts;

using Material = ICapeThermoMaterial;

BSTR none() { return nullptr; }

struct Write {
    const char* place; ///< in writes.tsv
    const char* way;
    com::variant (*honest)();
    HRESULT (*write)(Material&, const VARIANT& values);
};

HRESULT single(Material& material, const wchar_t* property, const wchar_t* phase, const wchar_t* basis,
               const VARIANT& values) {
    const com::unique_bstr basisText = basis == nullptr ? com::unique_bstr{none()} : com::makeBstr(basis);
    return material.SetSinglePhaseProp(com::makeBstr(property).get(), com::makeBstr(phase).get(),
                                       basisText.get(), values);
}

com::variant labels() { return texts({L"Vapor", L"Liquid"}); }

const Write allWrites[] = {
    {"enthalpy", "CapeOpenMixtureProperty", [] { return reals({5.0}); },
     [](Material& m, const VARIANT& v) { return single(m, L"enthalpy", L"Liquid", L"Mole", v); }},
    {"fugacity coefficients", "CapeOpenMixtureProperty of compounds",
     [] {
         return reals({1.0, 2.0, 3.0});
     },
     [](Material& m, const VARIANT& v) { return single(m, L"fugacityCoefficient", L"Liquid", nullptr, v); }},
    {"K values", "CapeOpenTwoPhaseProperty",
     [] {
         return reals({1.0, 2.0, 3.0});
     },
     [](Material& m, const VARIANT& v) {
         return m.SetTwoPhaseProp(com::makeBstr(L"kvalue").get(), labels(), nullptr, v);
     }},
    {"derivatives", "CapeOpenMixtureProperty of derivatives",
     [] {
         return reals({1.0, 2.0, 3.0});
     },
     [](Material& m, const VARIANT& v) {
         return single(m, L"enthalpy.DmolFraction", L"Liquid", L"Mole", v);
     }},
    {"derivatives of compounds", "CapeOpenMixtureProperty of derivatives of compounds",
     [] {
         return reals({1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0});
     },
     [](Material& m, const VARIANT& v) {
         return single(m, L"fugacityCoefficient.DmolFraction", L"Liquid", nullptr, v);
     }},
    {"derivatives of two phases", "CapeOpenTwoPhaseProperty of derivatives",
     [] {
         return reals(
             {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.5, 9.5});
     },
     [](Material& m, const VARIANT& v) {
         return m.SetTwoPhaseProp(com::makeBstr(L"kvalue.DmolFraction").get(), labels(), nullptr, v);
     }},
    {"phases of the K values", "CapeOpenTwoPhaseProperty", labels,
     [](Material& m, const VARIANT& v) {
         return m.SetTwoPhaseProp(com::makeBstr(L"kvalue").get(), v, nullptr, reals({1.0, 2.0, 3.0}));
     }},
    {"vapor composition", "CapeOpenPhaseEquilibrium",
     [] {
         return reals({0.2, 0.3, 0.5});
     },
     [](Material& m, const VARIANT& v) { return single(m, L"fraction", L"Vapor", L"Mole", v); }},
    {"vapor fraction", "CapeOpenPhaseEquilibrium", [] { return reals({0.4}); },
     [](Material& m, const VARIANT& v) { return single(m, L"phaseFraction", L"Vapor", L"Mole", v); }},
    {"vapor temperature", "CapeOpenPhaseEquilibrium", [] { return reals({333.0}); },
     [](Material& m, const VARIANT& v) { return single(m, L"temperature", L"Vapor", nullptr, v); }},
    {"vapor pressure", "CapeOpenPhaseEquilibrium", [] { return reals({2e5}); },
     [](Material& m, const VARIANT& v) { return single(m, L"pressure", L"Vapor", nullptr, v); }},
    {"overall temperature", "CapeOpenPhaseEquilibrium", [] { return reals({333.0}); },
     [](Material& m, const VARIANT& v) {
         return m.SetOverallProp(com::makeBstr(L"temperature").get(), nullptr, v);
     }},
    {"overall pressure", "CapeOpenPhaseEquilibrium", [] { return reals({2e5}); },
     [](Material& m, const VARIANT& v) {
         return m.SetOverallProp(com::makeBstr(L"pressure").get(), nullptr, v);
     }},
    {"extra enthalpies", "CapeOpenPhaseEquilibrium with enthalpies", [] { return reals({5.0}); },
     [](Material& m, const VARIANT& v) {
         const HRESULT vapor = single(m, L"enthalpy", L"Vapor", L"Mole", v);
         return FAILED(vapor) ? vapor : single(m, L"enthalpy", L"Liquid", L"Mole", v);
     }},
    {"states of the present phases", "CapeOpenPhaseEquilibrium",
     [] {
         return reals({1.0, 1.0});
     },
     [](Material& m, const VARIANT& v) { return m.SetPresentPhases(labels(), v); }},
    {"present phases", "CapeOpenPhaseEquilibrium", labels,
     [](Material& m, const VARIANT& v) { return m.SetPresentPhases(v, com::variant{}); }},
};

const Write& writeOf(const ArrayRow& row) { return *std::ranges::find(allWrites, row.place, &Write::place); }

class Writes : public Stage {
  protected:
    /// The calculation with nothing but this write, or for a flash with this write behind the others.
    std::string goWriting(const ArrayRow& row, const com::variant& values) {
        const Write& write = writeOf(row);
        return go(write.way, [&] {
            package->hook(row.call, [&write, &row, &values](scripted::Call& call) -> HRESULT {
                if (row.call == "CalcEquilibrium") {
                    static_cast<void>(call.healthy());
                }
                if (FAILED(write.write(*call.material, values))) {
                    throw refusalOf(call.material);
                }
                return S_OK;
            });
        });
    }
    void expectWorksAgain(const ArrayRow& row, const std::string& result) {
        package->recovers(row.call);
        forgetReferences();
        expectHealthyAgain(writeOf(row).way, result);
    }
    std::string withoutFault(const ArrayRow& row) {
        std::string seen = goWriting(row, writeOf(row).honest());
        EXPECT_FALSE(seen.starts_with("! ")) << seen;
        package->recovers(row.call);
        return seen;
    }
};

// The cells of the second row hold what stands for nothing.
std::string withoutLiquid(const std::string& table) {
    return split(table, " / ").front() + " / # | # | # | # | # | #";
}

// --- Types, shapes and lengths
// -------------------------------------------------------------------------------------

struct Case {
    const ArrayRow* row;
    const ValueFault* fault;
};

std::string nameOf(const Case& tested) { return tested.row->name() + "_" + tested.fault->name; }

void PrintTo(const Case& tested, std::ostream* out) { *out << nameOf(tested); }

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const ArrayRow& row : writes()) {
        for (const ValueFault& fault : valueFaults(elementType(row))) {
            cases.push_back({&row, &fault});
        }
    }
    return cases;
}

class WrittenValue : public Writes, public ::testing::WithParamInterface<Case> {};

TEST_P(WrittenValue, IsChecked) {
    const ArrayRow* const row = GetParam().row;
    const ValueFault* const fault = GetParam().fault;
    const std::string without = withoutFault(*row);
    const com::variant honest = writeOf(*row).honest();
    const com::variant values = fault->make(honest);
    const std::string result = goWriting(*row, values);
    // A single number less is none; of two phases one is left.
    const std::string outcome = outcomeOf(*row, fault->effect, true);
    EXPECT_EQ(result, outcome == "<without liquid>"
                          ? withoutLiquid(without)
                          : seenOutcome(outcome, checkText(*row, fault->effect), fault, "zzz", without));
    expectWorksAgain(*row, result);
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, WrittenValue, ::testing::ValuesIn(allCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

// --- Phase labels
// --------------------------------------------------------------------------------------------------

struct Label {
    const char* name;
    const wchar_t* text;
};

constexpr Label oddLabels[] = {
    {"Null", nullptr},
    {"Empty", L""},
    {"Unknown", L"Solid"},
    {"Blank", L" "},
    {"HighSurrogate", L"Vapor\xD800"},
    {"LowSurrogate", L"\xDC00Liquid"},
};

struct LabelCase {
    const ArrayRow* row;
    std::string name;
    std::wstring text;
    bool isNull;
};

void PrintTo(const LabelCase& tested, std::ostream* out) { *out << tested.name; }

std::vector<LabelCase> labelCases() {
    std::vector<LabelCase> cases;
    for (const ArrayRow& row : writes()) {
        if (row.element != "text") {
            continue;
        }
        for (const Label& label : oddLabels) {
            cases.push_back({&row, row.name() + "_" + label.name, label.text == nullptr ? L"" : label.text,
                             label.text == nullptr});
        }
        cases.push_back({&row, row.name() + "_Long", std::wstring(10000, L'x'), false});
    }
    return cases;
}

class WrittenLabel : public Writes, public ::testing::WithParamInterface<LabelCase> {};

TEST_P(WrittenLabel, IsFoundOrRefused) {
    const ArrayRow* const row = GetParam().row;
    const std::wstring& text = GetParam().text;
    const bool isNull = GetParam().isNull;
    const com::variant values = withFirst(labels(), isNull ? nullptr : &text);
    const std::string without = withoutFault(*row);
    const std::string result = goWriting(*row, values);
    const std::string& outcome = isNull ? row->null : text.empty() ? row->empty : row->odd;
    EXPECT_EQ(result, seenOutcome(outcome, "", nullptr, scripted::narrow(text), without));
    expectWorksAgain(*row, result);
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, WrittenLabel, ::testing::ValuesIn(labelCases()),
                         [](const auto& tested) { return tested.param.name; });

} // namespace

} // namespace faults
