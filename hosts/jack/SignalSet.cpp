// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SignalSet.hpp"

#include <sys/signalfd.h>

#include <cerrno>
#include <system_error>

namespace quillo {

sigset_t signalSet(std::initializer_list<int> signals) {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : signals) {
        sigaddset(&set, signal);
    }
    return set;
}

Descriptor openSignals(const sigset_t& signals) {
    Descriptor descriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!descriptor.isOpen()) {
        throw std::system_error(errno, std::generic_category(), "no signal descriptor");
    }
    return descriptor;
}

}  // namespace quillo
