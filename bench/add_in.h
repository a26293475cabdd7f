// Servers for the benchmark, loaded from the folder of the program without the registry: the add-in, the
// empty server to which it is compared, and packages.
#pragma once

#include "com/com_ptr.h"
#include "com/owned.h"

#include <office_idl.h>
#include <quorvane_idl.h>
#include <stdexcept>
#include <string>

namespace bench {

/// A loaded server; the DLL stays until the program ends, or unload() says otherwise.
class Server {
  public:
    explicit Server(const wchar_t* file);

    HMODULE module() const noexcept { return module_; }
    com::com_ptr<IClassFactory> factory(REFCLSID clsid) const;
    com::com_ptr<IQuorvaneVSTOServices> createServices() const;
    com::com_ptr<IQuorvaneUDF> createFunctions() const;
    void unload() noexcept;

    /// The full path of a file beside the program.
    static std::wstring pathOf(const wchar_t* file);

  private:
    HMODULE module_;
};

/// The add-in's object, connected to Excel for as long as this lives.
class AddIn {
  public:
    AddIn(const Server& server, IDispatch* application);
    AddIn(const AddIn&) = delete;
    AddIn& operator=(const AddIn&) = delete;
    ~AddIn();

    IQuorvaneVSTOServices* operator->() const noexcept { return services_.get(); }
    IQuorvaneVSTOServices* get() const noexcept { return services_.get(); }

    /// Attaches a package of this class to the workbook.
    void attach(IUnknown* workbook, const std::wstring& name, REFCLSID packageClass) const;

  private:
    com::com_ptr<IQuorvaneVSTOServices> services_;
    com::com_ptr<_IDTExtensibility2> events_;
};

/// Throws std::runtime_error with these words when `code` is a failure.
void require(HRESULT code, const char* what);

} // namespace bench
