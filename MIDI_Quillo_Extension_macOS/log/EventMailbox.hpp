// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

#include "log/EventLogEntry.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// Carries log entries from the render thread to the main thread without a lock. What is posted can be taken
/// once it was handed over. When it is emptied too seldom the oldest entries are lost, never the newest
/// `keptEntries`.
///
/// One thread posts and hands over, one thread takes. An entry travels in a node; the nodes are made once and
/// are always in one of five places: the poster's own stock, the stack that it collects, the stack of posted
/// entries (newest on top), the taker's hands, or the stack of returned nodes. Either side takes a whole stack
/// at once, so no node is ever taken off the middle of a stack by one side while the other looks at it.
class EventMailbox {
public:
    /// How many of the newest entries are never lost: as many as a log shows.
    static constexpr std::size_t keptEntries = 100;

    EventMailbox();
    EventMailbox(const EventMailbox&) = delete;
    EventMailbox& operator=(const EventMailbox&) = delete;

    /// [render] Never fails and never waits; touches nothing that another thread looks at.
    void post(const EventLogEntry& entry) QUILLO_REALTIME;

    /// [render] What was posted can be taken from now on: once a block, because it costs what some twenty
    /// posts cost.
    void handOver() QUILLO_REALTIME;

    /// [main] What was handed over since the last call and not lost, oldest first.
    [[nodiscard]] std::vector<EventLogEntry> takeAll();

private:
    struct Node {
        EventLogEntry entry{0, EventLogEntryVariants::MIDI{}};
        Node* below = nullptr;
        std::size_t height = 0;  ///< of the stack of posted entries; only its top knows it
    };

    [[nodiscard]] Node* takeFreeNode() QUILLO_REALTIME;
    void collectUnread() QUILLO_REALTIME;
    void dropOldest() QUILLO_REALTIME;

    /// How high a stack may grow. Then all but the newest `keptEntries` are dropped.
    static constexpr std::size_t maximumHeight = 2 * keptEntries;

    std::vector<Node> nodes_;
    Node* stock_ = nullptr;      ///< [render]
    Node* collected_ = nullptr;  ///< [render] the newest of what is not handed over
    Node* oldest_ = nullptr;     ///< [render] the lowest of these, while there are any
    std::size_t height_ = 0;     ///< [render] how many they are
    std::atomic<Node*> posted_{nullptr};
    std::atomic<Node*> returned_{nullptr};
};

}  // namespace quillo
