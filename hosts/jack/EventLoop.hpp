// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace quillo {

/// The main thread's loop, as the program needs it: with a window it is JUCE's. [main]
class EventLoop {
public:
    /// How often `tick` runs in a second.
    static constexpr int ticksPerSecond = 30;

    virtual ~EventLoop() = default;
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    /// `callback` runs whenever the descriptor can be read.
    virtual void watch(int descriptor, std::function<void()> callback) = 0;
    /// Not any more. Also from within a callback.
    virtual void unwatch(int descriptor) = 0;
    virtual void setTick(std::function<void()> tick) = 0;

    /// Ends the loop soon, and the program with this exit status.
    virtual void quit(int status) = 0;

protected:
    EventLoop() = default;
};

}  // namespace quillo
