// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/EventMailbox.hpp"

#include <algorithm>

namespace quillo {

// A full stack, another one in the taker's hands, and the node that is being filled.
EventMailbox::EventMailbox() : nodes_(2 * maximumHeight + 1) {
    for (auto& node : nodes_) {
        node.below = stock_;
        stock_ = &node;
    }
}

/// Only the poster adds to the stack: what it finds there, here and below, it has written itself.
void EventMailbox::post(const EventLogEntry& entry) QUILLO_REALTIME {
    auto* node = takeFreeNode();
    node->entry = entry;
    auto* top = posted_.load(std::memory_order_relaxed);
    do {
        node->below = top;
        node->height = top != nullptr ? top->height + 1 : 1;
    } while (!posted_.compare_exchange_weak(top, node, std::memory_order_release, std::memory_order_relaxed));
    if (node->height == maximumHeight) {
        dropOldest();
    }
}

EventMailbox::Node* EventMailbox::takeFreeNode() QUILLO_REALTIME {
    if (stock_ == nullptr) {
        stock_ = returned_.exchange(nullptr, std::memory_order_acquire);
    }
    auto* node = stock_;
    stock_ = node->below;
    return node;
}

/// For the same reason it can put back as it was what it has taken off.
void EventMailbox::dropOldest() QUILLO_REALTIME {
    auto* top = posted_.exchange(nullptr, std::memory_order_relaxed);
    if (top == nullptr) {
        return;
    }
    auto* oldestKept = top;
    std::size_t kept = 1;
    for (; kept < keptEntries && oldestKept->below != nullptr; ++kept) {
        oldestKept = oldestKept->below;
    }
    while (auto* dropped = oldestKept->below) {
        oldestKept->below = dropped->below;
        dropped->below = stock_;
        stock_ = dropped;
    }
    for (auto* node = top; node != nullptr; node = node->below) {
        node->height = kept--;
    }
    posted_.store(top, std::memory_order_release);
}

std::vector<EventLogEntry> EventMailbox::takeAll() {
    std::vector<EventLogEntry> entries;
    auto* node = posted_.exchange(nullptr, std::memory_order_acquire);
    while (node != nullptr) {
        entries.push_back(node->entry);
        auto* below = node->below;
        node->below = returned_.load(std::memory_order_relaxed);
        while (!returned_.compare_exchange_weak(node->below, node, std::memory_order_release,
                                                std::memory_order_relaxed)) {
        }
        node = below;
    }
    std::ranges::reverse(entries);
    return entries;
}

}  // namespace quillo
