// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ReaderGate.hpp"

namespace quillo {

void ReaderGate::wakeCloser() QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("wakes the thread that closes the gate; waking does not wait")
    state_.notify_all();
    QUILLO_REALTIME_EXEMPT_END
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
