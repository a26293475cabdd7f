#include "src/server/help.h"

#include "com/owned.h"
#include "com/type_library.h"
#include "src/foundation/exceptions.h"
#include "src/foundation/registry_text.h"

namespace quorvane {

namespace {

constexpr const wchar_t* viewerKey = L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
constexpr WORD htmlHelpOrdinal = 15; // HtmlHelpW
constexpr UINT displayTopic = 0;     // HH_DISPLAY_TOPIC

using HtmlHelp = HWND(WINAPI*)(HWND owner, LPCWSTR file, UINT command, DWORD_PTR data);

std::wstring registeredViewer() {
    com::unique_registry_key key;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, viewerKey, 0, KEY_READ, key.put()) != ERROR_SUCCESS) {
        return {};
    }
    std::wstring path = registryText(key.get(), nullptr);
    return path.size() < MAX_PATH ? path : std::wstring{};
}

com::unique_module loadViewer() {
    com::unique_module module;
    if (const std::wstring path = registeredViewer(); !path.empty()) {
        module.reset(LoadLibraryW(path.c_str()));
    }
    if (!module) {
        module.reset(LoadLibraryW(L"hhctrl.ocx"));
    }
    return module;
}

// Null when there is none.
HtmlHelp findViewer() {
    com::unique_module module = loadViewer();
    if (!module) {
        return nullptr;
    }
    const FARPROC entry = GetProcAddress(module.get(), MAKEINTRESOURCEA(htmlHelpOrdinal));
    if (entry == nullptr) {
        return nullptr;
    }
    // Stays loaded: its window outlives the call.
    static_cast<void>(module.release());
    return reinterpret_cast<HtmlHelp>(reinterpret_cast<void*>(entry));
}

std::wstring helpFile() {
    const std::wstring module = com::thisModulePath();
    return module.substr(0, module.rfind(L'\\') + 1) + L"Quorvane.chm";
}

} // namespace

void showHelp() {
    // Looked for once: a viewer that is missing stays missing, and the button answers at once.
    static const HtmlHelp viewer = findViewer();
    if (viewer == nullptr || viewer(nullptr, helpFile().c_str(), displayTopic, 0) == nullptr) {
        throw CWStrException{L"Failed to load help file"};
    }
}

} // namespace quorvane
