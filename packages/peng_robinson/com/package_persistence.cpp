// IPersistStreamInit: the chosen compounds and the changed binary parameters.
#include "packages/peng_robinson/com/identity.h"
#include "packages/peng_robinson/com/property_package.h"

namespace peng_robinson {
namespace {

constexpr const wchar_t* persistence = L"IPersistStreamInit";

// Clients that know nothing of CAPE-OPEN show the system's text for the code.
HRESULT codeOf(StateError::Kind kind) {
    switch (kind) {
    case StateError::Kind::unknownVersion:
        return HRESULT_FROM_WIN32(ERROR_UNKNOWN_REVISION);
    case StateError::Kind::truncated:
        return HRESULT_FROM_WIN32(ERROR_HANDLE_EOF);
    case StateError::Kind::unfitting:
        return HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
    case StateError::Kind::notAState:
    case StateError::Kind::damaged:
        break;
    }
    return HRESULT_FROM_WIN32(ERROR_INVALID_DATA);
}

template <typename Body>
auto translated(Body&& body) {
    try {
        return body();
    } catch (const StateError& error) {
        throw CapeError{codeOf(error.kind()), widen(error.what())};
    }
}

void requireStream(const IStream* stream) {
    if (stream == nullptr) {
        throw CapeError{E_POINTER, L"The stream is missing"};
    }
}

// Some streams hand out less than was asked for, although more follows.
void readFully(IStream& stream, std::span<std::uint8_t> target) {
    while (!target.empty()) {
        ULONG count = 0;
        const HRESULT result = stream.Read(target.data(), static_cast<ULONG>(target.size()), &count);
        if (FAILED(result)) {
            throw CapeError{result, L"The stream cannot be read"};
        }
        if (count == 0) {
            throw StateError{StateError::Kind::truncated, "The saved package ends too early"};
        }
        if (count > target.size()) {
            throw CapeError{STG_E_READFAULT, L"The stream tells of more bytes than it was asked for"};
        }
        target = target.subspan(count);
    }
}

Bytes readFrom(IStream& stream) {
    Bytes state(stateHeaderSize);
    readFully(stream, state);
    const std::size_t wanted = stateHeaderSize + sizeAfterHeader(state);
    // In steps, so that a damaged size costs no more memory than there are bytes in the stream.
    constexpr std::size_t step = 4096;
    while (state.size() < wanted) {
        const std::size_t begin = state.size();
        state.resize(std::min(wanted, begin + step));
        readFully(stream, std::span{state}.subspan(begin));
    }
    return state;
}

void writeTo(IStream& stream, const Bytes& state) {
    ULONG count = 0;
    const HRESULT result = stream.Write(state.data(), static_cast<ULONG>(state.size()), &count);
    if (FAILED(result)) {
        throw CapeError{result, L"The stream cannot be written"};
    }
    if (count != state.size()) {
        throw CapeError{STG_E_MEDIUMFULL, L"The stream takes only a part of the package"};
    }
}

} // namespace

void PropertyPackage::requireUninitialised() const {
    if (isInitialised_) {
        throw CapeError{E_UNEXPECTED, L"InitNew or Load has been called before"};
    }
}

// The class of the stand-alone package: it also opens what the manager's built-in packages save. A package of
// a definition only the manager opens, by its name, because the state does not hold the values of the
// definition.
HRESULT STDMETHODCALLTYPE PropertyPackage::GetClassID(CLSID* clsid) noexcept {
    return call(persistence, L"GetClassID", [&] {
        requirePointer(clsid);
        *clsid = packageClsid;
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::IsDirty() noexcept { return isDirty_ ? S_OK : S_FALSE; }

HRESULT STDMETHODCALLTYPE PropertyPackage::Load(IStream* stream) noexcept {
    return call(persistence, L"Load", [&] {
        requireStream(stream);
        requireUninitialised();
        configure(translated([&] { return readState(readFrom(*stream), initial_->catalogue()); }));
        isInitialised_ = true;
        isDirty_ = false;
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::Save(IStream* stream, BOOL clearDirty) noexcept {
    return call(persistence, L"Save", [&] {
        requireStream(stream);
        writeTo(*stream, writeState(*configuration_));
        if (clearDirty) {
            isDirty_ = false;
        }
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetSizeMax(ULARGE_INTEGER* size) noexcept {
    return call(persistence, L"GetSizeMax", [&] {
        requirePointer(size);
        size->QuadPart = writeState(*configuration_).size();
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::InitNew() noexcept {
    return call(persistence, L"InitNew", [&] {
        requireUninitialised();
        configure(initial_->selection());
        isInitialised_ = true;
        // A document that does not save a new package gets the same one from InitNew the next time.
        isDirty_ = false;
    });
}

} // namespace peng_robinson
