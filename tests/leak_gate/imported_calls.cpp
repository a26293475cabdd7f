#include "tests/leak_gate/imported_calls.h"

#include "tests/leak_gate/import_table.h"
#include "tests/leak_gate/system_objects.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <utility>

namespace leak_gate {

namespace {

std::atomic<long> handlesLost{0};

// A function that allocates with COM's allocator, of which the first allocation may be refused. One object
// stands for one function of one module.
template <Owner owner, std::size_t number, typename Function>
struct Allocating;

template <Owner owner, std::size_t number, typename Result, typename... Arguments>
struct Allocating<owner, number, Result(Arguments...)> {
    static inline Result(STDAPICALLTYPE* original)(Arguments...) = nullptr;

    static Result STDAPICALLTYPE call(Arguments... arguments) {
        book::beginImportedCall(owner);
        const Result result = original(arguments...);
        book::endImportedCall();
        return result;
    }
};

// A function that allocates with whatever it likes, which may be refused as a whole.
template <Owner owner, std::size_t number, long mostHandlesLost, typename Function>
struct Failing;

template <Owner owner, std::size_t number, long mostHandlesLost, typename... Arguments>
struct Failing<owner, number, mostHandlesLost, HRESULT(Arguments...)> {
    static inline HRESULT(STDAPICALLTYPE* original)(Arguments...) = nullptr;

    static HRESULT STDAPICALLTYPE call(Arguments... arguments) {
        if (book::refusesCall(owner)) {
            return E_OUTOFMEMORY;
        }
        if constexpr (mostHandlesLost == 0) {
            return original(arguments...);
        } else {
            const long before = kernelHandles();
            const HRESULT code = original(arguments...);
            if (code == REGDB_E_CLASSNOTREG) {
                handlesLost += std::clamp(kernelHandles() - before, 0L, mostHandlesLost);
            }
            return code;
        }
    }
};

template <typename Call>
void redirect(void** pointer) {
    if (*pointer != addressOf(&Call::call)) {
        Call::original = reinterpret_cast<decltype(Call::original)>(*pointer);
        overwrite(pointer, addressOf(&Call::call));
    }
}

struct Watched {
    const char* name;
    void (*redirect)(void** pointer);
};

// Wine loses a registry key when it is asked for the name of a class that is not registered, and two when it
// is asked for an object of one. What it loses is not the tests' loss.
template <Owner owner>
constexpr Watched watched[] = {
    {"SysAllocString", &redirect<Allocating<owner, 0, decltype(SysAllocString)>>},
    {"SysAllocStringLen", &redirect<Allocating<owner, 1, decltype(SysAllocStringLen)>>},
    {"SafeArrayCreate", &redirect<Allocating<owner, 2, decltype(SafeArrayCreate)>>},
    {"SafeArrayCreateVector", &redirect<Allocating<owner, 3, decltype(SafeArrayCreateVector)>>},
    {"SafeArrayCopy", &redirect<Allocating<owner, 4, decltype(SafeArrayCopy)>>},
    {"VariantCopyInd", &redirect<Allocating<owner, 5, decltype(VariantCopyInd)>>},
    {"VariantChangeTypeEx", &redirect<Allocating<owner, 6, decltype(VariantChangeTypeEx)>>},
    {"CoTaskMemAlloc", &redirect<Allocating<owner, 7, decltype(CoTaskMemAlloc)>>},
    {"CreateErrorInfo", &redirect<Failing<owner, 0, 0, decltype(CreateErrorInfo)>>},
    {"DispGetIDsOfNames", &redirect<Failing<owner, 1, 0, decltype(DispGetIDsOfNames)>>},
    {"DispInvoke", &redirect<Failing<owner, 2, 0, decltype(DispInvoke)>>},
    {"LoadTypeLib", &redirect<Failing<owner, 3, 0, decltype(LoadTypeLib)>>},
    {"CoCreateInstance",
     &redirect<Failing<owner, 4, 2, HRESULT(REFCLSID, IUnknown*, DWORD, REFIID, void**)>>},
    {"ProgIDFromCLSID", &redirect<Failing<owner, 5, 1, HRESULT(REFCLSID, LPOLESTR*)>>},
};

template <Owner owner>
void watchImported(HMODULE module) {
    forEachImport(module, [](const char*, const char* name, void** pointer) {
        const auto* const found = std::ranges::find_if(
            watched<owner>, [name](const Watched& entry) { return std::strcmp(entry.name, name) == 0; });
        if (found != std::end(watched<owner>)) {
            found->redirect(pointer);
        }
    });
}

template <std::size_t... owner>
void watchImportedAs(Owner wanted, HMODULE module, std::index_sequence<owner...>) {
    ((owner == wanted ? watchImported<owner>(module) : void()), ...);
}

} // namespace

void watchImportedCalls(Owner owner, HMODULE module) {
    watchImportedAs(owner, module, std::make_index_sequence<mostOwners>{});
}

std::vector<std::string> unwatchedCalls(HMODULE module) {
    std::vector<std::string> names;
    forEachImport(module, [&](const char* from, const char* name, void**) {
        const bool isOurs = std::ranges::any_of(watched<testProgram>, [name](const Watched& entry) {
            return std::strcmp(entry.name, name) == 0;
        });
        if (!isOurs && (_stricmp(from, "ole32.dll") == 0 || _stricmp(from, "oleaut32.dll") == 0)) {
            names.emplace_back(name);
        }
    });
    std::ranges::sort(names);
    return names;
}

long handlesLostByTheSystem() { return handlesLost; }

} // namespace leak_gate
