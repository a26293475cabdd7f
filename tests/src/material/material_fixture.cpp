#include "tests/src/material/material_fixture.h"

#include "src/foundation/text.h"

#include <cmath>
#include <cstdio>

namespace quorvane {

using scripted::narrow;
using scripted::textOf;

namespace {

com::unique_bstr bstr(const wchar_t* text) {
    return text == nullptr ? com::unique_bstr{} : com::makeBstr(text);
}

} // namespace

TestOwner::TestOwner() {
    const std::pair<CompoundList, com::variant> lists[] = {
        {CompoundList_Ids, scripted::texts({L"A1", L"B2", L"C3"})},
        {CompoundList_Formulae, scripted::texts({L"A", L"B", L"C"})},
        {CompoundList_Names, scripted::texts({L"Alpha", L"Beta", L"Gamma"})},
        {CompoundList_BoilingPoints, scripted::reals({100.0, 200.0, 300.0})},
        {CompoundList_MolecularWeights, scripted::reals({10.0, 20.0, 40.0})},
        {CompoundList_CasNumbers, scripted::texts({L"11-11-1", L"22-22-2", L"33-33-3"})},
    };
    for (const auto& [which, value] : lists) {
        lists_[which] = ArrayVariant::adopt(com::variant::copyOf(value));
    }
    labels_ = ArrayVariant::adopt(scripted::texts({L"Vapor", L"Liquid", L"Solid"}));
    weights({0.01, 0.02, 0.04});
}

void TestOwner::weights(std::vector<double> kilogramsPerMole) {
    weights_ = std::move(kilogramsPerMole);
    inverses_.clear();
    missing_ = false;
    for (const double weight : weights_) {
        inverses_.push_back(1.0 / weight);
        missing_ = missing_ || std::isnan(weight) || weight == missingMarker;
    }
}

std::optional<std::int32_t> TestOwner::phaseIndex(const wchar_t* label) const {
    constexpr const wchar_t* labels[] = {L"Vapor", L"Liquid", L"Solid"};
    for (std::int32_t i = 0; i < 3; ++i) {
        if (equalsNoCase(label, labels[i])) {
            return i;
        }
    }
    return std::nullopt;
}

MaterialTest::MaterialTest() : material{com::make<MaterialObject11>(owner)} {
    material->setComposition({0.2, 0.3, 0.5}, Basis_Mole);
    material->temperature = 350.0;
    material->pressure = 2e5;
}

MaterialTest::~MaterialTest() {
    material->forgetOwner();
    material.reset();
    EXPECT_EQ(com::liveObjects, liveBefore) << "the material was not released";
}

void MaterialTest::requestSinglePhase(const wchar_t* property, const wchar_t* phase) {
    material->mode = CalculationMode::SinglePhase;
    material->property = &lookupProperty(property);
    material->propertyName = foldAscii(property);
    material->phase1 = foldAscii(phase);
    material->result.clear();
}

void MaterialTest::requestTwoPhase(const wchar_t* property, const wchar_t* phase1, const wchar_t* phase2) {
    requestSinglePhase(property, phase1);
    material->mode = CalculationMode::TwoPhase;
    material->phase2 = foldAscii(phase2);
    material->composition2 = {{0.6, 0.2, 0.2}, Basis_Mole};
}

void MaterialTest::requestEquilibrium(EquilibriumSpecification first, EquilibriumSpecification second) {
    material->mode = CalculationMode::Equilibrium;
    material->specifications[0] = std::move(first);
    material->specifications[1] = std::move(second);
    material->resetPhases();
}

std::string MaterialTest::told(HRESULT code) {
    if (code == S_OK) {
        return "ok";
    }
    com::unique_bstr scope, interfaceName, description;
    material->get_scope(scope.put());
    material->get_interfaceName(interfaceName.put());
    material->get_description(description.put());
    char number[16];
    std::snprintf(number, sizeof number, "%08lX ", static_cast<unsigned long>(code));
    return number + narrow(com::viewOf(scope)) + " of " + narrow(com::viewOf(interfaceName)) + ": " +
           narrow(com::viewOf(description));
}

std::string MaterialTest::refused(const char* method, const std::string& description) {
    return std::string{"80040501 MaterialObject11::"} + method + " of ICapeThermoMaterial: " + description;
}

std::string MaterialTest::getOverall(const wchar_t* property, const wchar_t* basis) {
    com::variant values;
    const HRESULT code = material->GetOverallProp(bstr(property).get(), bstr(basis).get(), &values);
    return code == S_OK ? textOf(values) : told(code);
}

std::string MaterialTest::getOverallTPFraction() {
    com::variant T{0.0}, P{0.0}, fractions;
    const HRESULT code = material->GetOverallTPFraction(&T.dblVal, &P.dblVal, &fractions);
    return code == S_OK ? textOf(T) + " " + textOf(P) + " " + textOf(fractions) : told(code);
}

std::string MaterialTest::getPresentPhases() {
    com::variant labels, status;
    const HRESULT code = material->GetPresentPhases(&labels, &status);
    return code == S_OK ? textOf(labels) + " " + textOf(status) : told(code);
}

std::string MaterialTest::getSinglePhase(const wchar_t* property, const wchar_t* phase,
                                         const wchar_t* basis) {
    com::variant values;
    const HRESULT code =
        material->GetSinglePhaseProp(bstr(property).get(), bstr(phase).get(), bstr(basis).get(), &values);
    return code == S_OK ? textOf(values) : told(code);
}

std::string MaterialTest::getTPFraction(const wchar_t* phase) {
    com::variant T{0.0}, P{0.0}, fractions;
    const HRESULT code = material->GetTPFraction(bstr(phase).get(), &T.dblVal, &P.dblVal, &fractions);
    return code == S_OK ? textOf(T) + " " + textOf(P) + " " + textOf(fractions) : told(code);
}

std::string MaterialTest::setOverall(const wchar_t* property, const wchar_t* basis, const VARIANT& values) {
    return told(material->SetOverallProp(bstr(property).get(), bstr(basis).get(), values));
}

std::string MaterialTest::setPresent(const VARIANT& labels) {
    return told(material->SetPresentPhases(labels, com::variant{}));
}

std::string MaterialTest::setSinglePhase(const wchar_t* property, const wchar_t* phase, const wchar_t* basis,
                                         const VARIANT& values) {
    return told(
        material->SetSinglePhaseProp(bstr(property).get(), bstr(phase).get(), bstr(basis).get(), values));
}

std::string MaterialTest::setTwoPhase(const wchar_t* property, const VARIANT& labels, const wchar_t* basis,
                                      const VARIANT& values) {
    return told(material->SetTwoPhaseProp(bstr(property).get(), labels, bstr(basis).get(), values));
}

} // namespace quorvane
