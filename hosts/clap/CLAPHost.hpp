// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

#include "hosts/clap/CLAPHeaders.hpp"

namespace quillo {

/// What the plug-in asks of its host. What a host does not offer is not done.
class CLAPHost {
public:
    /// [main] Not before the host has called `init`: only then does it answer. The host outlives it.
    explicit CLAPHost(const clap_host_t& host);

    /// [main] The project has changed.
    void markDirty() const;

    /// [any] The plug-in has something to do in `process`.
    void requestProcess() const;

    /// [any] The plug-in has something to do on the main thread.
    void requestCallback() const;

    /// [main] Asks for a timer. Nothing when the host has none.
    [[nodiscard]] std::optional<clap_id> startTimer(std::uint32_t milliseconds) const;
    void stopTimer(clap_id timer) const;

private:
    const clap_host_t& host_;
    const clap_host_state_t* state_;
    const clap_host_timer_support_t* timers_;
};

}  // namespace quillo
