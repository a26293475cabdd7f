// Stands in for the HTML Help control of Windows: ordinal 15 is its HtmlHelpW. It notes what it is asked to
// show, and answers with the window that a test gives it.
#include "com/platform.h"

#include <string>

namespace {

int calls = 0;
HWND lastOwner = nullptr;
std::wstring lastFile;
UINT lastCommand = 0;
DWORD_PTR lastData = 0;
HWND window = nullptr;

} // namespace

extern "C" {

HWND WINAPI showHelp(HWND owner, LPCWSTR file, UINT command, DWORD_PTR data) {
    ++calls;
    lastOwner = owner;
    lastFile = file;
    lastCommand = command;
    lastData = data;
    return window;
}

int shownTimes() { return calls; }
const wchar_t* shownFile() { return lastFile.c_str(); }
/// True when there was an owner, a command other than "display topic", or data.
int shownOtherwise() { return lastOwner != nullptr || lastCommand != 0 || lastData != 0; }
void answerWith(HWND answer) { window = answer; }

} // extern "C"
