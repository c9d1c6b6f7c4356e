// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ReaderGate.hpp"

namespace quillo {

bool ReaderGate::tryEnter() QUILLO_REALTIME {
    const auto before = state_.fetch_add(1, std::memory_order_acquire);
    if ((before & closedBit) == 0) {
        return true;
    }
    leave();
    return false;
}

void ReaderGate::leave() QUILLO_REALTIME {
    const auto before = state_.fetch_sub(1, std::memory_order_acq_rel);
    if (before == (closedBit | 1U)) {
        QUILLO_REALTIME_EXEMPT("wakes the thread that closes the gate; waking does not wait")
        state_.notify_all();
        QUILLO_REALTIME_EXEMPT_END
    }
}

void ReaderGate::close() {
    auto state = state_.fetch_or(closedBit, std::memory_order_acq_rel) | closedBit;
    while (state != closedBit) {
        state_.wait(state, std::memory_order_acquire);
        state = state_.load(std::memory_order_acquire);
    }
}

void ReaderGate::open() {
    state_.fetch_and(~closedBit, std::memory_order_release);
}

}  // namespace quillo
