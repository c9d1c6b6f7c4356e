// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <optional>
#include <source_location>

#include "platform/FatalError.hpp"
#include "platform/OSStatus.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// Where the render thread leaves a fatal error: nothing is thrown there, so the error waits in this slot and
/// the render step returns `kQuilloErr_FatalError`. The host looks here after a cycle that did not return
/// `noErr`. The slot keeps the first error until it is raised.
class FatalErrorSlot {
public:
    /// [render] Keeps the error, unless one is waiting already, and returns `kQuilloErr_FatalError`.
    /// `message` must be a literal: only its address is kept.
    OSStatus set(const char* message,
                 std::source_location where = std::source_location::current()) QUILLO_REALTIME;

    /// [any] Whether an error waits.
    [[nodiscard]] bool isSet() const QUILLO_REALTIME;

    /// [any but render] The error that waits; nothing when none does.
    [[nodiscard]] std::optional<FatalError> error() const;

    /// [any, while no cycle runs] Empties the slot and throws the `FatalError` that waited in it; does nothing
    /// when none waits.
    void raise();

private:
    const char* message_ = nullptr;
    std::source_location where_;
    std::atomic<bool> set_{false};
};

}  // namespace quillo
