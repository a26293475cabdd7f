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

/// The message of a failure for which there is no memory, held in reserve: a cell that stays empty would pass
/// for a result.
class SpareMessage {
  public:
    /// Throws std::bad_alloc.
    SpareMessage();

    /// Null when it was taken and there has been no memory for another one since.
    com::unique_bstr take() noexcept { return std::move(text_); }
    void refill() noexcept;

  private:
    com::unique_bstr text_;
};

/// Frame of a worksheet function: a failing one succeeds with the message as its result, so that the cell
/// shows it. `fail` receives the message; `iid` is the interface named in the error information. Only when
/// there is neither memory for a message nor a spare one left it returns E_OUTOFMEMORY, for which Excel shows
/// an error value.
template <typename Body, typename Fail>
HRESULT worksheetCall(REFIID iid, SpareMessage& spare, Body&& body, Fail&& fail) noexcept {
    spare.refill();
    try {
        std::forward<Body>(body)();
    } catch (...) {
        com::unique_bstr message = currentFailureMessage();
        const bool isLost = !message && currentFailureHasText();
        if (isLost) {
            message = spare.take();
        }
        installErrorInfo(message.get(), iid);
        if (isLost && !message) {
            return E_OUTOFMEMORY;
        }
        std::forward<Fail>(fail)(std::move(message));
    }
    return S_OK;
}

/// Frame of a service: a failing one returns E_FAIL with error information, whose description is empty when
/// there is no memory for a message.
template <typename Body>
HRESULT serviceCall(REFIID iid, Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
        return S_OK;
    } catch (...) {
        const com::unique_bstr message = currentFailureMessage();
        installErrorInfo(message.get(), iid);
        return E_FAIL;
    }
}

} // namespace quorvane
