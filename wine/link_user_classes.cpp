// Makes HKEY_CURRENT_USER\Software\Classes of a new Wine prefix a registry link to the machine's classes.
//
// Windows shows the per-user classes through HKEY_CLASSES_ROOT; Wine 8 shows the machine's only, so that COM
// would not find a server that registered itself for the user. With the link, per user and per machine are
// the same: right for a prefix that serves one project, and for nothing else. A new prefix has no per-user
// classes yet that the link could hide. Exit code 0 when the link is made.
#include <windows.h>

#include <cstdio>
#include <string_view>

namespace {

constexpr const wchar_t* userClasses = L"Software\\Classes";
constexpr std::wstring_view machineClasses = L"\\Registry\\Machine\\Software\\Classes";

LSTATUS linkUserClasses() {
    HKEY classes = nullptr;
    LSTATUS status = RegCreateKeyExW(HKEY_CURRENT_USER, userClasses, 0, nullptr,
                                     REG_OPTION_NON_VOLATILE | REG_OPTION_CREATE_LINK,
                                     KEY_CREATE_LINK | KEY_SET_VALUE, nullptr, &classes, nullptr);
    if (status != ERROR_SUCCESS)
        return status;
    // The value of a link counts its characters without a terminating null.
    status = RegSetValueExW(classes, L"SymbolicLinkValue", 0, REG_LINK,
                            reinterpret_cast<const BYTE*>(machineClasses.data()),
                            machineClasses.size() * sizeof(wchar_t));
    RegCloseKey(classes);
    return status;
}

} // namespace

int main() {
    const LSTATUS status = linkUserClasses();
    if (status == ERROR_SUCCESS)
        return 0;
    std::fprintf(stderr, "link_user_classes: cannot link HKEY_CURRENT_USER\\%ls (Windows error %ld)\n",
                 userClasses, status);
    return 1;
}
