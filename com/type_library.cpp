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

// A dual interface comes out of a library in its dispatch form; invoking needs the vtable form behind it.
struct Forms {
    com_ptr<ITypeInfo> dispatch;
    com_ptr<ITypeInfo> vtable;
};

// A thread that holds it may take it again. The standard library's would bring its texts for failures of the
// system into every DLL. Never destroyed, as it belongs to what never is.
class RecursiveLock {
  public:
    RecursiveLock() noexcept { InitializeCriticalSection(&section_); }
    void lock() noexcept { EnterCriticalSection(&section_); }
    void unlock() noexcept { LeaveCriticalSection(&section_); }

  private:
    CRITICAL_SECTION section_{};
};

// Loading a type library can pump messages and re-enter through another object, hence the recursive lock.
struct TypeInfos {
    RecursiveLock mutex;
    com_ptr<ITypeLib> library;
    std::map<IID, Forms, IidLess> infos;
};

// Never destroyed: at process end the automation library may be gone before our statics are.
TypeInfos& typeInfos() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): what was looked up is kept
    static auto* const instance = new TypeInfos;
    return *instance;
}

com_ptr<ITypeInfo> vtableForm(const com_ptr<ITypeInfo>& info) {
    HREFTYPE reference = 0;
    com_ptr<ITypeInfo> vtable;
    if (SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) &&
        SUCCEEDED(info->GetRefTypeInfo(reference, vtable.put()))) {
        return vtable;
    }
    return info;
}

// Null when the library or the interface is missing.
const Forms* load(REFIID iid) noexcept {
    try {
        TypeInfos& all = typeInfos();
        const std::lock_guard lock{all.mutex};
        if (const auto known = all.infos.find(iid); known != all.infos.end()) {
            return &known->second;
        }
        if (!all.library && FAILED(LoadTypeLib(thisModulePath().c_str(), all.library.put()))) {
            return nullptr;
        }
        Forms forms;
        if (FAILED(all.library->GetTypeInfoOfGuid(iid, forms.dispatch.put()))) {
            return nullptr;
        }
        forms.vtable = vtableForm(forms.dispatch);
        return &all.infos.emplace(iid, std::move(forms)).first->second;
    } catch (...) {
        return nullptr;
    }
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
    const Forms* const forms = load(iid);
    return forms == nullptr ? nullptr : forms->vtable.get();
}

HRESULT giveTypeInfo(REFIID iid, UINT index, ITypeInfo** out) noexcept {
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = nullptr;
    if (index != 0) {
        return DISP_E_BADINDEX;
    }
    const Forms* const forms = load(iid);
    if (forms == nullptr) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    *out = com_ptr<ITypeInfo>{forms->dispatch}.release();
    return S_OK;
}

} // namespace com
