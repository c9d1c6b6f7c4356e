// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "log/EventLogEntry.hpp"
#include "platform/RealTime.hpp"
#include "platform/RealTimeFunction.hpp"

namespace quillo {

/// Where a unit reports log entries, and that a block has ended: the render thread calls it, the main thread
/// may replace it at any time. At first it does nothing.
///
/// A callback that was replaced may still be running, so all that were ever given live as long as this
/// object. They are few: one is given when an editor connects, one when a program prints the log.
class LogCallback {
public:
    using Function = RealTimeFunction<void(const EventLogEntry& entry)>;
    using EndOfBlock = RealTimeFunction<void()>;

    /// [main] From the next entry on, `function` gets them; an absent one is as good as none.
    LogCallback& operator=(Function function);

    /// [main] The same, and `endOfBlock` is called when a block has ended.
    void listen(Function function, EndOfBlock endOfBlock);

    /// [main] From the next entry on, `function` gets them too, after those that get them now.
    void also(Function function);

    /// [render] Whether there are listeners. Usually nobody listens, and then no entry need be made.
    explicit operator bool() const QUILLO_REALTIME {
        return current_.load(std::memory_order_relaxed) != nullptr;
    }

    /// [render]
    void operator()(const EventLogEntry& entry) const QUILLO_REALTIME {
        if (const auto* listener = current_.load(std::memory_order_acquire)) {
            listener->function(entry);
        }
    }

    /// [render] Once a block, behind its last entry.
    void endBlock() const QUILLO_REALTIME {
        const auto* listener = current_.load(std::memory_order_acquire);
        if (listener != nullptr && listener->endOfBlock) {
            listener->endOfBlock();
        }
    }

private:
    struct Listener {
        Function function;
        EndOfBlock endOfBlock;
    };

    std::vector<std::unique_ptr<const Listener>> given_;
    std::atomic<const Listener*> current_{nullptr};  ///< written by [main]: hands a listener over
};

}  // namespace quillo
