#include "tests/sheet/cli/check_fixture.h"

#include "sheet/cli/add_in.h"
#include "tests/sheet/cli/program.h"

#include <objbase.h>

namespace sheet::cli {

namespace {

constexpr const char* functions[] = {"CapeOpenCompounds",        "CapeOpenPhases",
                                     "CapeOpenCompoundConstant", "CapeOpenTemperatureDependentProperty",
                                     "CapeOpenMixtureProperty",  "CapeOpenTwoPhaseProperty",
                                     "CapeOpenPhaseEquilibrium"};

ideal::State stateOf(ICapeThermoMaterial& material, const std::wstring& label) {
    const com::unique_bstr phase = com::makeBstr(label);
    ideal::State state{label == L"Vapor" ? ideal::Phase::vapor : ideal::Phase::liquid, 0.0, 0.0, {}};
    com::variant composition;
    EXPECT_EQ(material.GetTPFraction(phase.get(), &state.T, &state.P, &composition), S_OK);
    state.x = scripted::realsOf(composition);
    return state;
}

double vaporFraction(ICapeThermoMaterial& material) {
    const com::unique_bstr name = com::makeBstr(L"phaseFraction");
    const com::unique_bstr label = com::makeBstr(L"Vapor");
    const com::unique_bstr basis = com::makeBstr(L"Mole");
    com::variant value;
    EXPECT_EQ(material.GetSinglePhaseProp(name.get(), label.get(), basis.get(), &value), S_OK);
    return scripted::realsOf(value).at(0);
}

} // namespace

IdealPackage::IdealPackage() {
    package->model.singlePhase = {{L"volume", 0, true},
                                  {L"enthalpy", 0, true},
                                  {L"entropy", 0, true},
                                  {L"gibbsEnergy", 0, true},
                                  {L"heatCapacityCp", 0, true},
                                  {L"fugacity", 1, false},
                                  {L"fugacityCoefficient", 1, false}};
    package->model.twoPhase = {{L"kvalue", 1, false}};
    package->hook("CalcSinglePhaseProp", [this](scripted::Call& call) { return singlePhase(call); });
    package->hook("CalcTwoPhaseProp", [this](scripted::Call& call) { return twoPhase(call); });
    package->hook("CalcEquilibrium", [this](scripted::Call& call) { return equilibrium(call); });
}

HRESULT IdealPackage::singlePhase(scripted::Call& call) {
    const std::wstring label{com::viewOf(call.in[1].bstrVal)};
    const ideal::State state = stateOf(*call.material, label);
    for (const std::wstring& property : scripted::textsOf(call.in[0])) {
        const std::string name = scripted::narrow(property);
        if (name == fails) {
            return failure;
        }
        if (refuses && refuses(state)) {
            return static_cast<HRESULT>(ECapeOutOfBoundsHR);
        }
        std::vector<double> values = ideal::property(name, state);
        if (spoilProperty) {
            spoilProperty(name, state, values);
        }
        package->calculates(property, name.find("ugacity") != std::string::npos ? L"" : L"Mole",
                            std::move(values));
    }
    return call.healthy();
}

HRESULT IdealPackage::twoPhase(scripted::Call& call) {
    askedWithSolid = askedWithSolid || std::ranges::count(scripted::textsOf(call.in[1]), L"Solid") > 0;
    const ideal::State vapor = stateOf(*call.material, L"Vapor");
    for (const std::wstring& property : scripted::textsOf(call.in[0])) {
        if (property != L"kvalue") {
            return static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR);
        }
        std::vector<double> values = ideal::kValues(vapor.T, vapor.P);
        if (spoilProperty) {
            spoilProperty("kvalue", vapor, values);
        }
        package->calculates(property, L"", std::move(values));
    }
    return call.healthy();
}

