#include "tests/leak_gate/state.h"

#include "com/module.h"
#include "tests/leak_gate/hooks.h"
#include "tests/leak_gate/imported_calls.h"
#include "tests/leak_gate/system_objects.h"

namespace leak_gate {

namespace {

bool unloadedDllsCount = true;

bool isInUse(HMODULE dll) {
    const FARPROC found = GetProcAddress(dll, "DllCanUnloadNow");
    return found != nullptr &&
           reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(found))() != S_OK;
}

struct Count {
    const char* name;
    long State::*value;
    bool fewerIsFine;
};

constexpr Count counts[] = {{"live COM objects of the test program", &State::liveObjects, false},
                            {"DLLs with live COM objects", &State::dllsInUse, true},
                            {"blocks written beyond their end", &State::overrunBlocks, true},
                            {"kernel handles", &State::kernelHandles, true},
                            {"user objects", &State::userObjects, true},
                            {"GDI objects", &State::gdiObjects, true},
                            {"windows", &State::windows, true}};

} // namespace

void leaveOutWhatUnloadedDllsKeep() noexcept { unloadedDllsCount = false; }

State State::now() {
    State state;
    state.latestBlock = book::latest();
    state.liveObjects = com::liveObjects;
    for (const HMODULE dll : watchedDlls()) {
        state.dllsInUse += isInUse(dll) ? 1 : 0;
    }
    state.overrunBlocks = leak_gate::overrunBlocks();
    state.kernelHandles = unloadedDllsCount ? leak_gate::kernelHandles() - handlesLostByTheSystem() : 0;
    state.userObjects = leak_gate::userObjects();
    state.gdiObjects = leak_gate::gdiObjects();
    state.windows = leak_gate::windows();
    return state;
}

std::string State::memoryLeftSince(const State& before) const {
    const UseOfAll left = book::leftOf(before.latestBlock, latestBlock);
    std::string text;
    for (Owner owner = 0; owner < book::owners(); ++owner) {
        const auto& [blocks, bytes] = left[owner];
        if (blocks > 0 && (owner != comAllocator || unloadedDllsCount)) {
            text += std::string{"  "} + book::nameOf(owner) + ": " + std::to_string(blocks) +
                    (blocks == 1 ? " block, " : " blocks, ") + std::to_string(bytes) + " bytes\n";
        }
    }
    return text;
}

std::string State::changeSince(const State& before) const {
    std::string text;
    for (const Count& count : counts) {
        const long change = this->*count.value - before.*count.value;
        if (change > 0 || (change < 0 && !count.fewerIsFine)) {
            text += "  " + std::to_string(change) + " " + count.name + "\n";
        }
    }
    return text;
}

} // namespace leak_gate
