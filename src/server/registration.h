// Self-registration, for the current user only: the COM class, its type library, and the entry that makes
// Excel open the add-in.
#pragma once

#include "com/platform.h"

#include <string>
#include <vector>

namespace quorvane {

/// One row of the registration table, below HKEY_CURRENT_USER\Software\Classes. A row without data only
/// creates its key; without a value name the data is the key's default value.
struct RegistrationRow {
    std::string key;
    const char* valueName;
    std::string data;
    bool hasData;
};

/// The whole table in the order of registration; `modulePath` is the file name of the server.
std::vector<RegistrationRow> registrationTable(const std::string& modulePath);

/// Writes the table, then Excel's entries. Stops at the first failure, which it returns.
HRESULT registerServer() noexcept;

/// Removes the table's keys and Excel's entries; what is already gone is no failure.
HRESULT unregisterServer() noexcept;

} // namespace quorvane
