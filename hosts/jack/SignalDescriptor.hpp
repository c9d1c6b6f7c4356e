// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csignal>
#include <initializer_list>
#include <map>
#include <optional>

#include "platform/Descriptor.hpp"

namespace quillo {

/// Signals as things to read: nothing runs in a handler. From its making on they are blocked in this thread
/// and in those that it starts, so that it must come before any other thread; not so in processes that it
/// starts. [main]
class SignalDescriptor {
public:
    /// Throws `std::system_error` when the system has no descriptor left.
    SignalDescriptor(std::initializer_list<int> signals);
    ~SignalDescriptor();
    SignalDescriptor(const SignalDescriptor&) = delete;
    SignalDescriptor& operator=(const SignalDescriptor&) = delete;

    /// Can be read when a signal has come.
    [[nodiscard]] int number() const { return descriptor_.number(); }

    /// A signal that has come, or nothing.
    [[nodiscard]] std::optional<int> take() const;

    /// The signals do again what they did before, as they do when this is gone: whatever a library has told
    /// them meanwhile.
    void release();

private:
    std::map<int, struct sigaction> actionsBefore_;
    sigset_t maskBefore_{};
    Descriptor descriptor_;
};

}  // namespace quillo
