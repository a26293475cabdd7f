#include "tests/faults/codes.h"

#include "tests/scripted_package/variants.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace faults {

namespace {

constexpr HRESULT cape(LONG code) { return static_cast<HRESULT>(0x80040500U) + code; }

constexpr Code all[] = {
    {"ECapeUnknown", cape(0x01), "Failed to get error name for ECapeUnknown"},
    {"ECapeData", cape(0x02), "invalid data"},
    {"ECapeLicenceError", cape(0x03), "license problem"},
    {"ECapeBadCOParameter", cape(0x04), "Bad Cape-Open parameter"},
    {"ECapeBadArgument", cape(0x05), "Bad argument"},
    {"ECapeInvalidArgument", cape(0x06), "Invalid argument"},
    {"ECapeOutOfBounds", cape(0x07), "index out of bounds"},
    {"ECapeImplementation", cape(0x08), "current implementation related error"},
    {"ECapeNoImpl", cape(0x09), "not implemented"},
    {"ECapeLimitedImpl", cape(0x0A), "implementation is limited"},
    {"ECapeComputation", cape(0x0B), "computation error"},
    {"ECapeOutOfResources", cape(0x0C), "out of resources"},
    {"ECapeNoMemory", cape(0x0D), "out of memory"},
    {"ECapeTimeOut", cape(0x0E), "operation was timed out"},
    {"ECapeFailedInitialisation", cape(0x0F), "initialization error"},
    {"ECapeSolvingError", cape(0x10), "solution error"},
    {"ECapeBadInvOrder", cape(0x11), "invalid order of invocations"},
    {"ECapeInvalidOperation", cape(0x12), "invalid operation"},
    {"ECapePersistence", cape(0x13), "storage / persistence error"},
    {"ECapeIllegalAccess", cape(0x14), "illegal access"},
    {"ECapePersistenceNotFound", cape(0x15), "persistence error: not found"},
    {"ECapePersistenceSystemError", cape(0x16), "persistence system error"},
    {"ECapePersistenceOverflow", cape(0x17), "persistence overflow error"},
    {"ECapeOutsideSolverScope", cape(0x18), "solver scope error"},
    {"ECapeHessianInfoNotAvailable", cape(0x19), "Hessian information not available"},
    {"ECapeThrmPropertyNotAvailable", cape(0x1A),
     "One or more of the requested thermodynamic properties are not set on the material"},
    {"E_FAIL", E_FAIL, nullptr},
    {"E_NOTIMPL", E_NOTIMPL, nullptr},
    {"E_OUTOFMEMORY", E_OUTOFMEMORY, nullptr},
    {"E_POINTER", E_POINTER, nullptr},
    {"RPC_E_CALL_REJECTED", RPC_E_CALL_REJECTED, nullptr},
    {"S_FALSE", S_FALSE, nullptr},
};

} // namespace

std::span<const Code> codes() { return all; }

const Code& codeNamed(std::string_view name) { return *std::ranges::find(all, name, &Code::name); }

std::string systemText(HRESULT code) {
    std::array<wchar_t, 1024> buffer{};
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(code), LOCALE_USER_DEFAULT, buffer.data(),
                                        static_cast<DWORD>(buffer.size()), nullptr);
    if (length == 0) {
        char text[32];
        std::snprintf(text, sizeof text, "error code 0x%08lX", static_cast<unsigned long>(code));
        return text;
    }
    std::wstring_view text{buffer.data(), length};
    if (text.ends_with(L"\r\n")) {
        text.remove_suffix(2);
    }
    return scripted::narrow(text);
}

} // namespace faults
