// Faces of dual interfaces: the four IDispatch methods of an interface, written once.
//   ServedDual<I>   late binding really works, through the module's embedded type library
//   RefusedDual<I>  late binding is refused, as some automation clients of C++ components are used to
// Use them in place of I in the list of implements<>.
#pragma once

#include "com/platform.h"
#include "com/type_library.h"

namespace com {

template <typename Interface>
class ServedDual : public Interface {
  public:
    using interface_type = Interface;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        if (count == nullptr) {
            return E_POINTER;
        }
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
        return giveTypeInfo(__uuidof(Interface), index, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) noexcept override {
        ITypeInfo* const info = keptTypeInfoOf<Interface>();
        return info == nullptr ? DISP_E_UNKNOWNNAME : DispGetIDsOfNames(info, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                                     VARIANT* result, EXCEPINFO* exception,
                                     UINT* argument) noexcept override {
        ITypeInfo* const info = keptTypeInfoOf<Interface>();
        return info == nullptr ? TYPE_E_ELEMENTNOTFOUND
                               : DispInvoke(static_cast<Interface*>(this), info, member, flags, arguments,
                                            result, exception, argument);
    }
};

template <typename Interface>
class RefusedDual : public Interface {
  public:
    using interface_type = Interface;

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
        return TYPE_E_ELEMENTNOTFOUND;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override {
        return E_NOTIMPL;
    }
};

} // namespace com
