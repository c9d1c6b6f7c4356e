// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/EventMailbox.hpp"

#include <algorithm>

namespace quillo {

// A full stack that is collected, one that was handed over, and one in the taker's hands.
EventMailbox::EventMailbox() : nodes_(3 * maximumHeight) {
    for (auto& node : nodes_) {
        node.below = stock_;
        stock_ = &node;
    }
}

void EventMailbox::post(const EventLogEntry& entry) QUILLO_REALTIME {
    auto* node = takeFreeNode();
    node->entry = entry;
    node->below = collected_;
    if (collected_ == nullptr) {
        oldest_ = node;
    }
    collected_ = node;
    if (++height_ == maximumHeight) {
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

void EventMailbox::handOver() QUILLO_REALTIME {
    if (collected_ == nullptr) {
        return;
    }
    collectUnread();
    if (height_ >= maximumHeight) {
        dropOldest();
    }
    collected_->height = height_;
    posted_.store(collected_, std::memory_order_release);
    collected_ = nullptr;
    height_ = 0;
}

/// What was handed over and is still there lies below what is new. Only the poster puts nodes there: it has
/// written itself what it finds.
void EventMailbox::collectUnread() QUILLO_REALTIME {
    if (auto* unread = posted_.exchange(nullptr, std::memory_order_relaxed)) {
        oldest_->below = unread;
        height_ += unread->height;
    }
}

void EventMailbox::dropOldest() QUILLO_REALTIME {
    oldest_ = collected_;
    for (height_ = 1; height_ < keptEntries; ++height_) {
        oldest_ = oldest_->below;
    }
    while (auto* dropped = oldest_->below) {
        oldest_->below = dropped->below;
        dropped->below = stock_;
        stock_ = dropped;
    }
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
