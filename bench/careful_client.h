// CarefulClient: what the hand-written client would have to do besides if it served many packages and took
// nothing on trust. It shows how much of the add-in's time belongs to the task and how much to the add-in:
//   Excel's member is asked for by name; the workbook, its package and the property are looked up by name;
//   arrays from outside are asked what they hold before they are read; what the package asks for and writes
//   is compared with what was asked of it; the package is held for the duration of the call; a failure is an
//   exception that ends here.
// It is written without the add-in's code, from the standard library, to be short rather than fast or slow.
#pragma once

#include "bench/client_material.h"
#include "com/com_ptr.h"
#include "com/owned.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace bench {

class CarefulMaterial final : public ClientMaterial {
  public:
    std::wstring property; ///< what is asked of the package, as the caller writes it
    std::wstring phase;

    HRESULT STDMETHODCALLTYPE GetTPFraction(BSTR label, double* T, double* P,
                                            VARIANT* composition) noexcept override;
    HRESULT STDMETHODCALLTYPE SetSinglePhaseProp(BSTR name, BSTR label, BSTR basis,
                                                 VARIANT given) noexcept override;
};

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::wstring_view text) const noexcept {
        return std::hash<std::wstring_view>{}(text);
    }
};

template <typename Value>
using ByText = std::unordered_map<std::wstring, Value, TextHash, std::equal_to<>>;

class CarefulClient {
  public:
    /// One package of the class under `package`, in the workbook that is active. The application is borrowed
    /// and must outlive the client.
    CarefulClient(IDispatch* application, REFCLSID packageClass, std::wstring package, std::size_t compounds);

    /// A property of one phase as the package gives it: one value, or a list; S_OK, or why not.
    HRESULT property(BSTR package, BSTR name, BSTR phase, double T, double P, const VARIANT& composition,
                     VARIANT* result) noexcept;

  private:
    struct Package {
        com::com_ptr<ICapeThermoPropertyRoutine> routine;
        com::com_ptr<CarefulMaterial> material;
        com::variant names;
        std::size_t compounds = 0;
    };

    com::com_ptr<IUnknown> activeWorkbook();

    IDispatch* application_;
    std::unordered_map<const IUnknown*, ByText<std::shared_ptr<Package>>> workbooks_;
    ByText<std::size_t> ranks_; ///< of the values of each property
};

} // namespace bench
