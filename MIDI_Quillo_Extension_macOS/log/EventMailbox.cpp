// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/EventMailbox.hpp"

#include <utility>

namespace quillo {

// What is collected, what was handed over, and what is in the taker's hands.
EventMailbox::EventMailbox() : nodes_(3 * keptEntries) {
    for (auto& node : nodes_) {
        node.next = std::exchange(stock_, &node);
    }
}

void EventMailbox::Chain::append(const Chain& other) QUILLO_REALTIME {
    (count == 0 ? first : last->next) = other.first;
    last = other.last;
    count += other.count;
}

EventMailbox::Node* EventMailbox::Chain::takeFirst() QUILLO_REALTIME {
    --count;
    return std::exchange(first, first->next);
}

void EventMailbox::post(const EventLogEntry& entry) QUILLO_REALTIME {
    auto* node = collected_.count == keptEntries ? collected_.takeFirst() : takeFreeNode();
    node->entry = entry;
    node->next = nullptr;
    collected_.append({node, node, 1});
}

EventMailbox::Node* EventMailbox::takeFreeNode() QUILLO_REALTIME {
    if (stock_ == nullptr) {
        stock_ = returned_.exchange(nullptr, std::memory_order_acquire);
    }
    return std::exchange(stock_, stock_->next);
}

void EventMailbox::handOver() QUILLO_REALTIME {
    if (collected_.count == 0) {
        return;
    }
    if (posted_.exchange(nullptr, std::memory_order_relaxed) != nullptr) {
        collectUnread();
    }
    handedOver_ = std::exchange(collected_, {});
    posted_.store(handedOver_.first, std::memory_order_release);
}

/// What was handed over before, and not taken, comes before what is new. The poster has written it itself.
void EventMailbox::collectUnread() QUILLO_REALTIME {
    while (handedOver_.count + collected_.count > keptEntries) {
        auto* dropped = handedOver_.takeFirst();
        dropped->next = std::exchange(stock_, dropped);
    }
    handedOver_.append(collected_);
    collected_ = handedOver_;
}

std::vector<EventLogEntry> EventMailbox::takeAll() {
    std::vector<EventLogEntry> entries;
    auto* const first = posted_.exchange(nullptr, std::memory_order_acquire);
    auto* last = first;
    for (auto* node = first; node != nullptr; node = node->next) {
        entries.push_back(node->entry);
        last = node;
    }
    if (first != nullptr) {
        last->next = returned_.load(std::memory_order_relaxed);
        while (!returned_.compare_exchange_weak(last->next, first, std::memory_order_release,
                                                std::memory_order_relaxed)) {
        }
    }
    return entries;
}

}  // namespace quillo
