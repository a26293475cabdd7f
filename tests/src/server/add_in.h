// The built Quorvane.dll for tests: it lies beside the test program and has registered itself for the user.
#pragma once

#include "com/com_ptr.h"
#include "com/owned.h"

#include <office_idl.h>
#include <quorvane_idl.h>
#include <string>

namespace tests {

/// Loads the DLL beside the test program and calls its DllRegisterServer; fails the test run when that fails.
class AddIn {
  public:
    static AddIn& instance();

    HRESULT registerServer() const { return register_(); }
    HRESULT unregisterServer() const { return unregister_(); }
    HRESULT canUnloadNow() const { return canUnload_(); }
    HRESULT getClassObject(REFCLSID clsid, REFIID iid, void** out) const {
        return getClassObject_(clsid, iid, out);
    }

    const std::wstring& path() const noexcept { return path_; }

    /// A new Excel object, created by ProgID as Excel does it.
    com::com_ptr<IQuorvaneVSTOServices> create() const;

  private:
    AddIn();

    std::wstring path_;
    HRESULT(STDAPICALLTYPE* register_)();
    HRESULT(STDAPICALLTYPE* unregister_)();
    HRESULT(STDAPICALLTYPE* canUnload_)();
    HRESULT(STDAPICALLTYPE* getClassObject_)(REFCLSID, REFIID, void**);
};

/// The text of a result that must be one.
std::wstring textOf(const VARIANT& value);

/// A piece of the current user's registry; empty when the key or value does not exist.
std::optional<std::wstring> userValue(const std::wstring& key, const wchar_t* name);
bool userKeyExists(const std::wstring& key);
void setUserValue(const std::wstring& key, const wchar_t* name, const std::wstring& text);
void deleteUserKey(const std::wstring& key);

} // namespace tests
