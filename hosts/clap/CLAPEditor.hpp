// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <thread>

#include "hosts/clap/CLAPHeaders.hpp"
#include "hosts/clap/CLAPHost.hpp"
#include "hosts/clap/CLAPInstance.hpp"
#include "window/EmbeddedEditor.hpp"

namespace quillo {

/// Has the host call the plug-in on its main thread some 30 times a second, as long as it lives: by a timer
/// of the host's, where it has them, and otherwise by a thread that asks for a callback. [main]
class CLAPIdleTimer {
public:
    /// The host must outlive it.
    explicit CLAPIdleTimer(const CLAPHost& host);
    ~CLAPIdleTimer();
    CLAPIdleTimer(const CLAPIdleTimer&) = delete;
    CLAPIdleTimer& operator=(const CLAPIdleTimer&) = delete;

    /// Whether it is this timer of the host's that has gone off.
    [[nodiscard]] bool is(clap_id timer) const { return timer_ == timer; }

private:
    void askAgainAndAgain(const std::stop_token& stop) const;

    const CLAPHost& host_;
    std::optional<clap_id> timer_;
    std::jthread thread_;  ///< last, so that it ends first
};

/// An instance's editor in the host's window, and what makes it run. [main]
struct CLAPEditor {
    explicit CLAPEditor(CLAPInstance& instance) : view(instance.session), timer(instance.host) {}

    EmbeddedEditor view;
    CLAPIdleTimer timer;
};

}  // namespace quillo
