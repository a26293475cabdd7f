// What a failing call says to a person: the text of the system's own exception that it throws.
#pragma once

#include "src/foundation/exceptions.h"

#include <optional>
#include <string>
#include <utility>

namespace quorvane {

/// The message of the WException of exactly type Exception that `body` throws. Empty when it throws nothing;
/// another exception passes through and fails the test.
template <typename Exception, typename Body>
std::optional<std::wstring> messageOf(Body&& body) {
    try {
        std::forward<Body>(body)();
    } catch (const Exception& failure) {
        return std::wstring{failure.message()};
    }
    return std::nullopt;
}

/// A fixed text, thrown without an allocation.
template <typename Body>
std::optional<std::wstring> fixedMessageOf(Body&& body) {
    return messageOf<CWStrException>(std::forward<Body>(body));
}

/// A text composed at run time.
template <typename Body>
std::optional<std::wstring> composedMessageOf(Body&& body) {
    return messageOf<WStrException>(std::forward<Body>(body));
}

} // namespace quorvane
