// A material with an owner of the test's own, and the calls that a package makes on it, with plain texts in
// and out. What a call gives is told as one text: the values, or how the call was refused.
#pragma once

#include "com/com_ptr.h"
#include "src/material/material_object.h"
#include "tests/scripted_package/variants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <map>

namespace quorvane {

constexpr auto ecapeUnknown = static_cast<HRESULT>(ECapeUnknownHR);
constexpr auto ecapeNoImpl = static_cast<HRESULT>(ECapeNoImplHR);
constexpr double missingMarker = std::numeric_limits<double>::lowest();

/// Three compounds of 10, 20 and 40 g/mol; the phases Vapor (a vapor), Liquid and Solid.
class TestOwner final : public MaterialOwner {
  public:
    TestOwner();

    void weights(std::vector<double> kilogramsPerMole);

    std::int32_t compoundCount() const noexcept override {
        return static_cast<std::int32_t>(weights_.size());
    }
    const ArrayVariant& compoundList(CompoundList which) const noexcept override { return lists_[which]; }
    const std::vector<double>& molecularWeights() const noexcept override { return weights_; }
    const std::vector<double>& inverseMolecularWeights() const noexcept override { return inverses_; }
    bool missingMolecularWeight() const noexcept override { return missing_; }
    std::int32_t phaseCount() const noexcept override { return 3; }
    const ArrayVariant& phaseLabels() const noexcept override { return labels_; }
    std::optional<std::int32_t> phaseIndex(const wchar_t* label) const override;
    bool isVapor(const wchar_t* label) const override { return phaseIndex(label) == 0; }

  private:
    std::array<ArrayVariant, CompoundList_Count> lists_;
    ArrayVariant labels_;
    std::vector<double> weights_;
    std::vector<double> inverses_;
    bool missing_ = false;
};

class MaterialTest : public testing::Test {
  protected:
    MaterialTest();
    ~MaterialTest() override;

    // The requests that the owner loads.
    void requestSinglePhase(const wchar_t* property, const wchar_t* phase);
    void requestTwoPhase(const wchar_t* property, const wchar_t* phase1, const wchar_t* phase2);
    void requestEquilibrium(EquilibriumSpecification first, EquilibriumSpecification second);

    // The package's calls.
    std::string getOverall(const wchar_t* property, const wchar_t* basis);
    std::string getOverallTPFraction();
    std::string getPresentPhases();
    std::string getSinglePhase(const wchar_t* property, const wchar_t* phase, const wchar_t* basis);
    std::string getTPFraction(const wchar_t* phase);
    std::string setOverall(const wchar_t* property, const wchar_t* basis, const VARIANT& values);
    std::string setPresent(const VARIANT& labels);
    std::string setSinglePhase(const wchar_t* property, const wchar_t* phase, const wchar_t* basis,
                               const VARIANT& values);
    std::string setTwoPhase(const wchar_t* property, const VARIANT& labels, const wchar_t* basis,
                            const VARIANT& values);

    /// What a call tells that was refused with ECapeUnknown and this description.
    static std::string refused(const char* method, const std::string& description);
    /// "ok", or the code and what ECapeUser then says: scope, interface, description.
    std::string told(HRESULT code);

    const long liveBefore = com::liveObjects;
    TestOwner owner;
    com::com_ptr<MaterialObject11> material;
};

} // namespace quorvane
