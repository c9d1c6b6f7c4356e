// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/RealTime.hpp"

namespace quillo {

/// A gate that many threads pass for a short while and that one thread at a time can close, waiting until
/// everybody inside has left. Passing costs one atomic addition each way and never waits.
///
/// Memory order: what the closer wrote before `open()` is seen by whoever enters after it; what a thread did
/// inside is seen by the closer once `close()` returns.
class ReaderGate {
public:
    /// [any] Enters unless the gate is closed. After `true`, `leave()` must follow.
    [[nodiscard]] bool tryEnter() QUILLO_REALTIME {
        if ((state_.fetch_add(1, std::memory_order_acquire) & closedBit) == 0) {
            return true;
        }
        leave();
        return false;
    }

    /// [any] Leaves; the last one out wakes a closer that waits.
    void leave() QUILLO_REALTIME {
        if (state_.fetch_sub(1, std::memory_order_acq_rel) == (closedBit | 1U)) {
            wakeCloser();
        }
    }

    /// [not render] Lets nobody in any more and returns once the last one has left. Closers must exclude each
    /// other.
    void close();

    /// [not render] Opens a closed gate.
    void open();

private:
    static constexpr std::uint32_t closedBit = 0x8000'0000U;

    void wakeCloser() QUILLO_REALTIME;

    /// The closed bit and the number of threads inside.
    std::atomic<std::uint32_t> state_{0};
};

}  // namespace quillo
