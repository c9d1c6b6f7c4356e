// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <optional>

#include "hosts/jack/EventLoop.hpp"
#include "platform/Descriptor.hpp"

namespace quillo {

/// The loop of a program without a window. [main]
class PollLoop final : public EventLoop {
public:
    /// Throws `std::system_error` when the system has no timer left.
    PollLoop();

    void watch(int descriptor, std::function<void()> callback) override;
    void unwatch(int descriptor) override { callbacks_.erase(descriptor); }
    void setTick(std::function<void()> tick) override;
    void quit(int status) override { status_ = status; }

    /// Runs until `quit`, and returns its status.
    int run();

private:
    void wait();

    Descriptor timer_;
    std::map<int, std::function<void()>> callbacks_;
    std::optional<int> status_;
};

}  // namespace quillo
