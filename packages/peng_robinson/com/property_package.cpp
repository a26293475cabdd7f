// ICapeUtilities and ICapeThermoMaterialContext.
#include "packages/peng_robinson/com/property_package.h"

#include "packages/peng_robinson/com/identity.h"

namespace peng_robinson {
namespace {

constexpr const wchar_t* utilities = L"ICapeUtilities";
constexpr const wchar_t* materialContext = L"ICapeThermoMaterialContext";

} // namespace

PropertyPackage::PropertyPackage()
    : PropertyPackage{Configuration::allOf(builtInCatalogue()), packageName, packageDescription} {}

PropertyPackage::PropertyPackage(Configuration initial, std::wstring name, std::wstring description)
    : implements{std::move(name), std::move(description)},
      initial_{std::make_shared<const Configuration>(std::move(initial))}, configuration_{initial_} {}

void* PropertyPackage::findInterface(REFIID iid) noexcept {
    return iid == IID_IPersist ? static_cast<IPersist*>(this) : implements::findInterface(iid);
}

void PropertyPackage::configure(Selection selection) {
    auto chosen = std::make_shared<const Configuration>(initial_->sharedCatalogue(), std::move(selection));
    std::shared_ptr<const Material> renewed;
    if (const auto old = material_) {
        try {
            renewed = std::make_shared<const Material>(old->object(), chosen);
        } catch (const CapeError&) {
            // The client learns it from the next calculation: no material is set.
        }
    }
    configuration_ = std::move(chosen);
    material_ = std::move(renewed);
}

std::shared_ptr<const Material> PropertyPackage::requireMaterial() const {
    if (material_ == nullptr) {
        throw CapeError{ECapeBadInvOrderHR, L"No material is set; call SetMaterial first"};
    }
    return material_;
}

HRESULT STDMETHODCALLTYPE PropertyPackage::get_parameters(IDispatch** parameters) noexcept {
    if (parameters != nullptr) {
        *parameters = nullptr;
    }
    return call(utilities, L"parameters", [] {
        throw CapeError{ECapeNoImplHR, L"This package has no parameters"};
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::put_simulationContext(IDispatch* context) noexcept {
    return call(utilities, L"simulationContext",
                [&] { simulationContext_ = com::com_ptr<IDispatch>::share(context); });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::Initialize() noexcept {
    return call(utilities, L"Initialize", [] {});
}

HRESULT STDMETHODCALLTYPE PropertyPackage::Terminate() noexcept {
    return call(utilities, L"Terminate", [&] {
        material_.reset();
        simulationContext_.reset();
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::SetMaterial(IDispatch* material) noexcept {
    return call(materialContext, L"SetMaterial", [&] {
        material_.reset();
        if (material == nullptr) {
            throw ArgumentError{1, L"The material object is missing"};
        }
        material_ = std::make_shared<const Material>(material, configuration_);
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::UnsetMaterial() noexcept {
    return call(materialContext, L"UnsetMaterial", [&] { material_.reset(); });
}

} // namespace peng_robinson
