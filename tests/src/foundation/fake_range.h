// An object as Excel hands them over: a range, or something else that is bound late. It answers every read of
// a property as a test has set it, and remembers how it was asked.
#pragma once

#include "com/com_ptr.h"
#include "com/implements.h"
#include "com/owned.h"

#include <office_idl.h>

#include <optional>
#include <string>
#include <vector>

namespace quorvane {

class FakeRange final : public com::implements<com::COMObject, ExcelRange, IErrorInfo> {
  public:
    bool isRange = true;
    com::variant answer;
    HRESULT namesResult = S_OK;
    HRESULT invokeResult = S_OK;
    std::optional<std::wstring> description; ///< set: the object answers for IErrorInfo
    HRESULT descriptionResult = S_OK;
    bool leavesRubbish = false; ///< in the outputs of what fails: texts that Automation must not free

    struct Read {
        std::wstring name;
        LCID namesLocale = 0;
        LCID invokeLocale = 0;
        WORD flags = 0;
        UINT namedArguments = 0;
        std::vector<long> arguments; ///< VT_I4 ones; anything else is noted as -1
    };
    std::vector<Read> reads;

    void* findInterface(REFIID iid) noexcept override {
        if (iid == IID_IDispatch) {
            return static_cast<IDispatch*>(static_cast<ExcelRange*>(this));
        }
        if ((iid == __uuidof(ExcelRange) && !isRange) || (iid == IID_IErrorInfo && !description)) {
            return nullptr;
        }
        return implements::findInterface(iid);
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) noexcept override {
        reads.push_back({count == 1 ? names[0] : L"(several names)", locale, 0, 0, 0, {}});
        *ids = member;
        return namesResult;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO*, UINT*) noexcept override {
        if (reads.empty()) {
            reads.push_back({L"(default)", 0, 0, 0, 0, {}});
        }
        Read& read = reads.back();
        read.invokeLocale = locale;
        read.flags = flags;
        read.namedArguments = parameters->cNamedArgs;
        for (UINT i = 0; i < parameters->cArgs; ++i) {
            const VARIANT& argument = parameters->rgvarg[i];
            read.arguments.push_back(argument.vt == VT_I4 ? argument.lVal : -1);
        }
        if (id != member && id != DISPID_VALUE) {
            return DISP_E_MEMBERNOTFOUND;
        }
        if (SUCCEEDED(invokeResult)) {
            VariantCopy(result, &answer);
        } else if (leavesRubbish) {
            result->vt = VT_BSTR;
            result->bstrVal = rubbish();
        }
        return invokeResult;
    }

    HRESULT STDMETHODCALLTYPE GetGUID(GUID*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) noexcept override {
        *text = SUCCEEDED(descriptionResult) ? SysAllocString(description->c_str())
                : leavesRubbish              ? rubbish()
                                             : nullptr;
        return descriptionResult;
    }
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD*) noexcept override { return E_NOTIMPL; }

    IDispatch* dispatch() noexcept { return static_cast<ExcelRange*>(this); }

  private:
    static BSTR rubbish() noexcept {
        static wchar_t text[8] = L"rubbish";
        return text;
    }

    static constexpr DISPID member = 6;
};

/// A range whose contents are `contents`.
inline com::com_ptr<FakeRange> rangeOf(com::variant contents) {
    auto range = com::make<FakeRange>();
    range->answer = std::move(contents);
    return range;
}

} // namespace quorvane
