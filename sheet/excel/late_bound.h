// LateBound<Object, Face>: an object that is used through IDispatch only, as Excel's are. A class lists its
// members in a table (name, member identifier, most arguments, function) and gets name lookup and invocation
// from here, and with them what a test may want to happen: a member that fails, hides, or answers something
// else.
#pragma once

#include "sheet/excel/script.h"

#include "com/com_ptr.h"
#include "com/implements.h"

#include <span>

namespace sheet::excel {

/// Arguments in declared order, references followed; trailing ones may be absent.
using Arguments = std::span<const com::variant>;

template <typename Object>
struct Member {
    const wchar_t* name;
    DISPID id;
    UINT mostArguments;
    com::variant (Object::*answer)(Arguments);
};

/// The object's own no, given from within a member.
struct Refusal {
    HRESULT code;
};

namespace detail {
template <typename Face>
struct Faces {
    using type = com::implements<com::COMObject, Face, FailureFace>;
};
} // namespace detail

// Object has a function `static std::span<const Member<Object>> members()`.
template <typename Object, typename Face = IDispatch>
class LateBound : public detail::Faces<Face>::type, public Script {
  public:
    void* findInterface(REFIID iid) noexcept override {
        if (iid == IID_IDispatch) {
            return static_cast<IDispatch*>(static_cast<Face*>(this));
        }
        // Some clients ask the object itself for the words of its last failure.
        if (iid == IID_IErrorInfo && this->description().empty()) {
            return nullptr;
        }
        return detail::Faces<Face>::type::findInterface(iid);
    }

    IDispatch* dispatch() noexcept { return static_cast<Face*>(this); }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        if (count == nullptr) {
            return E_POINTER;
        }
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override {
        if (info == nullptr) {
            return E_POINTER;
        }
        *info = nullptr;
        return DISP_E_BADINDEX;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) noexcept override {
        if (names == nullptr || ids == nullptr || count == 0) {
            return E_INVALIDARG;
        }
        std::fill_n(ids, count, DISPID_UNKNOWN);
        const Member<Object>* const member = named(names[0]);
        if (member == nullptr || isHidden(member->name)) {
            return DISP_E_UNKNOWNNAME;
        }
        ids[0] = member->id;
        // Parameters cannot be given by name.
        return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT*) noexcept override {
        try {
            const auto table = Object::members();
            const auto member = std::ranges::find(table, id, &Member<Object>::id);
            if (member == table.end() || (flags & (DISPATCH_PROPERTYGET | DISPATCH_METHOD)) == 0) {
                return DISP_E_MEMBERNOTFOUND;
            }
            std::vector<com::variant> arguments;
            if (const HRESULT code = readArguments(parameters, member->mostArguments, arguments);
                FAILED(code)) {
                return code;
            }
            hear(member->name, arguments);
            if (const Failure* const failure = failureOf(member->name)) {
                return this->raiseFailure(*failure, exception);
            }
            const com::variant* const scripted = answerOf(member->name);
            com::variant answer = scripted != nullptr
                                      ? com::variant::copyOf(*scripted)
                                      : (static_cast<Object*>(this)->*member->answer)(arguments);
            if (result != nullptr) {
                *result = answer.release();
            }
            return S_OK;
        } catch (const Refusal& refusal) {
            return refusal.code;
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }

  protected:
    bool hasMember(std::wstring_view name) const override {
        return named(std::wstring{name}.c_str()) != nullptr;
    }

  private:
    static const Member<Object>* named(const wchar_t* name) noexcept {
        const auto table = Object::members();
        const auto found = std::ranges::find_if(
            table, [name](const Member<Object>& m) { return equalsNoCase(m.name, name); });
        return found == table.end() ? nullptr : &*found;
    }
};

/// VT_DISPATCH with a reference of its own, or "Nothing" for null.
inline com::variant objectOrNothing(IDispatch* object) noexcept { return com::variant::object(object); }

} // namespace sheet::excel
