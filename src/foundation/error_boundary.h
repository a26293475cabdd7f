// Where failures leave the system. Every method that Excel or the front end calls runs its body inside one of
// the two frames below, so that no exception crosses a COM boundary and every failure becomes a text for a
// person.
#pragma once

#include "com/owned.h"

#include <utility>

namespace quorvane {

/// The message of the exception being handled, as a BSTR (null when there is no text or no memory for it). To
/// be called inside a catch-all handler.
com::unique_bstr currentFailureMessage() noexcept;

/// Whether the exception being handled has a text at all. Likewise to be called inside a catch-all handler.
bool currentFailureHasText() noexcept;

/// Installs Automation error information for the thread: description, source "Quorvane.Excel", interface
/// `iid`.
void installErrorInfo(BSTR description, REFIID iid) noexcept;

/// Frame of a worksheet function: a failing one succeeds with the message as its result, so that the cell
/// shows it. `fail` receives the message; `iid` is the interface named in the error information. Without
/// memory for a message it returns E_OUTOFMEMORY, for which Excel shows an error value: an empty cell would
/// pass for a result.
template <typename Body, typename Fail>
HRESULT worksheetCall(REFIID iid, Body&& body, Fail&& fail) noexcept {
    try {
        std::forward<Body>(body)();
    } catch (...) {
        com::unique_bstr message = currentFailureMessage();
        installErrorInfo(message.get(), iid);
        if (!message && currentFailureHasText()) {
            return E_OUTOFMEMORY;
        }
        std::forward<Fail>(fail)(std::move(message));
    }
    return S_OK;
}

/// Frame of a service: a failing one returns E_FAIL with error information, and E_OUTOFMEMORY without memory
/// for a message.
template <typename Body>
HRESULT serviceCall(REFIID iid, Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
        return S_OK;
    } catch (...) {
        const com::unique_bstr message = currentFailureMessage();
        installErrorInfo(message.get(), iid);
        return !message && currentFailureHasText() ? E_OUTOFMEMORY : E_FAIL;
    }
}

} // namespace quorvane
