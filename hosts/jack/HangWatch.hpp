// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <initializer_list>
#include <thread>

#include "hosts/jack/WakeDescriptor.hpp"
#include "platform/Descriptor.hpp"

namespace quillo {

/// Stands by while [main] makes a call that may never return: a server that hangs blocks its callers.
/// When one of the signals comes meanwhile, and the call has not returned a second later, the program ends at
/// once, with this exit status; so what shall be kept must be kept before. A call that returns in time leaves
/// the signal as it is.
///
///     const HangWatch watch({SIGTERM}, exitSuccess);
///     callTheServer();
class HangWatch {
public:
    /// The signals are blocked. Throws `std::system_error` when the system has no descriptor or thread left.
    HangWatch(std::initializer_list<int> signals, int status);
    /// The call has returned.
    ~HangWatch();
    HangWatch(const HangWatch&) = delete;
    HangWatch& operator=(const HangWatch&) = delete;

private:
    void watch() const;

    const int status_;
    Descriptor signals_;
    WakeDescriptor returned_;
    std::jthread thread_;
};

}  // namespace quillo
