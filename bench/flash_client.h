// FlashClient: a flash table with properties of the phases, made by calling a package directly: the same
// calls that the add-in makes on it, and as little as possible besides. FlashMaterial is what such a package
// works on.
#pragma once

#include "com/com_object.h"
#include "com/com_ptr.h"
#include "com/dual.h"
#include "com/implements.h"
#include "com/owned.h"

#include <capeopen_idl.h>
#include <initializer_list>
#include <span>
#include <vector>

namespace bench {

class FlashMaterial final : public com::implements<com::COMObject, com::RefusedDual<ICapeThermoMaterial>,
                                                   com::RefusedDual<ICapeThermoCompounds>> {
  public:
    static constexpr std::size_t phaseCount = 2; ///< Vapor, Liquid

    struct Phase {
        bool present = false;
        double temperature = 0.0; ///< K
        double pressure = 0.0;    ///< Pa
        double fraction = 0.0;
        std::vector<double> composition;
    };

    explicit FlashMaterial(std::vector<com::variant> compoundLists) : lists_{std::move(compoundLists)} {}

    double temperature = 0.0; ///< K
    double pressure = 0.0;    ///< Pa
    std::vector<double> fractions;
    Phase phases[phaseCount];
    double property = 0.0; ///< the last one that the package has written

    void* findInterface(REFIID iid) noexcept override {
        return implements::findInterface(iid == IID_IDispatch ? __uuidof(ICapeThermoMaterial) : iid);
    }

    // ICapeThermoMaterial
    HRESULT STDMETHODCALLTYPE GetOverallProp(BSTR name, BSTR, VARIANT* results) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTPFraction(BSTR label, double* T, double* P,
                                            VARIANT* composition) noexcept override;
    HRESULT STDMETHODCALLTYPE SetPresentPhases(VARIANT labels, VARIANT) noexcept override;
    HRESULT STDMETHODCALLTYPE SetSinglePhaseProp(BSTR name, BSTR label, BSTR,
                                                 VARIANT given) noexcept override;
    HRESULT STDMETHODCALLTYPE ClearAllProps() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CopyFromMaterial(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateMaterial(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetOverallTPFraction(double*, double*, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetPresentPhases(VARIANT*, VARIANT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSinglePhaseProp(BSTR, BSTR, BSTR, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetTwoPhaseProp(BSTR, VARIANT, BSTR, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetOverallProp(BSTR, BSTR, VARIANT) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetTwoPhaseProp(BSTR, VARIANT, BSTR, VARIANT) noexcept override {
        return E_NOTIMPL;
    }

    // ICapeThermoCompounds: the package asks once, for the lists that it has given itself.
    HRESULT STDMETHODCALLTYPE GetCompoundList(VARIANT* ids, VARIANT* formulae, VARIANT* names,
                                              VARIANT* boilingPoints, VARIANT* molecularWeights,
                                              VARIANT* casNumbers) noexcept override;
    HRESULT STDMETHODCALLTYPE GetCompoundConstant(VARIANT, VARIANT, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetConstPropList(VARIANT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetNumCompounds(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetPDependentProperty(VARIANT, double, VARIANT, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetPDependentPropList(VARIANT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTDependentProperty(VARIANT, double, VARIANT, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetTDependentPropList(VARIANT*) noexcept override { return E_NOTIMPL; }

  private:
    Phase& phaseOf(BSTR label) noexcept;

    std::vector<com::variant> lists_;
};

class FlashClient {
  public:
    /// `properties`: scalar ones. The application is borrowed and must outlive the client.
    FlashClient(IDispatch* application, const com::com_ptr<IDispatch>& package,
                std::initializer_list<const wchar_t*> properties);
    ~FlashClient();
    FlashClient(const FlashClient&) = delete;
    FlashClient& operator=(const FlashClient&) = delete;

    std::size_t compounds() const noexcept { return material_->fractions.size(); }

    /// Numbers in columns, one for each phase: temperature, pressure, fraction, composition, properties.
    /// `amounts` is scaled to the sum 1.
    void flash(double T, double P, std::span<const double> amounts, VARIANT* result);

  private:
    IDispatch* application_;
    com::com_ptr<ICapeUtilities> utilities_;
    com::com_ptr<ICapeThermoPropertyRoutine> properties_;
    com::com_ptr<ICapeThermoEquilibriumRoutine> equilibrium_;
    com::com_ptr<FlashMaterial> material_;
    std::vector<com::variant> names_; ///< of the properties, each as an array
    com::variant conditions_[2];
    com::unique_bstr solutionType_ = com::makeBstr(L"Unspecified");
    com::unique_bstr labels_[FlashMaterial::phaseCount] = {com::makeBstr(L"Vapor"), com::makeBstr(L"Liquid")};
};

} // namespace bench
