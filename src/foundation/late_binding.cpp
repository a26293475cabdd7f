#include "src/foundation/late_binding.h"

#include "src/foundation/error_texts.h"
#include "src/foundation/exceptions.h"
#include "src/foundation/text.h"

#include <office_idl.h>

namespace quorvane {

namespace {

constexpr long xlRangeValueDefault = 10;

[[noreturn]] void throwReadFailure(IDispatch* object, const wchar_t* name, HRESULT code) {
    std::wstring text = joined(L"Call to \"", name, L"\" failed: ");
    if (const auto info = com::queryFor<IErrorInfo>(object)) {
        com::unique_bstr description;
        if (gaveText(info->GetDescription(description.put()), description)) {
            text += com::viewOf(description);
        }
    } else {
        text += systemErrorText(code);
    }
    throw WStrException{std::move(text)};
}

void read(com::variant& result, IDispatch* object, const wchar_t* name, UINT argumentCount,
          VARIANT* arguments, WORD flags) {
    if (object == nullptr) {
        throw CWStrException{L"NULL IDispatch passed to AutoWrap()"};
    }
    DISPID member = 0;
    // The parameter is not const, but no server writes to it.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): it is only read
    wchar_t* names[] = {const_cast<wchar_t*>(name)};
    if (FAILED(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member))) {
        throw WStrException{joined(L"IDispatch::GetIDsOfNames failed for \"", name, L"\"")};
    }
    DISPPARAMS parameters{arguments, nullptr, argumentCount, 0};
    const HRESULT code = object->Invoke(member, IID_NULL, LOCALE_SYSTEM_DEFAULT, flags, &parameters,
                                        result.put(), nullptr, nullptr);
    if (FAILED(code)) {
        // Must be empty then; what a careless object left is not ours to free.
        static_cast<void>(result.release());
        throwReadFailure(object, name, code);
    }
}

com::com_ptr<IDispatch> objectIn(const com::variant& value) noexcept {
    return value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN ? com::queryFor<IDispatch>(value.punkVal)
                                                             : com::com_ptr<IDispatch>{};
}

} // namespace

void readProperty(com::variant& result, IDispatch* object, const wchar_t* name, UINT argumentCount,
                  VARIANT* arguments) {
    read(result, object, name, argumentCount, arguments, DISPATCH_PROPERTYGET);
}

com::variant readProperty(IDispatch* object, const wchar_t* name) {
    com::variant result;
    readProperty(result, object, name, 0, nullptr);
    return result;
}

com::com_ptr<IDispatch> readObject(IDispatch* object, const wchar_t* name) {
    return objectIn(readProperty(object, name));
}

com::com_ptr<IDispatch> readItem(IDispatch* collection, const wchar_t* index) {
    com::variant argument{index};
    com::variant result;
    // Office declares the Item of some collections as a method and of others as a property.
    read(result, collection, L"Item", 1, &argument, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
    return objectIn(result);
}

com::com_ptr<IDispatch> asRange(const VARIANT& value) noexcept {
    if (value.vt != VT_DISPATCH && value.vt != VT_UNKNOWN) {
        return {};
    }
    return com::queryFor<ExcelRange>(value.punkVal);
}

com::variant readValueOfRange(IUnknown* object) {
    const auto range = com::queryFor<ExcelRange>(object);
    if (!range) {
        throw CWStrException{L"not a range"};
    }
    return readProperty(range.get(), L"Value");
}

com::variant readRangeValue(IDispatch* range) {
    com::variant kind{xlRangeValueDefault};
    com::variant result;
    readProperty(result, range, L"Value", 1, &kind);
    return result;
}

} // namespace quorvane
