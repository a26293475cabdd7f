#include "packages/peng_robinson/com/package_manager.h"

#include "com/safe_array.h"
#include "packages/peng_robinson/catalogue/named_packages.h"
#include "packages/peng_robinson/com/definition_folder.h"
#include "packages/peng_robinson/com/identity.h"
#include "packages/peng_robinson/com/values.h"

#include <algorithm>

namespace peng_robinson {
namespace {

constexpr const wchar_t* managerInterface = L"ICapeThermoPropertyPackageManager";
constexpr const wchar_t* utilities = L"ICapeUtilities";

std::vector<std::wstring> packageNames(const DefinitionFolder& folder) {
    std::vector<std::wstring> names;
    for (const NamedPackage& package : namedPackages()) {
        names.push_back(widen(package.name));
    }
    for (const DefinitionFile& file : folder.files) {
        if (std::ranges::none_of(names, [&](const auto& name) { return isSameName(name, file.name); })) {
            names.push_back(file.name);
        }
    }
    return names;
}

com::com_ptr<PropertyPackage> makeDefined(const std::vector<DefinitionFile>& files) {
    const DefinitionFile& file = files.front();
    if (files.size() > 1) {
        throw CapeError{ECapeFailedInitialisationHR,
                        L"The package \"" + file.name + L"\" is defined twice: in " +
                            files[0].path.wstring() + L" and in " + files[1].path.wstring()};
    }
    const std::shared_ptr<const Catalogue> catalogue = file.read();
    const std::wstring description =
        catalogue->description.empty()
            ? L"Peng-Robinson equation of state (1976) with the compounds of " + file.path.wstring()
            : widen(catalogue->description);
    return com::make<PropertyPackage>(Configuration::allOf(catalogue), file.name, description);
}

com::com_ptr<PropertyPackage> makePackage(std::wstring_view name) {
    const DefinitionFolder folder = DefinitionFolder::look();
    if (const auto files = folder.filesOf(name); !files.empty()) {
        return makeDefined(files);
    }
    for (const NamedPackage& package : namedPackages()) {
        if (isSameName(widen(package.name), name)) {
            return com::make<PropertyPackage>(package.configuration(), widen(package.name),
                                              widen(package.description));
        }
    }
    throw ArgumentError{1, L"There is no package \"" + std::wstring{name} +
                               L"\": it is not built in, and there is no such definition in the folder \"" +
                               folder.path.wstring() + L"\"" +
                               (folder.isReadable ? L"" : L", which cannot be read")};
}

} // namespace

PackageManager::PackageManager() : implements{managerName, managerDescription} {}

HRESULT STDMETHODCALLTYPE PackageManager::GetPropertyPackageList(VARIANT* names) noexcept {
    return call(managerInterface, L"GetPropertyPackageList", [&] {
        returnValue(names, com::variant{});
        returnValue(names, com::textArray(packageNames(DefinitionFolder::look())));
    });
}

HRESULT STDMETHODCALLTYPE PackageManager::GetPropertyPackage(BSTR name, IDispatch** package) noexcept {
    return call(managerInterface, L"GetPropertyPackage", [&] {
        requirePointer(package);
        *package = nullptr;
        makePackage(com::viewOf(name))->queryInterface(IID_IDispatch, reinterpret_cast<void**>(package));
    });
}

HRESULT STDMETHODCALLTYPE PackageManager::get_parameters(IDispatch** parameters) noexcept {
    if (parameters != nullptr) {
        *parameters = nullptr;
    }
    return call(utilities, L"parameters", [] {
        throw CapeError{ECapeNoImplHR, L"This manager has no parameters"};
    });
}

// Nothing here needs to know where it runs.
HRESULT STDMETHODCALLTYPE PackageManager::put_simulationContext(IDispatch*) noexcept { return S_OK; }

HRESULT STDMETHODCALLTYPE PackageManager::Initialize() noexcept { return S_OK; }

HRESULT STDMETHODCALLTYPE PackageManager::Terminate() noexcept { return S_OK; }

HRESULT STDMETHODCALLTYPE PackageManager::Edit() noexcept {
    return call(utilities, L"Edit", [] {
        throw CapeError{ECapeNoImplHR, L"This manager has no window; edit the packages that it makes"};
    });
}

} // namespace peng_robinson
