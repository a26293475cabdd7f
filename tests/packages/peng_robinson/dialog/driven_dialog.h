// A window that is operated by a second thread, as by a person: it waits until the window is there, does what
// the test says by messages to the controls, and in the end closes what is still open, so that no test hangs.
#pragma once

#include "com/platform.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace peng_robinson::test {

/// The window as the operating thread sees it.
class DrivenDialog {
  public:
    explicit DrivenDialog(HWND window) : window_{window} {}

    std::wstring title() const { return textOf(window_); }
    std::wstring text(int control) const { return textOf(item(control)); }
    std::vector<std::wstring> lines(int list) const;
    /// The selected line; empty when there is none.
    std::wstring selectedLine(int list) const;
    bool isEnabled(int control) const { return IsWindowEnabled(item(control)) != FALSE; }
    bool isOpen() const { return IsWindow(window_) != FALSE; }
    bool hasFocus(int control) const;
    /// Waits until the window has closed; false when it does not.
    bool closes() const;

    void press(int button) const;
    void select(int list, const std::wstring& line) const;
    void doubleClick(int list, const std::wstring& line) const;
    void type(int field, const std::wstring& text) const;
    /// A key for whichever control has the focus, through the queue, as from a keyboard.
    void key(WORD virtualKey) const;
    /// Alt and the underlined letter of a control.
    void alt(wchar_t letter) const;
    /// Waits until something is so, which a key brings about; false when it never is.
    bool eventually(const std::function<bool()>& isSo) const;

  private:
    static std::wstring textOf(HWND window);
    HWND item(int control) const { return GetDlgItem(window_, control); }
    void notify(int control, int notification) const;
    HWND focus() const;

    HWND window_;
};

/// Calls `open`, which shows a window and returns when it closes, and lets `operate` work with the window
/// meanwhile. Gives what `open` returns. Throws std::runtime_error when no window appears.
HRESULT drive(const std::function<HRESULT()>& open, const std::function<void(const DrivenDialog&)>& operate);

} // namespace peng_robinson::test
