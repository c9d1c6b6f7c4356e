// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SignalDescriptor.hpp"

#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "hosts/jack/SignalSet.hpp"

namespace quillo {

namespace {

sigset_t maskForChildren;

/// A browser or a server that is started from here must not inherit what is blocked here.
void unblockInChildren(const sigset_t& mask) {
    maskForChildren = mask;
    static const int registered =
        ::pthread_atfork(nullptr, nullptr, [] { ::pthread_sigmask(SIG_SETMASK, &maskForChildren, nullptr); });
    static_cast<void>(registered);
}

}  // namespace

SignalDescriptor::SignalDescriptor(std::initializer_list<int> signals) {
    for (const int signal : signals) {
        ::sigaction(signal, nullptr, &actionsBefore_[signal]);
    }
    const auto set = signalSet(signals);
    descriptor_ = openSignals(set);
    ::pthread_sigmask(SIG_BLOCK, &set, &maskBefore_);
    unblockInChildren(maskBefore_);
}

SignalDescriptor::~SignalDescriptor() {
    release();
}

void SignalDescriptor::release() {
    for (const auto& [signal, action] : actionsBefore_) {
        ::sigaction(signal, &action, nullptr);
    }
    ::pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
}

std::optional<int> SignalDescriptor::take() const {
    signalfd_siginfo info{};
    if (::read(number(), &info, sizeof info) != static_cast<ssize_t>(sizeof info)) {
        return std::nullopt;
    }
    return static_cast<int>(info.ssi_signo);
}

}  // namespace quillo
