#include "sheet/cli/components.h"

#include "com/owned.h"

#include <algorithm>
#include <array>

namespace sheet::cli {

namespace {

// The standard's component categories.
constexpr const wchar_t* packageCategory = L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}";
constexpr const wchar_t* managerCategory = L"{CF51E383-0110-4ED8-ACB7-B50CFDE6908E}";

com::unique_registry_key openKey(HKEY parent, const std::wstring& path) {
    com::unique_registry_key key;
    if (RegOpenKeyExW(parent, path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) {
        static_cast<void>(key.release());
    }
    return key;
}

// Empty when the value is missing, or no text.
std::string readText(const com::unique_registry_key& key, const wchar_t* name) {
    DWORD size = 0;
    if (!key ||
        RegGetValueW(key.get(), nullptr, name, RRF_RT_REG_SZ, nullptr, nullptr, &size) != ERROR_SUCCESS) {
        return {};
    }
    std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
    size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (RegGetValueW(key.get(), nullptr, name, RRF_RT_REG_SZ, nullptr, text.data(), &size) != ERROR_SUCCESS) {
        return {};
    }
    text.resize(std::min(text.find(L'\0'), text.size()));
    return toUtf8(text);
}

Component describe(const CLSID& clsid, const std::wstring& clsidText) {
    const com::unique_registry_key key = openKey(HKEY_CLASSES_ROOT, L"CLSID\\" + clsidText);
    Component component;
    component.clsid = clsid;
    if (!key) {
        return component;
    }
    const com::unique_registry_key categories = openKey(key.get(), L"Implemented Categories");
    if (categories) {
        component.isPackage = static_cast<bool>(openKey(categories.get(), packageCategory));
        component.isManager = static_cast<bool>(openKey(categories.get(), managerCategory));
    }
    component.progId = readText(openKey(key.get(), L"ProgID"), nullptr);
    const com::unique_registry_key description = openKey(key.get(), L"CapeDescription");
    component.name = readText(description, L"Name");
    component.version = readText(description, L"ComponentVersion");
    component.vendor = readText(description, L"VendorURL");
    if (component.name.empty()) {
        component.name = readText(key, nullptr);
    }
    if (component.name.empty()) {
        component.name = component.progId;
    }
    return component;
}

} // namespace

std::vector<Component> installedComponents() {
    std::vector<Component> result;
    const com::unique_registry_key classes = openKey(HKEY_CLASSES_ROOT, L"CLSID");
    std::array<wchar_t, 64> name{}; // a class identifier has 38 characters
    for (DWORD index = 0; classes; ++index) {
        auto length = static_cast<DWORD>(name.size());
        const LSTATUS status =
            RegEnumKeyExW(classes.get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_MORE_DATA) {
            continue; // no class identifier
        }
        if (status != ERROR_SUCCESS) {
            break;
        }
        CLSID clsid{};
        if (FAILED(CLSIDFromString(name.data(), &clsid))) {
            continue;
        }
        Component component = describe(clsid, std::wstring{name.data(), length});
        if (component.isPackage || component.isManager) {
            result.push_back(std::move(component));
        }
    }
    std::ranges::stable_sort(result, {}, &Component::name);
    return result;
}

std::optional<Component> findComponent(const std::string& progId) {
    CLSID clsid{};
    if (FAILED(CLSIDFromProgID(toWide(progId).c_str(), &clsid))) {
        return std::nullopt;
    }
    std::array<wchar_t, 64> text{};
    StringFromGUID2(clsid, text.data(), static_cast<int>(text.size()));
    Component component = describe(clsid, text.data());
    component.progId = progId;
    if (component.name.empty()) {
        component.name = progId;
    }
    return component;
}

} // namespace sheet::cli
