// What a user is told about a package: where it comes from, its names, and what its component has registered
// about itself.
#include "src/foundation/guid_text.h"
#include "src/foundation/registry_text.h"
#include "src/foundation/text.h"
#include "src/package/property_package.h"

namespace quorvane {

namespace {

constexpr struct {
    const wchar_t* value; ///< below the component's CapeDescription key
    const wchar_t* label;
} registeredValues[] = {
    {L"Name", L"Name: "},
    {L"Description", L"Description: "},
    {L"ComponentVersion", L"Component version: "},
    {L"CapeVersion", L"CAPE-OPEN version: "},
    {L"VendorURL", L"Vendor URL: "},
    {L"About", L""},
};

void addLine(std::wstring& text, const wchar_t* label, std::wstring_view value = {}) {
    text += joined(label, value, L"\r\n");
}

} // namespace

std::wstring PropertyPackage::describe() const {
    std::wstring text;
    if (managerType_ == PropertyPackageManager11) {
        addLine(text, L"Created from CAPE-OPEN 1.1 Property Package Manager");
        addLine(text, L"Package manager name: ", managerName_);
        addLine(text, L"Package name: ", packageName_);
    } else { // there are no packages of another type
        addLine(text, L"Stand-alone CAPE-OPEN 1.1 Property Package");
        addLine(text, L"Package name: ", managerName_);
    }
    const std::wstring clsid = guidText(managerGUID_);
    addLine(text, L"CLSID: ", clsid);
    com::unique_task_text progId;
    if (SUCCEEDED(ProgIDFromCLSID(managerGUID_, progId.put())) && progId) {
        // "ProdID" is how the line has always been labelled; readers of the text look for it.
        addLine(text, L"ProdID: ", progId.get());
    }
    com::unique_registry_key key;
    const std::wstring path = joined(L"CLSID\\", clsid, L"\\CapeDescription");
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS) {
        for (const auto& registered : registeredValues) {
            if (const std::wstring value = registryText(key.get(), registered.value); !value.empty()) {
                addLine(text, registered.label, value);
            }
        }
    }
    return text;
}

} // namespace quorvane
