// Calculations of a PropertyPackage: conditions into the material, the call, results out of it on the
// requested basis.
#include "com/safe_array.h"
#include "src/foundation/error_texts.h"
#include "src/foundation/text.h"
#include "src/package/busy.h"
#include "src/package/lent_texts.h"
#include "src/package/property_package.h"

#include <algorithm>
#include <limits>

namespace quorvane {

namespace {

void assignFolded(std::wstring& target, BSTR text) {
    const std::wstring_view view = com::viewOf(text);
    target.resize(view.size());
    std::ranges::transform(view, target.begin(), [](wchar_t c) { return foldAscii(c); });
}

// A cell holds 32767 characters; the message about a property that is not known has 27 of its own.
constexpr std::size_t mostCharactersSought = 32767 - 27;

const std::vector<double>& requireCalculated(const MaterialObject11& material) {
    if (material.result.empty()) {
        throw CWStrException{L"Property was not calculated by property package"};
    }
    return material.result;
}

} // namespace

// From the loading of the material to the end of the package's work on it.
class PropertyPackage::Calculation {
  public:
    explicit Calculation(PropertyPackage& package)
        : busy_{package.calculating_}, unchanged_{package.generation_} {}

    /// To be called after the package has worked, before the material is looked at.
    void requireSamePackage() const { unchanged_.require(); }

  private:
    Busy busy_;
    Unchanged unchanged_;
};

// The caller has counted before it read the rest of its arguments, with which Excel may have run a macro that
// edits the package.
void PropertyPackage::requireOnePerCompound(const std::vector<double>& composition) const {
    if (composition.size() != molecularWeights_.size()) {
        throw CWStrException{changedMeanwhile};
    }
}

void PropertyPackage::prepareMaterial(CalculationMode mode, BSTR propName, BSTR phase1, double T, double P,
                                      const std::vector<double>& composition, bool compositionIsMass,
                                      const PropertyInfo& info) {
    ensureMaterial();
    requireOnePerCompound(composition);
    material_->setComposition(composition, basisOf(compositionIsMass));
    material_->temperature = T;
    material_->pressure = P;
    material_->property = &info;
    assignFolded(material_->propertyName, propName);
    assignFolded(material_->phase1, phase1);
    material_->mode = mode;
    material_->result.clear();
    material_->resultBasis = Basis_Undefined;
}

const std::vector<double>&
PropertyPackage::calcSinglePhaseProperty(BSTR propName, BSTR phaseLabel, double T, double P,
                                         const std::vector<double>& composition, bool compositionIsMass,
                                         const PropertyInfo& info, bool resultIsMass) {
    {
        const Calculation calculation{*this};
        prepareMaterial(CalculationMode::SinglePhase, propName, phaseLabel, T, P, composition,
                        compositionIsMass, info);
        const LentTexts names{propertyNameArray1_, {propName}};
        const HRESULT code = propertyRoutine_->CalcSinglePhaseProp(names.value(), phaseLabel);
        calculation.requireSamePackage();
        requireSuccess(code, propertyRoutine_.get(), {});
    }
    const std::vector<double>& result = requireCalculated(*material_);
    if (material_->resultBasis == Basis_Undefined || info.moleConversion == 0) {
        return result;
    }
    const std::int32_t factor =
        basisExponent(material_->resultBasis, basisOf(resultIsMass)) * info.moleConversion;
    if (factor == 0) {
        return result;
    }
    if (info.derivType == Derivative_MoleNumber && info.extensive) {
        return result;
    }
    if (info.derivType == Derivative_MolFraction || info.derivType == Derivative_MoleNumber) {
        return convertCompositionDerivatives(propName, phaseLabel, T, P, composition, compositionIsMass, info,
                                             resultIsMass, factor);
    }
    const CompositionTotals& amount = material_->totals();
    convertedValue_.assign(1, result.front() * (factor < 0 ? amount.molesPerMass() : amount.massPerMole()));
    return convertedValue_;
}

// The property per kilogram is b/M (or that per mole M b), and M itself depends on the composition: hence the
// terms with the property itself, which takes a second call into the package.
const std::vector<double>& PropertyPackage::convertCompositionDerivatives(
    BSTR propName, BSTR phaseLabel, double T, double P, const std::vector<double>& composition,
    bool compositionIsMass, const PropertyInfo& info, bool resultIsMass, std::int32_t factor) {
    const CompositionTotals amount = material_->totals();
    const double M = amount.massPerMole();
    const double g = amount.molesPerMass();
    convertedDerivatives_ = material_->result;
    // Appended to what an earlier conversion left, so that a second one on the same package fails to find its
    // base property. Kept: workbooks in use show that message. It grows with every recalculation, up to what
    // a cell can show.
    const std::wstring_view name = com::viewOf(propName);
    const std::wstring_view baseProperty = name.substr(0, name.find(L'.'));
    if (scratchText_.size() + baseProperty.size() <= mostCharactersSought) {
        scratchText_.append(baseProperty);
    }
    const PropertyInfo& baseInfo = lookupProperty(scratchText_.c_str());
    const com::unique_bstr baseName = com::makeBstr(scratchText_);
    const double b = calcSinglePhaseProperty(baseName.get(), phaseLabel, T, P, composition, compositionIsMass,
                                             baseInfo, resultIsMass)
                         .front();
    std::vector<double>& d = convertedDerivatives_;
    const std::vector<double>& MW = molecularWeights_;
    const std::size_t count = std::min(d.size(), MW.size());
    if (info.derivType == Derivative_MolFraction) {
        for (std::size_t i = 0; i < count; ++i) {
            d[i] = factor > 0 ? M * d[i] + MW[i] * b : (d[i] - g * b * MW[i]) * g;
        }
        return d;
    }
    const std::vector<double>& x = material_->convertComposition(material_->composition().values,
                                                                 material_->composition().basis, Basis_Mole);
    double s = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        s += x[i] * d[i];
    }
    for (std::size_t i = 0; i < count; ++i) {
        d[i] = factor > 0 ? (d[i] - s) * M + (MW[i] - M) * b : (d[i] - ((MW[i] - M) * b * g + s)) * g;
    }
    return d;
}

