// InstantPackage: a CAPE-OPEN 1.1 property package that answers at once. Every list and every result is
// prepared when it is made; a calculation reads the conditions from the material, as any package must, and
// writes a prepared array. InstantClass lets CoCreateInstance find it in this process.
#pragma once

#include "bench/counted.h"
#include "com/com_ptr.h"
#include "com/dual.h"
#include "com/implements.h"
#include "com/owned.h"

#include <capeopen_idl.h>
#include <memory>
#include <string>
#include <vector>

namespace bench {

// {5B0B4C5E-6A3D-4E0B-9A57-2B6C7F1D8E90}
inline constexpr CLSID instantPackageClass = {
    0x5B0B4C5E, 0x6A3D, 0x4E0B, {0x9A, 0x57, 0x2B, 0x6C, 0x7F, 0x1D, 0x8E, 0x90}};

class InstantPackage final
    : public com::implements<
          CountedObject, com::RefusedDual<ICapeThermoCompounds>, com::RefusedDual<ICapeThermoPhases>,
          com::RefusedDual<ICapeThermoPropertyRoutine>, com::RefusedDual<ICapeThermoEquilibriumRoutine>,
          com::RefusedDual<ICapeThermoMaterialContext>, IPersistStream> {
  public:
    static constexpr std::size_t blockSize = 4096; ///< that it reads of its state at a time

    /// `state`: what it saves; null: nothing.
    InstantPackage(std::size_t compounds, std::shared_ptr<const std::vector<unsigned char>> state);

    void* findInterface(REFIID iid) noexcept override;

    static constexpr double molecularWeight(std::size_t compound) noexcept {
        return 16.0 + 7.0 * static_cast<double>(compound); // g/mol
    }

    // ICapeThermoCompounds
    HRESULT STDMETHODCALLTYPE GetCompoundConstant(VARIANT, VARIANT, VARIANT*) noexcept override;
    HRESULT STDMETHODCALLTYPE GetCompoundList(VARIANT* ids, VARIANT* formulae, VARIANT* names,
                                              VARIANT* boilingPoints, VARIANT* molecularWeights,
                                              VARIANT* casNumbers) noexcept override;
    HRESULT STDMETHODCALLTYPE GetConstPropList(VARIANT*) noexcept override;
    HRESULT STDMETHODCALLTYPE GetNumCompounds(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPDependentProperty(VARIANT, double, VARIANT, VARIANT*) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPDependentPropList(VARIANT*) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTDependentProperty(VARIANT, double, VARIANT, VARIANT*) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTDependentPropList(VARIANT*) noexcept override;

    // ICapeThermoPhases
    HRESULT STDMETHODCALLTYPE GetNumPhases(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPhaseInfo(BSTR, BSTR, VARIANT*) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPhaseList(VARIANT* labels, VARIANT* states,
                                           VARIANT* keyCompounds) noexcept override;

    // ICapeThermoPropertyRoutine
    HRESULT STDMETHODCALLTYPE CalcAndGetLnPhi(BSTR, double, double, VARIANT, INT, VARIANT*, VARIANT*,
                                              VARIANT*, VARIANT*) noexcept override;
    HRESULT STDMETHODCALLTYPE CalcSinglePhaseProp(VARIANT properties, BSTR label) noexcept override;
    HRESULT STDMETHODCALLTYPE CalcTwoPhaseProp(VARIANT, VARIANT) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckSinglePhasePropSpec(BSTR, BSTR, VARIANT_BOOL*) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckTwoPhasePropSpec(BSTR, VARIANT, VARIANT_BOOL*) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSinglePhasePropList(VARIANT*) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTwoPhasePropList(VARIANT*) noexcept override;

    // ICapeThermoEquilibriumRoutine
    HRESULT STDMETHODCALLTYPE CalcEquilibrium(VARIANT, VARIANT, BSTR) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckEquilibriumSpec(VARIANT, VARIANT, BSTR, VARIANT_BOOL*) noexcept override;

    // ICapeThermoMaterialContext
    HRESULT STDMETHODCALLTYPE SetMaterial(IDispatch* material) noexcept override;
    HRESULT STDMETHODCALLTYPE UnsetMaterial() noexcept override;

    // IPersistStream
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) noexcept override;
    HRESULT STDMETHODCALLTYPE IsDirty() noexcept override;
    HRESULT STDMETHODCALLTYPE Load(IStream* stream) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) noexcept override;

  private:
    com::com_ptr<ICapeThermoMaterial> material_;
    std::shared_ptr<const std::vector<unsigned char>> state_;
    com::unique_bstr mole_;
    com::variant scalar_;
    com::variant perCompound_;
    com::variant perPair_;
    com::variant ids_;
    com::variant boilingPoints_;
    com::variant weights_;
};

/// While one of these lives, CoCreateInstance makes instant packages in this process.
class InstantClass {
  public:
    /// `size`, `state`: as InstantPackage takes them.
    explicit InstantClass(std::size_t compounds,
                          std::shared_ptr<const std::vector<unsigned char>> state = nullptr);
    InstantClass(const InstantClass&) = delete;
    InstantClass& operator=(const InstantClass&) = delete;
    ~InstantClass();

  private:
    DWORD cookie_ = 0;
};

} // namespace bench
