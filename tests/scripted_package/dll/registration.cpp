#include "tests/scripted_package/dll/registration.h"

#include "com/owned.h"
#include "com/type_library.h"

#include <string>

namespace scripted {

namespace {

struct RegisteredClass {
    const CLSID& clsid;
    const wchar_t* progId; ///< without version
    const wchar_t* name;
    const wchar_t* description;
    const wchar_t* category;
};

constexpr const wchar_t* capeOpenObject = L"{678C09A1-7D66-11D2-A67D-00105A42887F}";

constexpr RegisteredClass classes[] = {
    {packageClass, L"Tarnwick.ScriptedPackage", L"Scripted package",
     L"A CAPE-OPEN property package whose every answer a test sets",
     L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}"},
    {managerClass, L"Tarnwick.ScriptedManager", L"Scripted manager",
     L"A CAPE-OPEN property package manager whose every answer a test sets",
     L"{CF51E383-0110-4ED8-ACB7-B50CFDE6908E}"},
};

std::wstring clsidText(REFCLSID clsid) {
    wchar_t text[40];
    StringFromGUID2(clsid, text, static_cast<int>(std::size(text)));
    return text;
}

const std::wstring root = L"Software\\Classes\\";

// Remembers the first failure, so that a table of values reads as one.
class Writer {
  public:
    void set(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
        com::unique_registry_key opened;
        note(RegCreateKeyExW(HKEY_CURRENT_USER, (root + key).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                             KEY_WRITE, nullptr, opened.put(), nullptr));
        if (opened) {
            note(RegSetValueExW(opened.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                                static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
        }
    }
    void note(LSTATUS status) noexcept {
        if (result_ == ERROR_SUCCESS) {
            result_ = status;
        }
    }
    HRESULT result() const noexcept { return HRESULT_FROM_WIN32(static_cast<DWORD>(result_)); }

  private:
    LSTATUS result_ = ERROR_SUCCESS;
};

void write(Writer& registry, const RegisteredClass& entry) {
    const std::wstring clsid = clsidText(entry.clsid);
    const std::wstring cls = L"CLSID\\" + clsid;
    const std::wstring general = entry.progId;
    const std::wstring versioned = general + L".1";
    registry.set(general, nullptr, entry.name);
    registry.set(general + L"\\CLSID", nullptr, clsid);
    registry.set(general + L"\\CurVer", nullptr, versioned);
    registry.set(versioned, nullptr, entry.name);
    registry.set(versioned + L"\\CLSID", nullptr, clsid);
    registry.set(cls, nullptr, entry.name);
    registry.set(cls + L"\\ProgID", nullptr, versioned);
    registry.set(cls + L"\\VersionIndependentProgID", nullptr, general);
    registry.set(cls + L"\\InprocServer32", nullptr, com::thisModulePath());
    registry.set(cls + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    registry.set(cls + L"\\Implemented Categories\\" + capeOpenObject, nullptr, {});
    registry.set(cls + L"\\Implemented Categories\\" + entry.category, nullptr, {});
    const std::wstring description = cls + L"\\CapeDescription";
    registry.set(description, L"Name", entry.name);
    registry.set(description, L"Description", entry.description);
    registry.set(description, L"CapeVersion", L"1.1");
    registry.set(description, L"ComponentVersion", L"1.0");
    registry.set(description, L"VendorURL", L"https://tarnwick.example/quorvane");
    registry.set(description, L"About", L"For tests only");
}

// Subkeys first: the system call that does both is missing from the oldest systems' per-user view.
void removeTree(Writer& registry, HKEY parent, const std::wstring& name) {
    {
        com::unique_registry_key key;
        const LSTATUS opened = RegOpenKeyExW(parent, name.c_str(), 0, KEY_READ | KEY_WRITE, key.put());
        if (opened == ERROR_FILE_NOT_FOUND) {
            return;
        }
        registry.note(opened);
        wchar_t child[256];
        auto length = static_cast<DWORD>(std::size(child));
        while (key && RegEnumKeyExW(key.get(), 0, child, &length, nullptr, nullptr, nullptr, nullptr) ==
                          ERROR_SUCCESS) {
            removeTree(registry, key.get(), child);
            if (registry.result() != S_OK) {
                return;
            }
            length = static_cast<DWORD>(std::size(child));
        }
    }
    registry.note(RegDeleteKeyW(parent, name.c_str()));
}

template <typename Action>
HRESULT onEveryClass(Action&& action) noexcept {
    try {
        Writer registry;
        for (const RegisteredClass& entry : classes) {
            action(registry, entry);
        }
        return registry.result();
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

} // namespace

HRESULT registerClasses() noexcept { return onEveryClass(write); }

HRESULT unregisterClasses() noexcept {
    return onEveryClass([](Writer& registry, const RegisteredClass& entry) {
        const std::wstring general = entry.progId;
        removeTree(registry, HKEY_CURRENT_USER, root + general);
        removeTree(registry, HKEY_CURRENT_USER, root + general + L".1");
        removeTree(registry, HKEY_CURRENT_USER, root + L"CLSID\\" + clsidText(entry.clsid));
    });
}

} // namespace scripted