const std::vector<double>& PropertyPackage::calcTwoPhaseProperty(
    BSTR propName, BSTR phase1, BSTR phase2, double T, double P, const std::vector<double>& composition,
    const std::vector<double>& phase2Composition, bool compositionIsMass, const PropertyInfo& info) {
    const Calculation calculation{*this};
    prepareMaterial(CalculationMode::TwoPhase, propName, phase1, T, P, composition, compositionIsMass, info);
    requireOnePerCompound(phase2Composition);
    assignFolded(material_->phase2, phase2);
    material_->composition2.values = phase2Composition;
    material_->composition2.basis = basisOf(compositionIsMass);
    const LentTexts names{propertyNameArray1_, {propName}};
    const LentTexts labels{propertyNameArray2_, {phase1, phase2}};
    const HRESULT code = propertyRoutine_->CalcTwoPhaseProp(names.value(), labels.value());
    calculation.requireSamePackage();
    requireSuccess(code, propertyRoutine_.get(), {});
    return requireCalculated(*material_);
}

// Stores a condition in the material and gives the array of property, basis and phase that names it to the
// package.
ArrayVariant PropertyPackage::specification(const EquilibriumCondition& condition,
                                            EquilibriumSpecification& stored, bool isMass,
                                            bool& phaseFractionGiven) {
    const std::wstring name{com::viewOf(condition.name)};
    const PropertyInfo& info = lookupProperty(name.c_str());
    stored.value = condition.value;
    stored.basis = basisOf(isMass);
    assignFolded(stored.name, condition.name);
    if (info.propType == PropType_VaporFraction) {
        if (vaporPhaseIndex_ < 0) {
            throw CWStrException{L"Cannot use vapor fraction as flash condition; no vapor phase defined"};
        }
        phaseFractionGiven = true;
        const com::array_lock<BSTR> labels{phaseLabels_.value.parray};
        const BSTR vaporLabel = labels.elements()[static_cast<std::size_t>(vaporPhaseIndex_)];
        const std::wstring texts[] = {L"phaseFraction", isMass ? L"Mass" : L"Mole",
                                      std::wstring{com::viewOf(vaporLabel)}};
        return stringVectorToArray(texts);
    }
    if (info.propType == PropType_Temperature) {
        material_->temperature = condition.value;
        stored.basis = Basis_Undefined;
    } else if (info.propType == PropType_Pressure) {
        material_->pressure = condition.value;
        stored.basis = Basis_Undefined;
    } else if (!info.overall) {
        throw WStrException{joined(L"Unsupported flash condition \"", name, L"\"")};
    }
    const std::wstring texts[] = {name, L"", L"overall"};
    return stringVectorToArray(texts);
}

