// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/EventMailbox.hpp"

#include <utility>

namespace quillo {

EventMailbox::EventMailbox() : free_(&rings_[0]) {
    rings_[0].next = &rings_[1];
}

EventMailbox::Ring::Ring()
    : entries([]<std::size_t... I>(std::index_sequence<I...>) {
          return std::array{(static_cast<void>(I), EventLogEntry{0, EventLogEntryVariants::MIDI{}})...};
      }(std::make_index_sequence<keptEntries>())) {}

/// The taker returns a ring before it takes the next one: where one is gone, the other is found.
void EventMailbox::postFirst(const EventLogEntry& entry) QUILLO_REALTIME {
    collected_ = posted_.exchange(nullptr, std::memory_order_acquire);
    if (collected_ == nullptr) {
        if (free_ == nullptr) {
            free_ = returned_.exchange(nullptr, std::memory_order_acquire);
        }
        collected_ = std::exchange(free_, free_->next);
    }
    collected_->append(entry);
}

void EventMailbox::handOver() QUILLO_REALTIME {
    if (collected_ != nullptr) {
        posted_.store(std::exchange(collected_, nullptr), std::memory_order_release);
    }
}

/// Room is made before: a ring that is taken is always returned.
std::vector<EventLogEntry> EventMailbox::takeAll() {
    std::vector<EventLogEntry> entries;
    if (posted_.load(std::memory_order_relaxed) == nullptr) {
        return entries;
    }
    entries.reserve(keptEntries);
    auto* const ring = posted_.exchange(nullptr, std::memory_order_acq_rel);
    if (ring == nullptr) {
        return entries;
    }
    ring->moveTo(entries);
    ring->next = returned_.load(std::memory_order_relaxed);
    while (!returned_.compare_exchange_weak(ring->next, ring, std::memory_order_release,
                                            std::memory_order_relaxed)) {
    }
    return entries;
}

void EventMailbox::Ring::moveTo(std::vector<EventLogEntry>& taken) {
    auto* const begin = entries.data();
    if (isFull) {
        taken.insert(taken.end(), end, begin + keptEntries);
    }
    taken.insert(taken.end(), begin, end);
    end = begin;
    isFull = false;
}

}  // namespace quillo
