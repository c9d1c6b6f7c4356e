// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

#include "log/EventLogEntry.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// Carries log entries from the render thread to the main thread without a lock. Whoever comes too late to
/// empty it misses the oldest entries, never the newest `keptEntries`.
///
/// One thread posts and one thread takes. An entry travels in a node; the nodes are made once and are always in
/// one of four places: the poster's own stock, the stack of posted entries (newest on top), the taker's hands,
/// or the stack of returned nodes. Either side takes a whole stack at once, so no node is ever taken off the
/// middle of a stack by one side while the other looks at it.
class EventMailbox {
public:
    /// How many of the newest entries are never lost: as many as a log shows.
    static constexpr std::size_t keptEntries = 100;

    EventMailbox();
    EventMailbox(const EventMailbox&) = delete;
    EventMailbox& operator=(const EventMailbox&) = delete;

    /// [render] Never fails and never waits.
    void post(const EventLogEntry& entry) QUILLO_REALTIME;

    /// [main] What was posted since the last call and not lost, oldest first.
    [[nodiscard]] std::vector<EventLogEntry> takeAll();

private:
    struct Node {
        EventLogEntry entry{0, EventLogEntryVariants::MIDI{}};
        Node* below = nullptr;
        std::size_t height = 0;  ///< in the stack of posted entries: this node and all below it
    };

    [[nodiscard]] Node* takeFreeNode() QUILLO_REALTIME;
    void dropOldest() QUILLO_REALTIME;

    /// How high the stack of posted entries may grow. Then all but the newest `keptEntries` are dropped.
    static constexpr std::size_t maximumHeight = 2 * keptEntries;

    std::vector<Node> nodes_;
    Node* stock_ = nullptr;  ///< [render]
    std::atomic<Node*> posted_{nullptr};
    std::atomic<Node*> returned_{nullptr};
};

}  // namespace quillo
