// The client's material as the package sees it: the compounds that take part, in the client's order, and the
// values that a calculation reads and writes. Compounds are read once, when the material is set: the standard
// promises that they do not change until it is unset. Of the material only ICapeThermoMaterial and
// ICapeThermoCompounds are used.
#pragma once

#include "com/com_ptr.h"
#include "packages/peng_robinson/catalogue/configuration.h"
#include "packages/peng_robinson/com/values.h"
#include "packages/peng_robinson/eos/tp_flash.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace peng_robinson {

class Material {
  public:
    struct PhaseConditions {
        double T, P;
        std::vector<double> x;
    };

    /// Throws ArgumentError when the object is no material, and CapeError when it has no compounds or ones
    /// that the package has not.
    Material(IDispatch* object, std::shared_ptr<const Configuration> configuration);

    /// The client's object.
    IDispatch* object() const noexcept { return material_.get(); }
    /// The package's compounds and parameters when the material was set.
    const Configuration& configuration() const noexcept { return *configuration_; }

    /// The compounds of the material, in its order.
    const eos::Fluid& fluid() const noexcept { return fluid_; }
    /// Flashes of that fluid at temperature and pressure, whose memory is kept between calculations.
    eos::TPFlash& flash() const noexcept { return *flash_; }

    /// Temperature, pressure and mole fractions of a phase. Throws CapeError when the material has not all of
    /// them.
    PhaseConditions conditionsOf(std::wstring_view phaseLabel) const;

    /// Values that the material must have: CapeError otherwise.
    std::vector<double> overallComposition() const;
    double overallValue(const std::wstring& property, const wchar_t* basis) const;
    double phaseValue(const std::wstring& property, const std::wstring& phaseLabel,
                      const std::wstring& basis) const;

    /// Labels of the phases that a calculation may use; empty when the material cannot tell.
    std::optional<std::vector<std::wstring>> presentPhases() const;

    void setOverallValue(const wchar_t* property, double value) const;
    /// An empty basis means that the property has none.
    void setPhaseValues(const std::wstring& property, const std::wstring& phaseLabel, std::wstring_view basis,
                        const std::vector<double>& values) const;
    void setTwoPhaseValues(const std::wstring& property, const std::vector<std::wstring>& phaseLabels,
                           const std::vector<double>& values) const;
    void setPhasesAtEquilibrium(const std::vector<std::wstring>& phaseLabels) const;

  private:
    void requireRead(HRESULT result, const std::wstring& what) const;
    void requireWritten(HRESULT result, const std::wstring& what) const;

    com::com_ptr<ICapeThermoMaterial> material_;
    std::shared_ptr<const Configuration> configuration_;
    eos::Fluid fluid_;
    std::unique_ptr<eos::TPFlash> flash_;
};

} // namespace peng_robinson
