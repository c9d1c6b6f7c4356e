// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "audiounit/platform/NSError.hpp"

namespace quillo {

/// Why an operation did not succeed: the error that the host is handed, and, where there is more to say than
/// its code, words for the user.
struct Failure {
    NSError error;
    std::string text;

    bool operator==(const Failure&) const = default;
};

/// [any but render, inside a handler] The exception that is being handled. A fatal error and whatever else is
/// no error of the platform's own fails with `kAudioUnitErr_FailedInitialization`.
[[nodiscard]] Failure handledFailure();

/// [any but render] Runs `operation`, out of which no exception comes. Nothing on success.
template <class Operation>
[[nodiscard]] std::optional<Failure> attempt(Operation&& operation) noexcept {
    try {
        std::forward<Operation>(operation)();
        return std::nullopt;
    } catch (...) {
        return handledFailure();
    }
}

}  // namespace quillo
