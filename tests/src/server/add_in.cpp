#include "tests/src/server/add_in.h"

#include <cstdio>
#include <cstdlib>

namespace tests {

namespace {

[[noreturn]] void giveUp(const char* what) {
    std::fprintf(stderr, "The add-in cannot be tested: %s\n", what);
    std::exit(1);
}

template <typename Function>
Function exported(HMODULE module, const char* name) {
    const FARPROC found = GetProcAddress(module, name);
    if (found == nullptr) {
        giveUp(name);
    }
    return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

} // namespace

AddIn& AddIn::instance() {
    static AddIn addIn;
    return addIn;
}

AddIn::AddIn() {
    wchar_t program[1024];
    GetModuleFileNameW(nullptr, program, static_cast<DWORD>(std::size(program)));
    path_ = program;
    path_.replace(path_.rfind(L'\\') + 1, std::wstring::npos, L"Quorvane.dll");
    const HMODULE module = LoadLibraryW(path_.c_str());
    if (module == nullptr) {
        giveUp("Quorvane.dll beside the test program does not load");
    }
    register_ = exported<decltype(register_)>(module, "DllRegisterServer");
    unregister_ = exported<decltype(unregister_)>(module, "DllUnregisterServer");
    canUnload_ = exported<decltype(canUnload_)>(module, "DllCanUnloadNow");
    getClassObject_ = exported<decltype(getClassObject_)>(module, "DllGetClassObject");
    if (FAILED(registerServer())) {
        giveUp("DllRegisterServer fails");
    }
}

com::com_ptr<IQuorvaneVSTOServices> AddIn::create() const {
    CLSID clsid{};
    com::com_ptr<IQuorvaneVSTOServices> object;
    if (FAILED(CLSIDFromProgID(L"Quorvane.Excel", &clsid)) ||
        FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IQuorvaneVSTOServices),
                                object.putVoid()))) {
        giveUp("Quorvane.Excel cannot be created");
    }
    return object;
}

std::wstring textOf(const VARIANT& value) {
    return value.vt == VT_BSTR ? std::wstring{com::viewOf(value.bstrVal)} : L"(not a text)";
}

std::optional<std::wstring> userValue(const std::wstring& key, const wchar_t* name) {
    wchar_t text[2048];
    DWORD size = sizeof text;
    if (RegGetValueW(HKEY_CURRENT_USER, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    return std::wstring{text};
}

bool userKeyExists(const std::wstring& key) {
    com::unique_registry_key opened;
    return RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_READ, opened.put()) == ERROR_SUCCESS;
}

void setUserValue(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
    com::unique_registry_key opened;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, opened.put(),
                        nullptr) != ERROR_SUCCESS ||
        RegSetValueExW(opened.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                       static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) != ERROR_SUCCESS) {
        giveUp("the registry cannot be written");
    }
}

void deleteUserKey(const std::wstring& key) { RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str()); }

} // namespace tests
