// Owners for what Windows lends: texts, arrays, values, task memory, registry keys. Each empties itself in
// its destructor, so that no exit path has to remember.
#pragma once

#include "com/platform.h"

#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace com {

template <typename Traits>
class unique_resource {
  public:
    using pointer = typename Traits::pointer;

    unique_resource() noexcept = default;
    explicit unique_resource(pointer owned) noexcept : value_{owned} {}
    unique_resource(unique_resource&& other) noexcept : value_{other.release()} {}
    unique_resource& operator=(unique_resource&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~unique_resource() { reset(); }

    pointer get() const noexcept { return value_; }
    /// The address for an out-parameter; what was held is let go first.
    pointer* put() noexcept {
        reset();
        return &value_;
    }
    [[nodiscard]] pointer release() noexcept { return std::exchange(value_, nullptr); }
    void reset(pointer value = nullptr) noexcept {
        if (pointer old = std::exchange(value_, value)) {
            Traits::close(old);
        }
    }
    explicit operator bool() const noexcept { return value_ != nullptr; }

  private:
    pointer value_ = nullptr;
};

struct bstr_traits {
    using pointer = BSTR;
    static void close(BSTR text) noexcept { SysFreeString(text); }
};
struct safearray_traits {
    using pointer = SAFEARRAY*;
    static void close(SAFEARRAY* array) noexcept { SafeArrayDestroy(array); }
};
struct registry_key_traits {
    using pointer = HKEY;
    static void close(HKEY key) noexcept { RegCloseKey(key); }
};
struct module_traits {
    using pointer = HMODULE;
    static void close(HMODULE module) noexcept { FreeLibrary(module); }
};
struct task_text_traits {
    using pointer = wchar_t*;
    static void close(wchar_t* text) noexcept { CoTaskMemFree(text); }
};

using unique_bstr = unique_resource<bstr_traits>;
using unique_safearray = unique_resource<safearray_traits>;
using unique_registry_key = unique_resource<registry_key_traits>;
using unique_module = unique_resource<module_traits>;
using unique_task_text = unique_resource<task_text_traits>;

/// A new BSTR holding `text`; never null, an empty text gives an empty BSTR. Throws std::bad_alloc.
inline unique_bstr makeBstr(std::wstring_view text) {
    unique_bstr result{SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))};
    if (!result) {
        throw std::bad_alloc{};
    }
    return result;
}

/// The characters of a BSTR; a null BSTR is an empty text to Automation.
inline std::wstring_view viewOf(BSTR text) noexcept {
    return text == nullptr ? std::wstring_view{} : std::wstring_view{text, SysStringLen(text)};
}
inline std::wstring_view viewOf(const unique_bstr& text) noexcept { return viewOf(text.get()); }

/// A VARIANT that clears itself. Same layout, so `&value` serves wherever Automation wants a VARIANT*.
class variant : public VARIANT {
  public:
    variant() noexcept : VARIANT{} {}
    explicit variant(double number) noexcept : variant{} {
        vt = VT_R8;
        dblVal = number;
    }
    explicit variant(long number) noexcept : variant{} {
        vt = VT_I4;
        lVal = number;
    }
    explicit variant(bool truth) noexcept : variant{} {
        vt = VT_BOOL;
        boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
    }
    explicit variant(unique_bstr text) noexcept : variant{} {
        vt = VT_BSTR;
        bstrVal = text.release();
    }
    explicit variant(std::wstring_view text) : variant{makeBstr(text)} {}
    explicit variant(const wchar_t* text) : variant{std::wstring_view{text}} {}
    variant(variant&& other) noexcept : VARIANT{other.release()} {}
    variant(const variant&) = delete;
    variant& operator=(const variant&) = delete;
    variant& operator=(variant&& other) noexcept {
        if (this != &other) {
            clear();
            static_cast<VARIANT&>(*this) = std::exchange(static_cast<VARIANT&>(other), VARIANT{});
        }
        return *this;
    }
    ~variant() { clear(); }

    void clear() noexcept {
        // Most are empty or numbers, which own nothing: not worth a call into Automation.
        if (vt > VT_DATE) {
            VariantClear(this);
        } else {
            vt = VT_EMPTY;
        }
    }
    /// The address for an out-parameter; what was held is let go first.
    VARIANT* put() noexcept {
        clear();
        return this;
    }
    /// Gives the content away; this becomes empty.
    [[nodiscard]] VARIANT release() noexcept {
        return std::exchange(static_cast<VARIANT&>(*this), VARIANT{});
    }

    /// Takes over what `value` holds.
    static variant attach(VARIANT value) noexcept {
        variant result;
        static_cast<VARIANT&>(result) = value;
        return result;
    }
    /// A deep copy; a VARIANT by reference is followed. Throws std::bad_alloc when it cannot be copied.
    static variant copyOf(const VARIANT& value) {
        variant result;
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): it is only read
        if (FAILED(VariantCopyInd(&result, const_cast<VARIANT*>(&value)))) {
            throw std::bad_alloc{};
        }
        return result;
    }
    /// What a caller passes for an optional argument that was left out.
    static variant missing() noexcept {
        variant result;
        result.vt = VT_ERROR;
        result.scode = DISP_E_PARAMNOTFOUND;
        return result;
    }
    /// An object reference; a reference is added.
    static variant object(IDispatch* borrowed) noexcept {
        variant result;
        result.vt = VT_DISPATCH;
        result.pdispVal = borrowed;
        if (borrowed != nullptr) {
            borrowed->AddRef();
        }
        return result;
    }
    /// Takes over an array of elements of type `element`.
    static variant array(unique_safearray owned, VARTYPE element) noexcept {
        variant result;
        result.vt = static_cast<VARTYPE>(VT_ARRAY | element);
        result.parray = owned.release();
        return result;
    }
};

/// A deep copy; empty for a value of a kind that Automation does not copy. Throws std::bad_alloc.
inline std::optional<variant> copyIfPossible(const VARIANT& value) {
    variant result;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): it is only read
    const HRESULT code = VariantCopyInd(&result, const_cast<VARIANT*>(&value));
    if (code == E_OUTOFMEMORY) {
        throw std::bad_alloc{};
    }
    if (FAILED(code)) {
        return std::nullopt;
    }
    return result;
}

/// `value` as `type`, by Automation's rules; empty when it cannot be one. With VARIANT_NOVALUEPROP an object
/// is not asked for its default property. Throws std::bad_alloc.
inline std::optional<variant> convert(const VARIANT& value, VARTYPE type, USHORT flags = VARIANT_NOVALUEPROP,
                                      LCID locale = LOCALE_USER_DEFAULT) {
    variant result;
    const HRESULT code =
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): it is only read
        VariantChangeTypeEx(&result, const_cast<VARIANT*>(&value), locale, flags, type);
    if (code == E_OUTOFMEMORY) {
        throw std::bad_alloc{};
    }
    if (FAILED(code)) {
        return std::nullopt;
    }
    return result;
}

/// Replaces what an [in, out] argument holds; the old content is cleared, as Automation asks of the callee.
inline void assign(VARIANT* target, variant value) noexcept {
    const variant old = variant::attach(*target);
    *target = value.release();
}

static_assert(sizeof(variant) == sizeof(VARIANT));
static_assert(sizeof(unique_bstr) == sizeof(BSTR));

} // namespace com
