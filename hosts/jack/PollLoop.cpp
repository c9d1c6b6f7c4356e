// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/PollLoop.hpp"

#include <poll.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <system_error>
#include <utility>
#include <vector>

namespace quillo {

PollLoop::PollLoop() : timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
    constexpr long nanosecondsPerSecond = 1'000'000'000;
    const timespec period{0, nanosecondsPerSecond / ticksPerSecond};
    const itimerspec setting{period, period};
    if (!timer_.isOpen() || ::timerfd_settime(timer_.number(), 0, &setting, nullptr) != 0) {
        throw std::system_error(errno, std::generic_category(), "no timer");
    }
}

void PollLoop::watch(int descriptor, std::function<void()> callback) {
    callbacks_[descriptor] = std::move(callback);
}

void PollLoop::setTick(std::function<void()> tick) {
    watch(timer_.number(), [this, tick = std::move(tick)] {
        std::uint64_t periods = 0;
        if (::read(timer_.number(), &periods, sizeof periods) > 0) {
            tick();
        }
    });
}

int PollLoop::run() {
    while (!status_) {
        wait();
    }
    return *status_;
}

void PollLoop::wait() {
    constexpr int noLimit = -1;
    std::vector<pollfd> watched;
    watched.reserve(callbacks_.size());
    for (const auto& [descriptor, callback] : callbacks_) {
        watched.push_back({descriptor, POLLIN, 0});
    }
    if (::poll(watched.data(), watched.size(), noLimit) < 0) {
        return;
    }
    for (const auto& found : watched) {
        const auto callback = callbacks_.find(found.fd);
        if (found.revents != 0 && !status_ && callback != callbacks_.end()) {
            callback->second();
        }
    }
}

}  // namespace quillo