const std::vector<PhaseResult>& PropertyPackage::calcEquilibrium(const EquilibriumCondition& condition1,
                                                                 const EquilibriumCondition& condition2,
                                                                 BSTR solutionType,
                                                                 const std::vector<double>& composition,
                                                                 bool isMass, double& outT, double& outP) {
    const Calculation calculation{*this};
    ensureMaterial();
    requireOnePerCompound(composition);
    material_->setComposition(composition, basisOf(isMass));
    material_->temperature = std::numeric_limits<double>::quiet_NaN();
    material_->pressure = std::numeric_limits<double>::quiet_NaN();
    material_->mode = CalculationMode::Equilibrium;
    material_->resetPhases();
    bool phaseFractionGiven = false;
    // Locked below for the reason that LentTexts has.
    const ArrayVariant first =
        specification(condition1, material_->specifications[0], isMass, phaseFractionGiven);
    const ArrayVariant second =
        specification(condition2, material_->specifications[1], isMass, phaseFractionGiven);
    const bool useSolutionType = phaseFractionGiven && !com::viewOf(solutionType).empty();
    const com::unique_bstr unspecified = useSolutionType ? com::unique_bstr{} : com::makeBstr(L"Unspecified");
    const com::array_lock<BSTR> firstLent{first.value.parray};
    const com::array_lock<BSTR> secondLent{second.value.parray};
    const HRESULT code = equilibriumRoutine_->CalcEquilibrium(
        first.value, second.value, useSolutionType ? solutionType : unspecified.get());
    calculation.requireSamePackage();
    requireSuccess(code, equilibriumRoutine_.get(), {});
    convertPhaseResults(isMass);
    outT = material_->temperature;
    outP = material_->pressure;
    return material_->phases;
}

void PropertyPackage::convertPhaseResults(bool isMass) {
    const Basis requested = basisOf(isMass);
    std::size_t asRequested = 0;
    std::size_t otherwise = 0;
    for (PhaseResult& phase : material_->phases) {
        if (!phase.present) {
            continue;
        }
        ++(phase.fractionBasis == requested ? asRequested : otherwise);
        if (phase.composition.basis != requested) {
            phase.composition.values =
                material_->convertComposition(phase.composition.values, phase.composition.basis, requested);
            phase.composition.basis = requested;
        }
    }
    if (otherwise == 0) {
        return;
    }
    if (asRequested != 0) {
        throw CWStrException{L"Property package set phase fraction in inconsistent bases"};
    }
    double sum = 0.0;
    for (PhaseResult& phase : material_->phases) {
        if (phase.present) {
            // Refuses a fraction that was never reported, which has no basis.
            static_cast<void>(basisExponent(phase.fractionBasis, requested));
            const CompositionTotals amount = material_->totalsOf(phase.composition);
            phase.fraction *= isMass ? amount.massPerMole() : amount.molesPerMass();
            phase.fractionBasis = requested;
            sum += phase.fraction;
        }
    }
    if (sum == 0.0) {
        throw CWStrException{L"Unable to perform basis conversion, phase fractions sum to zero"};
    }
    for (PhaseResult& phase : material_->phases) {
        if (phase.present) {
            phase.fraction /= sum;
        }
    }
}

} // namespace quorvane
