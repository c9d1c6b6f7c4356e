// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/HangWatch.hpp"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <span>

#include "hosts/jack/SignalSet.hpp"

namespace quillo {

namespace {

/// Waits until one of the descriptors can be read, so many milliseconds at most.
void waitForOneOf(std::span<pollfd> watched, int milliseconds) {
    while (::poll(watched.data(), watched.size(), milliseconds) < 0 && errno == EINTR) {
    }
}

}  // namespace

HangWatch::HangWatch(std::initializer_list<int> signals, int status)
    : status_(status), signals_(openSignals(signalSet(signals))), thread_([this] { watch(); }) {}

HangWatch::~HangWatch() {
    returned_.wake();
}

void HangWatch::watch() const {
    constexpr int noLimit = -1;
    constexpr int patience = 1000;
    std::array<pollfd, 2> watched{{{signals_.number(), POLLIN, 0}, {returned_.number(), POLLIN, 0}}};
    waitForOneOf(watched, noLimit);
    auto& [signal, returned] = watched;
    if (signal.revents != 0 && returned.revents == 0) {
        waitForOneOf({&returned, 1}, patience);
        if (returned.revents == 0) {
            ::_exit(status_);
        }
    }
}

}  // namespace quillo
