// A healthy package with an ideal mixture, in which a test plants an error, and `quorvane-sheet check` of it.
#pragma once

#include "sheet/checking/check.h"
#include "tests/scripted_package/registered.h"
#include "tests/sheet/cli/ideal_mixture.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace sheet::cli {

/// The scripted package with the ideal mixture's results. What a test plants changes them.
class IdealPackage {
  public:
    IdealPackage();

    scripted::Package package;
    std::function<void(std::string_view name, const ideal::State&, std::vector<double>& values)>
        spoilProperty;
    std::function<void(ideal::Split&)> spoilFlash;
    HRESULT failure = S_OK; ///< of the property that fails
    std::string fails;
    std::function<bool(const ideal::State&)> refuses; ///< a property there
    std::function<bool(const ideal::State&)> refusesFlash;
    bool withSolid = false; ///< half of a liquid is a solid of the same kind
    bool askedWithSolid = false;

  private:
    HRESULT singlePhase(scripted::Call& call);
    HRESULT twoPhase(scripted::Call& call);
    HRESULT equilibrium(scripted::Call& call);
};

class CheckTest : public testing::Test {
  protected:
    static void SetUpTestSuite();
    void SetUp() override;
    void TearDown() override;

    checking::Report check(const checking::Choices& choices = {});

    /// "question: property: verdict" of what does not fit.
    static std::vector<std::string> misses(const checking::Report& report);
    /// "question: property: verdict" of all that was asked.
    static std::vector<std::string> rowsOf(const checking::Report& report);

    std::vector<std::string> found() { return misses(check()); }

    /// The property's values are multiplied.
    void plant(const std::string& property, double factor);

    std::unique_ptr<IdealPackage> ideal_;
};

} // namespace sheet::cli
