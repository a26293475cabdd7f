#include "src/server/registration.h"

#include "com/guarded.h"
#include "com/owned.h"
#include "com/type_library.h"
#include "src/foundation/guid_text.h"
#include "src/server/excel_entries.h"

#include <algorithm>
#include <array>
#include <quorvane_idl.h>

namespace quorvane {

namespace {

constexpr const char* root = "Software\\Classes\\";

// Groups the server under one name in administrators' tools. Chosen once; never to be changed.
constexpr GUID appId = {0x4E70880D, 0x2F57, 0x4046, {0xB5, 0xEC, 0x71, 0xAF, 0x54, 0x20, 0x37, 0x23}};

std::string registryForm(REFGUID id) {
    std::string text;
    for (const wchar_t character : guidText(id)) {
        text.push_back(static_cast<char>(character));
    }
    return text;
}

HRESULT registryResult(LSTATUS status) noexcept {
    switch (status) {
    case ERROR_SUCCESS:
        return S_OK;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return E_INVALIDARG;
    case ERROR_ACCESS_DENIED:
        return E_ACCESSDENIED;
    default:
        return E_UNEXPECTED;
    }
}

LSTATUS writeRow(const RegistrationRow& row) {
    com::unique_registry_key key;
    const LSTATUS status = RegCreateKeyExA(HKEY_CURRENT_USER, (root + row.key).c_str(), 0, nullptr,
                                           REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, key.put(), nullptr);
    if (status != ERROR_SUCCESS || !row.hasData) {
        return status;
    }
    return RegSetValueExA(key.get(), row.valueName, 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(row.data.c_str()),
                          static_cast<DWORD>(row.data.size() + 1));
}

// Deletes a key after all its subkeys, deepest first.
LSTATUS deleteTree(HKEY parent, const std::string& name) {
    {
        com::unique_registry_key key;
        const LSTATUS status = RegOpenKeyExA(parent, name.c_str(), 0, KEY_READ | KEY_WRITE, key.put());
        if (status != ERROR_SUCCESS) {
            return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND ? ERROR_SUCCESS : status;
        }
        std::array<char, 256> child{};
        std::string last;
        for (;;) {
            auto length = static_cast<DWORD>(child.size());
            const LSTATUS found =
                RegEnumKeyExA(key.get(), 0, child.data(), &length, nullptr, nullptr, nullptr, nullptr);
            if (found == ERROR_NO_MORE_ITEMS) {
                break;
            }
            if (found == ERROR_SUCCESS && last == child.data()) {
                return ERROR_ACCESS_DENIED; // it seemed to go, and is still the first
            }
            last = child.data();
            const LSTATUS removed = found == ERROR_SUCCESS ? deleteTree(key.get(), last) : found;
            if (removed != ERROR_SUCCESS) {
                return removed;
            }
        }
    }
    const LSTATUS status = RegDeleteKeyA(parent, name.c_str());
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

std::string modulePath() {
    std::array<char, 1024> path{};
    const DWORD length = GetModuleFileNameA(com::thisModule(), path.data(), static_cast<DWORD>(path.size()));
    return std::string(path.data(), length);
}

} // namespace

std::vector<RegistrationRow> registrationTable(const std::string& path) {
    const std::string clsid = registryForm(__uuidof(::Excel));
    const std::string app = registryForm(appId);
    const std::string library = registryForm(LIBID_Quorvane);
    const std::string udf = "Interface\\" + registryForm(__uuidof(IQuorvaneUDF));
    const std::string services = "Interface\\" + registryForm(__uuidof(IQuorvaneVSTOServices));
    const std::string typeLib = "TypeLib\\" + library;
    const std::string cls = "CLSID\\" + clsid;
    struct Entry {
        std::string key;
        const char* valueName;
        std::string data;
        bool hasData = true;
    };
    const Entry entries[] = {
        {"AppID\\" + app, nullptr, "Tarnwick Quorvane Add-in"},
        {"AppID\\Quorvane", "AppID", app},
        {typeLib, nullptr, "Tarnwick Quorvane AddIn Library"},
        {typeLib + "\\1.0", nullptr, "Tarnwick Quorvane AddIn Library"},
        {typeLib + "\\1.0\\0", nullptr, {}, false},
        {typeLib + "\\1.0\\0\\win64", nullptr, path},
        {typeLib + "\\FLAGS", nullptr, "0"},
        {udf, nullptr, "IQuorvaneUDF"},
        {udf + "\\TypeLib", nullptr, library},
        {services, nullptr, "IQuorvaneVSTOServices"},
        {services + "\\TypeLib", nullptr, library},
        {"Quorvane.Excel", nullptr, "Quorvane for Excel"},
        {"Quorvane.Excel\\CLSID", nullptr, clsid},
        {"Quorvane.Excel\\CurVer", nullptr, "Quorvane.Excel.1"},
        {"Quorvane.Excel.1", nullptr, "Quorvane for Excel"},
        {"Quorvane.Excel.1\\CLSID", nullptr, clsid},
        {cls, nullptr, "Quorvane for Excel"},
        {cls + "\\ProgID", nullptr, "Quorvane.Excel.1"},
        {cls + "\\AppID", nullptr, app},
        {cls + "\\TypeLib", nullptr, library},
        {cls + "\\VersionIndependentProgID", nullptr, "Quorvane.Excel"},
        {cls + "\\InprocServer32", nullptr, path},
        {cls + "\\InprocServer32", "ThreadingModel", "Apartment"},
        // By the AppID's text name rather than its identifier: installed copies are found by it.
        {cls + "\\InprocServer32", "AppID", "Quorvane"},
        {cls + "\\Programmable", nullptr, {}, false},
    };
    // A key is created by a row of its own before its first value is set by the next.
    std::vector<RegistrationRow> table;
    for (const Entry& entry : entries) {
        if (table.empty() || table.back().key != entry.key) {
            table.push_back({entry.key, nullptr, {}, false});
        }
        if (entry.hasData) {
            table.push_back({entry.key, entry.valueName, entry.data, true});
        }
    }
    return table;
}

HRESULT registerServer() noexcept {
    return com::guarded(E_UNEXPECTED, [] {
        for (const RegistrationRow& row : registrationTable(modulePath())) {
            const LSTATUS status = writeRow(row);
            if (status != ERROR_SUCCESS) {
                return registryResult(status);
            }
        }
        const LSTATUS cleaned = removeExcelEntries();
        if (cleaned != ERROR_SUCCESS) {
            return registryResult(cleaned);
        }
        addExcelEntries();
        return S_OK;
    });
}

HRESULT unregisterServer() noexcept {
    return com::guarded(E_UNEXPECTED, [] {
        LSTATUS firstFailure = ERROR_SUCCESS;
        const auto table = registrationTable(modulePath());
        std::for_each(table.rbegin(), table.rend(), [&firstFailure](const RegistrationRow& row) {
            const LSTATUS status = deleteTree(HKEY_CURRENT_USER, root + row.key);
            if (firstFailure == ERROR_SUCCESS) {
                firstFailure = status;
            }
        });
        const LSTATUS cleaned = removeExcelEntries();
        return registryResult(firstFailure != ERROR_SUCCESS ? firstFailure : cleaned);
    });
}

} // namespace quorvane
