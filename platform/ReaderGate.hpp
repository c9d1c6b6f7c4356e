// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/RealTime.hpp"

namespace quillo {

/// A gate that one thread passes all the time and others close now and then, waiting until it has left.
/// Passing never waits, and where the system can fence off other threads (Linux) the closer pays for both:
/// then it costs no locked instruction.
///
/// Memory order: what the closer wrote before `open()` is seen by the reader that enters after it; what the
/// reader did inside is seen by the closer once `close()` returns.
class ReaderGate {
public:
    ReaderGate();

    /// [one thread at a time] Enters unless the gate is closed. After `true`, `leave()` must follow. Entries
    /// can be nested. But a thread that is turned away while inside must leave: the closer waits for it, and
    /// turns it away until then.
    [[nodiscard]] bool tryEnter() QUILLO_REALTIME {
        setInside(inside_.load(std::memory_order_relaxed) + 1);
        if (!closed_.load()) {
            return true;
        }
        leave();
        return false;
    }

    /// [the thread that entered] Leaves, and wakes a closer that waits.
    void leave() QUILLO_REALTIME {
        setInside(inside_.load(std::memory_order_relaxed) - 1);
        if (closed_.load()) {
            wakeCloser();
        }
    }

    /// [not render] Keeps readers out from now on, and returns once the one inside has left. Closers must
    /// exclude each other.
    void close();

    /// [not render] Opens a closed gate.
    void open();

private:
    /// The reader writes `inside_` and then reads `closed_`, the closer the other way round: one of them sees
    /// the other when neither processor puts the reading first.
    void setInside(std::uint32_t inside) QUILLO_REALTIME {
        if (closerFences_) {
            inside_.store(inside, std::memory_order_release);
            std::atomic_signal_fence(std::memory_order_seq_cst);
        } else {
            inside_.store(inside);
        }
    }

    void wakeCloser() QUILLO_REALTIME;

    const bool closerFences_;
    std::atomic<bool> closed_{false};
    std::atomic<std::uint32_t> inside_{0};  ///< how many times the reader has entered
};

}  // namespace quillo
