#include "src/server/excel_entries.h"

#include "com/owned.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {

namespace {

constexpr const char* officeKey = "Software\\Microsoft\\Office";
constexpr const char* progIdUpperCase = "QUORVANE.EXCEL";
constexpr const char* openCommand = "/A \"Quorvane.Excel.1\"";
constexpr int oldestVersion = 14;

com::unique_registry_key open(HKEY parent, const std::string& name, REGSAM access) {
    com::unique_registry_key key;
    if (RegOpenKeyExA(parent, name.c_str(), 0, access, key.put()) != ERROR_SUCCESS) {
        static_cast<void>(key.release());
    }
    return key;
}

// Subkeys of the Office key that are versions we know how to serve, such as "16.0".
std::vector<std::string> officeVersions(HKEY office) {
    std::vector<std::string> versions;
    char name[256];
    for (DWORD index = 0;; ++index) {
        DWORD length = sizeof name;
        const LSTATUS status =
            RegEnumKeyExA(office, index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) {
            return versions;
        }
        if (status == ERROR_SUCCESS && std::strtol(name, nullptr, 10) >= oldestVersion) {
            versions.emplace_back(name);
        } else if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) {
            return versions;
        }
    }
}

std::string upperCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return text;
}

bool opensOurClass(const std::string& name, const std::string& data) {
    return name.starts_with("OPEN") && upperCase(data).find(progIdUpperCase) != std::string::npos;
}

std::vector<std::string> ourOpenValues(HKEY options) {
    std::vector<std::string> names;
    DWORD longestName = 0;
    DWORD longestData = 0;
    RegQueryInfoKeyA(options, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &longestName,
                     &longestData, nullptr, nullptr);
    std::string name;
    std::string data;
    for (DWORD index = 0;; ++index) {
        name.resize(longestName + 1);
        data.resize(longestData + 1);
        auto nameLength = static_cast<DWORD>(name.size());
        auto dataLength = static_cast<DWORD>(data.size());
        const LSTATUS status = RegEnumValueA(options, index, name.data(), &nameLength, nullptr, nullptr,
                                             reinterpret_cast<BYTE*>(data.data()), &dataLength);
        if (status == ERROR_MORE_DATA) {
            // The longest name is told in characters, which may take two bytes each.
            longestName = 2 * longestName + 1;
            longestData = std::max(2 * longestData + 1, dataLength);
            --index;
            continue;
        }
        if (status != ERROR_SUCCESS) {
            return names; // no more values
        }
        name.resize(nameLength);
        data.resize(dataLength);
        if (opensOurClass(name, data)) {
            names.push_back(name);
        }
    }
}

LSTATUS deleteValue(HKEY key, const std::string& name) noexcept {
    const LSTATUS status = RegDeleteValueA(key, name.c_str());
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

LSTATUS removeFromVersion(HKEY office, const std::string& version) {
    LSTATUS firstFailure = ERROR_SUCCESS;
    const auto remove = [&](HKEY key, const std::string& name) {
        const LSTATUS status = deleteValue(key, name);
        if (firstFailure == ERROR_SUCCESS) {
            firstFailure = status;
        }
    };
    if (const auto manager = open(office, version + "\\Excel\\Add-in Manager", KEY_SET_VALUE)) {
        remove(manager.get(), "Quorvane.Excel");
        remove(manager.get(), "Quorvane.Excel.1");
    }
    const std::string optionsKey = version + "\\Excel\\Options";
    std::vector<std::string> names;
    if (const auto options = open(office, optionsKey, KEY_READ)) {
        names = ourOpenValues(options.get());
    }
    if (names.empty()) {
        return firstFailure;
    }
    com::unique_registry_key options;
    const LSTATUS opened = RegOpenKeyExA(office, optionsKey.c_str(), 0, KEY_SET_VALUE, options.put());
    if (opened != ERROR_SUCCESS) {
        return firstFailure != ERROR_SUCCESS ? firstFailure : opened;
    }
    for (const std::string& name : names) {
        remove(options.get(), name);
    }
    return firstFailure;
}

// Only a name that certainly does not exist is free; whatever cannot be told counts as taken. Of settings
// that somebody removes meanwhile nothing can be told, however long one looks.
std::optional<std::string> firstFreeName(HKEY options) {
    constexpr int mostNames = 1000;
    for (int number = 0; number < mostNames; ++number) {
        std::string name = number == 0 ? "OPEN" : "OPEN" + std::to_string(number);
        if (RegQueryValueExA(options, name.c_str(), nullptr, nullptr, nullptr, nullptr) ==
            ERROR_FILE_NOT_FOUND) {
            return name;
        }
    }
    return std::nullopt;
}

} // namespace

void addExcelEntries() {
    const auto office = open(HKEY_CURRENT_USER, officeKey, KEY_READ);
    if (!office) {
        return;
    }
    for (const std::string& version : officeVersions(office.get())) {
        const auto options = open(office.get(), version + "\\Excel\\Options", KEY_READ | KEY_SET_VALUE);
        if (!options) {
            continue;
        }
        if (const auto name = firstFreeName(options.get())) {
            const std::string command = openCommand;
            RegSetValueExA(options.get(), name->c_str(), 0, REG_SZ,
                           reinterpret_cast<const BYTE*>(command.c_str()),
                           static_cast<DWORD>(command.size() + 1));
        }
    }
}

LSTATUS removeExcelEntries() {
    LSTATUS firstFailure = ERROR_SUCCESS;
    const auto office = open(HKEY_CURRENT_USER, officeKey, KEY_READ);
    if (!office) {
        return firstFailure;
    }
    for (const std::string& version : officeVersions(office.get())) {
        const LSTATUS status = removeFromVersion(office.get(), version);
        if (firstFailure == ERROR_SUCCESS) {
            firstFailure = status;
        }
    }
    return firstFailure;
}

} // namespace quorvane
