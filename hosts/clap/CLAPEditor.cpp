// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPEditor.hpp"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace quillo {

namespace {

constexpr std::chrono::milliseconds period{33};

}  // namespace

CLAPIdleTimer::CLAPIdleTimer(const CLAPHost& host)
    : host_(host), timer_(host.startTimer(static_cast<std::uint32_t>(period.count()))) {
    if (!timer_) {
        thread_ = std::jthread([this](const std::stop_token& stop) { askAgainAndAgain(stop); });
    }
}

CLAPIdleTimer::~CLAPIdleTimer() {
    if (timer_) {
        host_.stopTimer(*timer_);
    }
}

void CLAPIdleTimer::askAgainAndAgain(const std::stop_token& stop) const {
    std::mutex mutex;
    std::condition_variable_any stopped;
    std::unique_lock lock(mutex);
    while (!stop.stop_requested()) {
        host_.requestCallback();
        stopped.wait_for(lock, stop, period, [] { return false; });
    }
}

}  // namespace quillo
