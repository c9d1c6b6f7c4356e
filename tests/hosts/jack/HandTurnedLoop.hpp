// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "hosts/jack/EventLoop.hpp"

namespace quillo::test {

/// A loop that a test turns.
class HandTurnedLoop final : public EventLoop {
public:
    void watch(int descriptor, std::function<void()> callback) override {
        callbacks[descriptor] = std::move(callback);
    }
    void unwatch(int descriptor) override { callbacks.erase(descriptor); }
    void setTick(std::function<void()> function) override { tick = std::move(function); }
    void quit(int exitStatus) override { status = exitStatus; }

    std::map<int, std::function<void()>> callbacks;
    std::function<void()> tick;
    std::optional<int> status;
};

}  // namespace quillo::test
