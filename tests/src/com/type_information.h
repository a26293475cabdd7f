// Type libraries, read into plain texts that a test can compare.
#pragma once

#include "com/com_ptr.h"
#include "com/owned.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quorvane {

struct LibraryMember {
    std::wstring name; ///< get_ and put_ before the name of a property
    std::wstring help;
    std::wstring arguments; ///< "name type" one by one; [optional], -> result, <out
    std::size_t slot;
    MEMBERID id;
};

inline std::wstring nameOf(ITypeInfo* info) {
    com::unique_bstr name;
    info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
    return std::wstring{com::viewOf(name)};
}

/// The interface, enumeration or class of this name; interfaces in the form that callers of the vtable use.
inline com::com_ptr<ITypeInfo> typeNamed(ITypeLib* library, const wchar_t* name) {
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        com::com_ptr<ITypeInfo> info;
        com::com_ptr<ITypeInfo> vtable;
        HREFTYPE reference = 0;
        if (FAILED(library->GetTypeInfo(i, info.put())) || nameOf(info.get()) != name) {
            continue;
        }
        const bool isDual = SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) &&
                            SUCCEEDED(info->GetRefTypeInfo(reference, vtable.put()));
        return isDual ? vtable : info;
    }
    return {};
}

inline TYPEATTR attributesOf(ITypeInfo* info) {
    TYPEATTR* attributes = nullptr;
    if (FAILED(info->GetTypeAttr(&attributes))) {
        return {};
    }
    const TYPEATTR copy = *attributes;
    info->ReleaseTypeAttr(attributes);
    return copy;
}

inline std::wstring typeText(ITypeInfo* info, const TYPEDESC& type) {
    switch (type.vt) {
    case VT_PTR:
        return typeText(info, *type.lptdesc) + L"*";
    case VT_USERDEFINED: {
        com::com_ptr<ITypeInfo> referred;
        return SUCCEEDED(info->GetRefTypeInfo(type.hreftype, referred.put())) ? nameOf(referred.get()) : L"?";
    }
    case VT_BSTR:
        return L"BSTR";
    case VT_R8:
        return L"double";
    case VT_VARIANT:
        return L"VARIANT";
    case VT_BOOL:
        return L"VARIANT_BOOL";
    case VT_I4:
        return L"long";
    case VT_UNKNOWN:
        return L"IUnknown*";
    case VT_DISPATCH:
        return L"IDispatch*";
    default:
        return L"vt" + std::to_wstring(type.vt);
    }
}

inline std::wstring argumentsText(ITypeInfo* info, const FUNCDESC& function) {
    std::vector<BSTR> names(static_cast<std::size_t>(function.cParams) + 1);
    UINT count = 0;
    info->GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &count);
    std::wstring text;
    for (std::size_t i = 0; i + 1 < names.size(); ++i) {
        const com::unique_bstr name{names[i + 1]};
        const ELEMDESC& argument = function.lprgelemdescParam[i];
        const USHORT flags = argument.paramdesc.wParamFlags;
        const std::wstring one = std::wstring{com::viewOf(name)} + L" " + typeText(info, argument.tdesc);
        text += text.empty() ? L"" : L", ";
        if ((flags & PARAMFLAG_FRETVAL) != 0) {
            text += L"-> " + one;
        } else if ((flags & PARAMFLAG_FOUT) != 0) {
            text += L"out " + one;
        } else {
            text += (flags & PARAMFLAG_FOPT) != 0 ? L"[" + one + L"]" : one;
        }
    }
    const com::unique_bstr own{names[0]};
    return text;
}

/// The members that the interface adds to the one that it extends, in their order.
inline std::vector<LibraryMember> membersOf(ITypeInfo* info) {
    std::vector<LibraryMember> members;
    for (UINT i = 0; i < attributesOf(info).cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(info->GetFuncDesc(i, &function))) {
            break;
        }
        com::unique_bstr name;
        com::unique_bstr help;
        info->GetDocumentation(function->memid, name.put(), help.put(), nullptr, nullptr);
        const wchar_t* const prefix = function->invkind == INVOKE_PROPERTYGET   ? L"get_"
                                      : function->invkind == INVOKE_PROPERTYPUT ? L"put_"
                                                                                : L"";
        members.push_back({prefix + std::wstring{com::viewOf(name)}, std::wstring{com::viewOf(help)},
                           argumentsText(info, *function),
                           static_cast<std::size_t>(function->oVft) / sizeof(void*), function->memid});
        info->ReleaseFuncDesc(function);
    }
    return members;
}

} // namespace quorvane
