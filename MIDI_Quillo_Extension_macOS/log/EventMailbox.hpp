// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <vector>

#include "log/EventLogEntry.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// Carries log entries from the render thread to the main thread without a lock. What is posted can be taken
/// once it was handed over. When it is emptied too seldom all but the newest `keptEntries` are lost.
///
/// One thread posts and hands over, one thread takes. The entries lie in two rings that change hands as a
/// whole: the poster takes back the one that was not taken yet and adds to it, or takes a free one while
/// the other is with the taker. So neither side ever looks at a ring that the other one holds.
class EventMailbox {
public:
    /// How many of the newest entries are never lost: as many as a log shows.
    static constexpr std::size_t keptEntries = 100;

    EventMailbox();
    EventMailbox(const EventMailbox&) = delete;
    EventMailbox& operator=(const EventMailbox&) = delete;

    /// [render] Never fails and never waits.
    void post(const EventLogEntry& entry) QUILLO_REALTIME {
        if (collected_ == nullptr) {
            postFirst(entry);
        } else {
            collected_->append(entry);
        }
    }

    /// [render] What was posted can be taken from now on. Once a block.
    void handOver() QUILLO_REALTIME;

    /// [main] What was handed over since the last call and not lost, oldest first.
    [[nodiscard]] std::vector<EventLogEntry> takeAll();

private:
    struct Ring {
        std::array<EventLogEntry, keptEntries> entries;
        EventLogEntry* end = entries.data();  ///< where the next entry goes
        bool isFull = false;                  ///< so that the oldest entry lies there
        Ring* next = nullptr;                 ///< in the chain of free ones

        Ring();
        void append(const EventLogEntry& entry) QUILLO_REALTIME {
            auto& place = *end;
            if (++end == entries.data() + keptEntries) {
                end = entries.data();
                isFull = true;
            }
            place = entry;
        }
        /// Behind what is there; there must be room.
        void moveTo(std::vector<EventLogEntry>& taken);
    };

    void postFirst(const EventLogEntry& entry) QUILLO_REALTIME;

    std::array<Ring, 2> rings_;
    Ring* collected_ = nullptr;  ///< [render]
    Ring* free_;                 ///< [render]
    std::atomic<Ring*> posted_{nullptr};
    std::atomic<Ring*> returned_{nullptr};
};

}  // namespace quillo
