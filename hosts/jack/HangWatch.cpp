// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/HangWatch.hpp"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <span>
#include <system_error>

#include "hosts/cli/ExitStatus.hpp"

namespace quillo {

namespace {

/// Waits until one of the descriptors can be read, so many milliseconds at most.
void waitForOneOf(std::span<pollfd> watched, int milliseconds) {
    while (::poll(watched.data(), watched.size(), milliseconds) < 0 && errno == EINTR) {
    }
}

}  // namespace

HangWatch::HangWatch(std::initializer_list<int> signals) {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : signals) {
        sigaddset(&set, signal);
    }
    signals_ = Descriptor(::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!signals_.isOpen()) {
        throw std::system_error(errno, std::generic_category(), "no signal descriptor");
    }
    thread_ = std::jthread([this] { watch(); });
}

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
            ::_exit(exitSuccess);
        }
    }
}

}  // namespace quillo