HRESULT IdealPackage::equilibrium(scripted::Call& call) {
    const auto overall = [&](const wchar_t* property, const wchar_t* basis) {
        const com::unique_bstr name = com::makeBstr(property);
        const com::unique_bstr basisName = basis == nullptr ? com::unique_bstr{} : com::makeBstr(basis);
        com::variant value;
        EXPECT_EQ(call.material->GetOverallProp(name.get(), basisName.get(), &value), S_OK) << name.get();
        return scripted::realsOf(value);
    };
    const std::vector<double> z = overall(L"fraction", L"Mole");
    const double P = overall(L"pressure", nullptr).at(0);
    const bool isTP = scripted::textsOf(call.in[0]).at(0) == L"temperature";
    if (isTP && refusesFlash && refusesFlash({{}, overall(L"temperature", nullptr).at(0), P, z})) {
        return static_cast<HRESULT>(ECapeSolvingErrorHR);
    }
    ideal::Split split = isTP ? ideal::flashTP(overall(L"temperature", nullptr).at(0), P, z)
                              : ideal::flashPV(P, vaporFraction(*call.material), z);
    if (spoilFlash) {
        spoilFlash(split);
    }
    scripted::Flash flash{{}, split.T, split.P};
    const auto add = [&](const wchar_t* label, double fraction, const ideal::Composition& x) {
        if (!x.empty()) {
            flash.phases.push_back({label, fraction, L"Mole", x, L"Mole", split.T, split.P});
        }
    };
    add(L"Vapor", split.vaporFraction, split.vapor);
    const double condensed = 1.0 - split.vaporFraction;
    add(L"Liquid", withSolid ? condensed / 2.0 : condensed, split.liquid);
    if (withSolid) {
        add(L"Solid", condensed / 2.0, split.liquid);
    }
    package->flashes(std::move(flash));
    return call.healthy();
}

// The apartment stays for the whole program, and the add-in loaded in it: what its run time opens once would
// be opened for each test.
void CheckTest::SetUpTestSuite() {
    static const HRESULT apartment = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ASSERT_TRUE(SUCCEEDED(apartment));
    ASSERT_EQ(callExport(L"Quorvane.dll", "DllRegisterServer"), S_OK);
}

void CheckTest::SetUp() { ideal_ = std::make_unique<IdealPackage>(); }

void CheckTest::TearDown() { ideal_.reset(); }

checking::Report CheckTest::check(const checking::Choices& choices) {
    AddIn addIn{"check"};
    for (const char* const function : functions) {
        EXPECT_TRUE(addIn.hasFunction(function));
    }
    Component component;
    component.clsid = scripted::packageInProcess;
    component.isPackage = true;
    component.name = "Ideal";
    addIn.attach({"Ideal", "Ideal", std::nullopt}, component);
    return checking::check(
        checking::Package{"Ideal", addIn.offerOf("Ideal"),
                          [&](const formula::EnteredFormula& entered, const formula::Grid& grid) {
                              return addIn.call(entered, grid);
                          }},
        choices);
}

std::vector<std::string> CheckTest::misses(const checking::Report& report) {
    const formula::Matrix table = report.table();
    std::vector<std::string> result;
    for (std::size_t row = 1; row < table.rows; ++row) {
        const auto cell = [&](std::size_t column) { return formula::exactText(table.at(row, column)); };
        if (cell(5).starts_with("DIFFERS") || cell(5).starts_with("FAILS")) {
            result.push_back(cell(0) + ": " + cell(1) + ": " + cell(5));
        }
    }
    EXPECT_EQ(report.agrees(), result.empty());
    return result;
}

std::vector<std::string> CheckTest::rowsOf(const checking::Report& report) {
    const formula::Matrix table = report.table();
    std::vector<std::string> rows;
    for (std::size_t row = 1; row < table.rows; ++row) {
        rows.push_back(formula::exactText(table.at(row, 0)) + ": " + formula::exactText(table.at(row, 1)) +
                       ": " + formula::exactText(table.at(row, 5)));
    }
    return rows;
}

void CheckTest::plant(const std::string& property, double factor) {
    ideal_->spoilProperty = [=](std::string_view name, const ideal::State&, std::vector<double>& values) {
        for (double& value : values) {
            value *= name == property ? factor : 1.0;
        }
    };
}

} // namespace sheet::cli
