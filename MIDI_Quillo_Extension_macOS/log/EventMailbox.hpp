// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

#include "log/EventLogEntry.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// Carries log entries from the render thread to the main thread without a lock. What is posted can be taken
/// once it was handed over. When it is emptied too seldom all but the newest `keptEntries` are lost.
///
/// One thread posts and hands over, one thread takes. An entry travels in a node; the nodes are made once and
/// are always in one of five places: the poster's own stock, the chain that it collects, the chain that it
/// has handed over, the taker's hands, or the chain of returned nodes. Either side takes a whole chain at
/// once, so no node is ever taken out of a chain by one side while the other looks at it.
class EventMailbox {
public:
    /// How many of the newest entries are never lost: as many as a log shows.
    static constexpr std::size_t keptEntries = 100;

    EventMailbox();
    EventMailbox(const EventMailbox&) = delete;
    EventMailbox& operator=(const EventMailbox&) = delete;

    /// [render] Never fails and never waits; touches nothing that another thread looks at.
    void post(const EventLogEntry& entry) QUILLO_REALTIME;

    /// [render] What was posted can be taken from now on. Once a block: it is the part that costs.
    void handOver() QUILLO_REALTIME;

    /// [main] What was handed over since the last call and not lost, oldest first.
    [[nodiscard]] std::vector<EventLogEntry> takeAll();

private:
    struct Node {
        EventLogEntry entry{0, EventLogEntryVariants::MIDI{}};
        Node* next = nullptr;
    };

    /// From the oldest entry to the newest.
    struct Chain {
        Node* first = nullptr;
        Node* last = nullptr;
        std::size_t count = 0;

        void append(const Chain& other) QUILLO_REALTIME;
        [[nodiscard]] Node* takeFirst() QUILLO_REALTIME;
    };

    [[nodiscard]] Node* takeFreeNode() QUILLO_REALTIME;
    void collectUnread() QUILLO_REALTIME;

    std::vector<Node> nodes_;
    Node* stock_ = nullptr;  ///< [render]
    Chain collected_;        ///< [render]
    Chain handedOver_;       ///< [render] valid while `posted_` is not null
    std::atomic<Node*> posted_{nullptr};
    std::atomic<Node*> returned_{nullptr};
};

}  // namespace quillo
