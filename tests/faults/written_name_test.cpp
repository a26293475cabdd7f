// The names and bases that a package hands over with its results are not there, endless or no valid texts:
// the material refuses or ignores what they stand for, and the package works the next time.
#include "tests/faults/stage.h"

#include <algorithm>
#include <array>

namespace faults {

namespace {

using scripted::reals;
using Material = ICapeThermoMaterial;
using Texts = std::array<com::unique_bstr, 3>; ///< property, phase, basis

constexpr const char* argumentNames[] = {"property", "phase", "basis"};

// An honest write, which changes nothing of the result.
struct Setter {
    const char* call;
    const char* name;
    const char* way;
    const wchar_t* texts[3];
    HRESULT (*write)(Material&, const Texts&);
};

const Setter setters[] = {
    {"CalcSinglePhaseProp",
     "SetSinglePhaseProp",
     "CapeOpenMixtureProperty",
     {L"enthalpy", L"Liquid", L"Mole"},
     [](Material& material, const Texts& texts) {
         return material.SetSinglePhaseProp(texts[0].get(), texts[1].get(), texts[2].get(),
                                            reals({22000.3501}));
     }},
    {"CalcTwoPhaseProp",
     "SetTwoPhaseProp",
     "CapeOpenTwoPhaseProperty",
     {L"kvalue", nullptr, nullptr},
     [](Material& material, const Texts& texts) {
         return material.SetTwoPhaseProp(texts[0].get(), scripted::texts({L"Vapor", L"Liquid"}),
                                         texts[2].get(), reals({21210.3501, 21220.3501, 21230.3501}));
     }},
    {"CalcEquilibrium",
     "SetSinglePhaseProp",
     "CapeOpenPhaseEquilibrium",
     {L"fraction", L"Vapor", L"Mole"},
     [](Material& material, const Texts& texts) {
         return material.SetSinglePhaseProp(texts[0].get(), texts[1].get(), texts[2].get(),
                                            reals({0.34375, 0.25, 0.40625}));
     }},
    {"CalcEquilibrium",
     "SetOverallProp",
     "CapeOpenPhaseEquilibrium",
     {L"temperature", nullptr, nullptr},
     [](Material& material, const Texts& texts) {
         return material.SetOverallProp(texts[0].get(), texts[2].get(), reals({300.0}));
     }},
};

const Setter& setterOf(const NameRow& row) {
    return *std::ranges::find_if(
        setters, [&](const Setter& setter) { return setter.call == row.call && setter.name == row.setter; });
}

struct OddText {
    const char* name;
    std::optional<std::wstring> text;
};

const std::vector<OddText>& oddTexts() {
    static const std::vector<OddText> all = {
        {"Null", std::nullopt},
        {"Empty", L""},
        {"Blank", L" "},
        {"Long", std::wstring(10000, L'x')},
        {"HighSurrogate", L"a\xD800z"},
        {"LowSurrogate", L"a\xDC00z"},
        {"SwappedSurrogates", L"\xDC00\xD800"},
    };
    return all;
}

struct Case {
    const NameRow* row;
    const OddText* odd;
};

std::string nameOf(const Case& tested) {
    return tested.row->call + tested.row->setter + inNames(tested.row->argument) + "_" + tested.odd->name;
}

void PrintTo(const Case& tested, std::ostream* out) { *out << nameOf(tested); }

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const NameRow& row : writtenNames()) {
        for (const OddText& odd : oddTexts()) {
            cases.push_back({&row, &odd});
        }
    }
    return cases;
}

class WrittenName : public Stage, public ::testing::WithParamInterface<Case> {};

TEST_P(WrittenName, IsKnownOrRefused) {
    const NameRow* const row = GetParam().row;
    const std::optional<std::wstring>& odd = GetParam().odd->text;
    const Setter* const setter = &setterOf(*row);
    Texts texts;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (row->argument == argumentNames[i]) {
            texts[i] = odd ? com::makeBstr(*odd) : com::unique_bstr{};
        } else if (setter->texts[i] != nullptr) {
            texts[i] = com::makeBstr(setter->texts[i]);
        }
    }
    const std::string result = go(setter->way, [&] {
        package->hook(row->call, [&](scripted::Call& call) -> HRESULT {
            if (row->call == "CalcEquilibrium") {
                static_cast<void>(call.healthy());
            }
            if (FAILED(setter->write(*call.material, texts))) {
                throw refusalOf(call.material);
            }
            return S_OK;
        });
    });
    std::string outcome = !odd ? row->null : odd->empty() ? row->empty : row->odd;
    if (const auto at = outcome.find("<text>"); at != std::string::npos) {
        outcome.replace(at, 6, scripted::narrow(*odd));
    }
    EXPECT_EQ(result, outcome == "-" ? healthy(setter->way) : "! " + outcome);
    package->recovers(row->call);
    expectHealthyAgain(setter->way, result);
}

INSTANTIATE_TEST_SUITE_P(FaultMatrix, WrittenName, ::testing::ValuesIn(allCases()),
                         [](const auto& tested) { return nameOf(tested.param); });

} // namespace

} // namespace faults
