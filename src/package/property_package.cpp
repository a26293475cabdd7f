// Binding, life cycle and material of a PropertyPackage.
#include "src/package/property_package.h"

#include "com/platform.h"
#include "src/foundation/error_texts.h"
#include "src/foundation/life_cycle.h"
#include "src/foundation/text.h"
#include "src/package/busy.h"

#include <utility>

namespace quorvane {

namespace {

void requireCreated(HRESULT code, const wchar_t* context) {
    if (FAILED(code)) {
        throw WStrException{joined(context, systemErrorText(code))};
    }
}

// A class that succeeds without an object counts as one that has not the interface.
template <typename Interface>
com::com_ptr<Interface> created(REFCLSID clsid, const wchar_t* context) {
    com::com_ptr<Interface> object;
    const HRESULT code = CoCreateInstance(clsid, nullptr, CLSCTX_ALL, __uuidof(Interface), object.putVoid());
    requireCreated(SUCCEEDED(code) && !object ? E_NOINTERFACE : code, context);
    return object;
}

com::com_ptr<IUnknown> packageOfManager(ICapeThermoPropertyPackageManager* manager,
                                        const std::wstring& packageName) {
    initializeObject(manager);
    const com::unique_bstr name = com::makeBstr(packageName);
    com::com_ptr<IDispatch> package;
    const HRESULT code = manager->GetPropertyPackage(name.get(), package.put());
    // The text is asked for before Terminate, after which the manager need not answer any more.
    const std::wstring failure = FAILED(code) ? capeErrorText(manager, code) : std::wstring{};
    terminateObject(manager);
    if (FAILED(code)) {
        static_cast<void>(package.release()); // must be null then; a careless manager may leave anything
        throw WStrException{joined(L"Failed to create property package: ", failure)};
    }
    return package;
}

void restoreState(IUnknown* package, IStream* savedState) {
    const auto stream = com::queryFor<IPersistStream>(package);
    const auto streamInit =
        stream ? com::com_ptr<IPersistStreamInit>{} : com::queryFor<IPersistStreamInit>(package);
    if (savedState == nullptr) {
        if (streamInit) {
            // A package that cannot start afresh says so when it is initialised, which is next.
            static_cast<void>(streamInit->InitNew());
        }
        return;
    }
    HRESULT code = S_OK;
    if (stream) {
        code = stream->Load(savedState);
    } else if (streamInit) {
        code = streamInit->Load(savedState);
    }
    requireCreated(code, L"Failed to restore package content: ");
}

template <typename Interface>
com::com_ptr<Interface> require(IUnknown* package, const wchar_t* message) {
    auto found = com::queryFor<Interface>(package);
    if (!found) {
        throw CWStrException{message};
    }
    return found;
}

} // namespace

PropertyPackage::PropertyPackage(std::wstring managerName, const GUID& managerGUID,
                                 CAPEOPENPackageManagerType managerType, std::wstring packageName,
                                 IStream* savedState)
    : managerGUID_{managerGUID}, managerType_{static_cast<std::int32_t>(managerType)},
      packageName_{std::move(packageName)}, managerName_{std::move(managerName)} {
    propertyNameArray2_.createVector(2, VT_BSTR);
    propertyNameArray1_.createVector(1, VT_BSTR);
    bind(create().get(), savedState);
}

PropertyPackage::~PropertyPackage() {
    terminateObject(compounds_.get());
    retireMaterial();
}

com::com_ptr<IUnknown> PropertyPackage::create() const {
    switch (managerType_) {
    case StandAlonePackage11:
        return created<IDispatch>(managerGUID_, L"Failed to create property package: ");
    case PropertyPackageManager11:
        return packageOfManager(created<ICapeThermoPropertyPackageManager>(
                                    managerGUID_, L"Failed to create property package manager: ")
                                    .get(),
                                packageName_);
    default:
        throw CWStrException{L"Unknown CAPE-OPEN package manager type"};
    }
}

void PropertyPackage::bind(IUnknown* package, IStream* savedState) {
    restoreState(package, savedState);
    initializeObject(package);
    try {
        // The doubled m is how users have always been shown this message.
        compounds_ =
            require<ICapeThermoCompounds>(package, L"Package does not implement ICapeThermoCommpounds");
        phases_ = require<ICapeThermoPhases>(package, L"Package does not implement ICapeThermoPhases");
        propertyRoutine_ = require<ICapeThermoPropertyRoutine>(
            package, L"Package does not implement ICapeThermoPropertyRoutine");
        equilibriumRoutine_ = require<ICapeThermoEquilibriumRoutine>(
            package, L"Package does not implement ICapeThermoEquilibriumRoutine");
    } catch (...) {
        terminateObject(package);
        throw;
    }
}

HRESULT PropertyPackage::saveState(IStream* stream) const {
    constexpr BOOL keepDirty = FALSE;
    if (const auto persistent = compounds_.tryAs<IPersistStream>()) {
        return persistent->Save(stream, keepDirty);
    }
    if (const auto persistent = compounds_.tryAs<IPersistStreamInit>()) {
        return persistent->Save(stream, keepDirty);
    }
    return S_FALSE;
}

void PropertyPackage::retireMaterial() noexcept {
    if (material_) {
        // The package may keep its reference for as long as it likes.
        material_->forgetOwner();
    }
}

void PropertyPackage::reset() noexcept {
    ++generation_;
    retireMaterial();
    // What nobody looked at may hold objects of the package, which call back when they are released: they are
    // when all is forgotten.
    const auto former = std::exchange(compoundData_, {});
    for (NameList* list : {&constantNames_, &temperatureDependentNames_, &singlePhaseNames_, &twoPhaseNames_,
                           &conditionNames_}) {
        list->names.release();
    }
    phaseLabels_.release();
    molecularWeights_.clear();
    inverseMolecularWeights_.clear();
    missingMolecularWeight_ = false;
    compoundIndex_.clear();
    phaseIndex_.clear();
    phaseStates_.clear();
    vaporPhaseIndex_ = -1;
}

void PropertyPackage::ensureMaterial() {
    if (hasMaterial()) {
        return;
    }
    const Unchanged unchanged{generation_};
    loadCompounds();
    loadPhases();
    const auto context = compounds_.tryAs<ICapeThermoMaterialContext>();
    if (!context) {
        throw CWStrException{L"ICapeThermoMaterialContext not exposed by property package"};
    }
    // A package that starts a calculation while it takes the material would have two of them, of which it may
    // keep the one that is let go.
    const Busy offer{offering_};
    unchanged.require();
    if (hasMaterial()) {
        return; // the package started a calculation when it was asked for what stands above
    }
    auto material = com::held_ptr<MaterialObject11>::make(static_cast<const MaterialOwner&>(*this));
    const HRESULT code = context->SetMaterial(static_cast<ICapeThermoMaterial*>(material.get()));
    if (FAILED(code)) {
        material->forgetOwner();
        requireSuccess(code, context.get(), L"Failed to set active material object on property package: ");
    }
    material_ = std::move(material);
    if (!unchanged.holds()) {
        retireMaterial();
        unchanged.require();
    }
}

bool PropertyPackage::isVapor(const wchar_t* label) const {
    const auto index = phaseIndex_.find(label);
    return index && phaseType(*index) == VaporPhase;
}

} // namespace quorvane
