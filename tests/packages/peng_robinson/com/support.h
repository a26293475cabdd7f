// Vocabulary of these tests: the package object from the DLL, VARIANTs from lists and back, and what
// ECapeUser says.
#pragma once

#include "com/com_ptr.h"
#include "com/owned.h"
#include "com/platform.h"

#include <capeopen_idl.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

namespace peng_robinson::test {

using Texts = std::vector<std::wstring>;
using Reals = std::vector<double>;

/// The DLL beside the test program, loaded once and kept.
class PackageDll {
  public:
    static const PackageDll& instance();

    com::com_ptr<IDispatch> createPackage() const;
    com::com_ptr<IDispatch> createManager() const;
    HRESULT canUnloadNow() const;
    HRESULT getClassObject(REFCLSID clsid, REFIID iid, void** out) const;
    HRESULT registerServer() const;
    HRESULT unregisterServer() const;

  private:
    PackageDll();
    com::com_ptr<IDispatch> create(REFCLSID clsid) const;
    template <typename Function>
    Function* entry(const char* name) const;

    HMODULE module_;
};

com::variant texts(const Texts& values);
com::variant reals(const Reals& values);
Texts textsOf(const VARIANT& value);
Reals realsOf(const VARIANT& value);

/// Everything that ECapeUser and ECapeRoot say about the last failure of an object.
struct Failure {
    std::wstring name, description, interfaceName, operation, scope;
};
Failure lastFailure(IUnknown* object);

/// The call failed with that code, and the object explains it so.
void expectFailure(IUnknown* object, HRESULT result, eCapeErrorInterfaceHR code,
                   const std::wstring& description, const std::wstring& interfaceName,
                   const std::wstring& operation);

Texts compoundIdsOf(ICapeThermoCompounds& compounds);

/// A package, and one pointer for each of its interfaces.
struct Package : testing::Test {
    Package();

    com::com_ptr<IDispatch> object;
    com::com_ptr<ICapeIdentification> identification;
    com::com_ptr<ICapeUtilities> utilities;
    com::com_ptr<ICapeThermoCompounds> compounds;
    com::com_ptr<ICapeThermoPhases> phases;
    com::com_ptr<ICapeThermoPropertyRoutine> properties;
    com::com_ptr<ICapeThermoEquilibriumRoutine> equilibrium;
    com::com_ptr<ICapeThermoUniversalConstant> constants;
    com::com_ptr<ICapeThermoMaterialContext> context;

    void expectFailure(HRESULT result, eCapeErrorInterfaceHR code, const std::wstring& description,
                       const std::wstring& interfaceName, const std::wstring& operation) const;
};

} // namespace peng_robinson::test

// Wide texts readable in failure messages.
inline void PrintTo(const std::wstring& text, std::ostream* out) {
    for (const wchar_t c : text) {
        *out << (c < 128 ? static_cast<char>(c) : '?');
    }
}
