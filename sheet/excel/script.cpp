#include "sheet/excel/script.h"

#include <stdexcept>

namespace sheet::excel {

namespace {

HRESULT give(BSTR* out, std::wstring_view text) noexcept {
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out == nullptr ? E_OUTOFMEMORY : S_OK;
}

std::wstring textOf(const com::variant& value) {
    const com::variant text = converted(value, VT_BSTR);
    return text.vt == VT_BSTR ? std::wstring{com::viewOf(text.bstrVal)} : L"?";
}

constexpr std::wstring_view source = L"Microsoft Excel";

} // namespace

com::variant converted(const com::variant& value, VARTYPE type) {
    com::variant original = com::variant::copyOf(value);
    com::variant result;
    return SUCCEEDED(VariantChangeType(&result, &original, VARIANT_NOVALUEPROP, type)) ? std::move(result)
                                                                                       : com::variant{};
}

bool equalsNoCase(const wchar_t* a, const wchar_t* b) noexcept { return lstrcmpiW(a, b) == 0; }

HRESULT STDMETHODCALLTYPE FailureFace::GetGUID(GUID* guid) noexcept {
    if (guid == nullptr) {
        return E_POINTER;
    }
    *guid = IID_IDispatch;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE FailureFace::GetSource(BSTR* out) noexcept { return give(out, source); }

HRESULT STDMETHODCALLTYPE FailureFace::GetDescription(BSTR* out) noexcept { return give(out, description_); }

HRESULT STDMETHODCALLTYPE FailureFace::GetHelpFile(BSTR* file) noexcept { return give(file, {}); }

HRESULT STDMETHODCALLTYPE FailureFace::GetHelpContext(DWORD* context) noexcept {
    if (context == nullptr) {
        return E_POINTER;
    }
    *context = 0;
    return S_OK;
}

HRESULT FailureFace::raiseFailure(const Failure& failure, EXCEPINFO* exception) {
    description_ = failure.description;
    if (description_.empty()) {
        return failure.code;
    }
    if (exception != nullptr) {
        *exception = {};
        exception->scode = failure.code;
        exception->bstrSource = com::makeBstr(source).release();
        exception->bstrDescription = com::makeBstr(description_).release();
    }
    return DISP_E_EXCEPTION;
}

void Script::fail(std::wstring_view member, HRESULT code, std::wstring description) {
    Wish& wish = wishFor(member);
    wish.fails = true;
    wish.failure = {code, std::move(description)};
}

void Script::answer(std::wstring_view member, com::variant value) {
    Wish& wish = wishFor(member);
    wish.answers = true;
    wish.answer = std::move(value);
}

void Script::hide(std::wstring_view member) { wishFor(member).hidden = true; }

void Script::behave(std::wstring_view member) { wishFor(member) = {}; }

void Script::hear(const wchar_t* member, const std::vector<com::variant>& arguments) {
    std::wstring text = member;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        text += (i == 0 ? L'(' : L',') + textOf(arguments[i]);
    }
    heard_.push_back(arguments.empty() ? std::move(text) : text + L')');
}

bool Script::isHidden(const wchar_t* member) const {
    const Wish* const wish = wishOf(member);
    return wish != nullptr && wish->hidden;
}

const Failure* Script::failureOf(const wchar_t* member) const {
    const Wish* const wish = wishOf(member);
    return wish != nullptr && wish->fails ? &wish->failure : nullptr;
}

const com::variant* Script::answerOf(const wchar_t* member) const {
    const Wish* const wish = wishOf(member);
    return wish != nullptr && wish->answers ? &wish->answer : nullptr;
}

HRESULT Script::readArguments(const DISPPARAMS* parameters, UINT most, std::vector<com::variant>& arguments) {
    if (parameters == nullptr) {
        return S_OK;
    }
    if (parameters->cNamedArgs != 0) {
        return DISP_E_NONAMEDARGS;
    }
    if (parameters->cArgs > most) {
        return DISP_E_BADPARAMCOUNT;
    }
    for (UINT i = parameters->cArgs; i > 0; --i) {
        arguments.push_back(com::variant::copyOf(parameters->rgvarg[i - 1]));
    }
    return S_OK;
}

bool Script::NoCase::operator()(const std::wstring& a, const std::wstring& b) const noexcept {
    return lstrcmpiW(a.c_str(), b.c_str()) < 0;
}

Script::Wish& Script::wishFor(std::wstring_view member) {
    if (!hasMember(member)) {
        throw std::invalid_argument{"the object has no such member"};
    }
    return wishes_[std::wstring{member}];
}

const Script::Wish* Script::wishOf(const wchar_t* member) const {
    const auto found = wishes_.find(member);
    return found == wishes_.end() ? nullptr : &found->second;
}

} // namespace sheet::excel
