#include "com/type_library.h"

#include "com/com_ptr.h"

#include <cstring>
#include <map>
#include <mutex>

namespace com {

namespace {

struct IidLess {
    bool operator()(const IID& a, const IID& b) const noexcept {
        return std::memcmp(&a, &b, sizeof(IID)) < 0;
    }
};

// Loading a type library can pump messages and re-enter through another object, hence the recursive lock.
struct TypeInfos {
    std::recursive_mutex mutex;
    com_ptr<ITypeLib> library;
    std::map<IID, com_ptr<ITypeInfo>, IidLess> infos;
};

// Never destroyed: at process end the automation library may be gone before our statics are.
TypeInfos& typeInfos() {
    static TypeInfos* const instance = new TypeInfos;
    return *instance;
}

// Dual interfaces come out of a library in their dispatch form; invoking needs the vtable form behind it.
com_ptr<ITypeInfo> vtableForm(com_ptr<ITypeInfo> info) {
    HREFTYPE reference = 0;
    com_ptr<ITypeInfo> vtable;
    if (SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) &&
        SUCCEEDED(info->GetRefTypeInfo(reference, vtable.put()))) {
        return vtable;
    }
    return info;
}

ITypeInfo* load(REFIID iid) {
    TypeInfos& all = typeInfos();
    const std::lock_guard lock{all.mutex};
    if (const auto known = all.infos.find(iid); known != all.infos.end()) {
        return known->second.get();
    }
    if (!all.library && FAILED(LoadTypeLib(thisModulePath().c_str(), all.library.put()))) {
        return nullptr;
    }
    com_ptr<ITypeInfo> info;
    if (FAILED(all.library->GetTypeInfoOfGuid(iid, info.put()))) {
        return nullptr;
    }
    return (all.infos[iid] = vtableForm(std::move(info))).get();
}

} // namespace

HMODULE thisModule() noexcept {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&thisModule), &module);
    return module;
}

std::wstring thisModulePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(thisModule(), path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

ITypeInfo* typeInfoOf(REFIID iid) noexcept {
    try {
        return load(iid);
    } catch (...) {
        return nullptr;
    }
}

} // namespace com
