#include "packages/peng_robinson/com/registration.h"

#include "com/guarded.h"
#include "com/owned.h"
#include "com/type_library.h"
#include "packages/peng_robinson/com/identity.h"
#include <peng_robinson_version.h>

#include <array>
#include <string>
#include <vector>

namespace peng_robinson {
namespace {

// Registration for one user needs no administrator.
constexpr const wchar_t* classes = L"Software\\Classes\\";

// CAPE-OPEN component categories: every component, and those of version 1.1 that make packages.
constexpr const wchar_t* anyComponent = L"{678C09A1-7D66-11D2-A67D-00105A42887F}";
constexpr const wchar_t* packageManagers = L"{CF51E383-0110-4ED8-ACB7-B50CFDE6908E}";
constexpr const wchar_t* standAlonePackages = L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}";

struct Class {
    GUID clsid;
    const wchar_t *progId, *versionIndependentProgId;
    const wchar_t *name, *description, *about;
    const wchar_t* category;

    std::wstring clsidText() const {
        std::array<wchar_t, 40> text{};
        StringFromGUID2(clsid, text.data(), static_cast<int>(text.size()));
        return text.data();
    }
};
constexpr Class registeredClasses[] = {
    {packageClsid, packageProgId, packageVersionIndependentProgId, packageName, packageDescription,
     packageAbout, standAlonePackages},
    {managerClsid, managerProgId, managerVersionIndependentProgId, managerName, managerDescription,
     managerAbout, packageManagers},
};

struct Row {
    std::wstring key;
    const wchar_t* value; ///< null: the key's default value
    std::wstring data;
};

std::vector<std::wstring> rootKeys() {
    std::vector<std::wstring> keys;
    for (const Class& c : registeredClasses) {
        keys.insert(keys.end(), {L"CLSID\\" + c.clsidText(), c.progId, c.versionIndependentProgId});
    }
    return keys;
}

void addRows(const Class& c, std::vector<Row>& rows) {
    const std::wstring clsid = c.clsidText(), cls = L"CLSID\\" + clsid, cape = cls + L"\\CapeDescription";
    const std::wstring progId = c.progId, anyVersion = c.versionIndependentProgId;
    const std::wstring categories = cls + L"\\Implemented Categories\\";
    rows.insert(rows.end(), {
                                {cls, nullptr, c.name},
                                {cls + L"\\InprocServer32", nullptr, com::thisModulePath()},
                                {cls + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
                                {cls + L"\\ProgID", nullptr, progId},
                                {cls + L"\\VersionIndependentProgID", nullptr, anyVersion},
                                {cape, L"Name", c.name},
                                {cape, L"Description", c.description},
                                {cape, L"CapeVersion", L"1.1"},
                                {cape, L"ComponentVersion", packageVersion},
                                {cape, L"VendorURL", vendorUrl},
                                {cape, L"About", c.about},
                                {categories + anyComponent, nullptr, {}},
                                {categories + c.category, nullptr, {}},
                                {progId, nullptr, c.name},
                                {progId + L"\\CLSID", nullptr, clsid},
                                {anyVersion, nullptr, c.name},
                                {anyVersion + L"\\CLSID", nullptr, clsid},
                                {anyVersion + L"\\CurVer", nullptr, progId},
                            });
}

std::vector<Row> table() {
    std::vector<Row> rows;
    for (const Class& c : registeredClasses) {
        addRows(c, rows);
    }
    return rows;
}

LSTATUS write(const Row& row) {
    com::unique_registry_key key;
    const LSTATUS status = RegCreateKeyExW(HKEY_CURRENT_USER, (classes + row.key).c_str(), 0, nullptr, 0,
                                           KEY_WRITE, nullptr, key.put(), nullptr);
    if (status != ERROR_SUCCESS || (row.value == nullptr && row.data.empty())) {
        return status;
    }
    return RegSetValueExW(key.get(), row.value, 0, REG_SZ, reinterpret_cast<const BYTE*>(row.data.c_str()),
                          static_cast<DWORD>((row.data.size() + 1) * sizeof(wchar_t)));
}

HRESULT resultOf(LSTATUS status) noexcept {
    return status == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(status);
}

} // namespace

HRESULT registerClasses() noexcept {
    return com::guarded(E_UNEXPECTED, [] {
        for (const Row& row : table()) {
            if (const LSTATUS status = write(row); status != ERROR_SUCCESS) {
                unregisterClasses();
                return resultOf(status);
            }
        }
        return S_OK;
    });
}

HRESULT unregisterClasses() noexcept {
    return com::guarded(E_UNEXPECTED, [] {
        LSTATUS failure = ERROR_SUCCESS;
        for (const std::wstring& key : rootKeys()) {
            const LSTATUS status = RegDeleteTreeW(HKEY_CURRENT_USER, (classes + key).c_str());
            if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND && failure == ERROR_SUCCESS) {
                failure = status;
            }
        }
        return resultOf(failure);
    });
}

} // namespace peng_robinson
