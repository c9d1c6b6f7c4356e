// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "engine/MyPriorityQueue.hpp"
#include "engine/SampleTime.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// A binary heap of elements that have a `time`: no element is due before its parent, so the root is one that
/// is due first. Elements of one time leave in the order in which they were pushed.
///
/// What is sifted are light nodes; the elements lie still in a pool of slots. All storage is made and written
/// once, at construction: neither pushing nor popping allocates, or is the first to touch a page of memory.
///
/// No locking of its own.
template <class Element>
class MyBinaryHeap {
public:
    /// The greatest capacity.
    static constexpr std::size_t mostSlots = 1U << 16U;

    /// [any but render] Makes `capacity` empty slots, at most `mostSlots`.
    explicit MyBinaryHeap(std::size_t capacity)
        : capacity_(std::min(capacity, mostSlots)),
          nodes_(std::make_unique<Node[]>(capacity_)),
          pool_(std::make_unique<Slot[]>(capacity_)) {}

    MyBinaryHeap(const MyBinaryHeap&) = delete;
    MyBinaryHeap& operator=(const MyBinaryHeap&) = delete;

    ~MyBinaryHeap() {
        while (size_ > 0) {
            std::destroy_at(&element(--size_));
        }
    }

    /// Inserts an element. When all slots are in use it takes the root's place: the element that is due first
    /// is lost. A heap without slots takes nothing.
    void push(Element added) QUILLO_REALTIME {
        if (size_ < capacity_) {
            const auto slot = size_ < slotsUsed_ ? nodes_[size_].slot() : slotsUsed_++;
            const auto* held = std::construct_at(&pool_[slot].element, std::move(added));
            siftUp(size_++, node(held->time, slot));
        } else if (size_ > 0) {
            element(0) = std::move(added);
            siftDown(node(element(0).time, nodes_[0].slot()));
        }
    }

    /// The root, or null when there is none. Valid until the next push or pop.
    [[nodiscard]] const Element* peek() const QUILLO_REALTIME { return size_ > 0 ? &element(0) : nullptr; }

    /// Removes and returns the root; nothing when there is none.
    [[nodiscard]] std::optional<Element> pop() QUILLO_REALTIME {
        if (size_ == 0) {
            return std::nullopt;
        }
        std::optional<Element> root(std::move(element(0)));
        std::destroy_at(&element(0));
        const auto freed = nodes_[0];
        const auto last = nodes_[--size_];
        if (size_ > 0) {
            siftDown(last);
        }
        nodes_[size_] = freed;
        return root;
    }

    /// How many elements are held.
    [[nodiscard]] std::size_t size() const QUILLO_REALTIME { return size_; }

    /// How many elements can be held.
    [[nodiscard]] std::size_t capacity() const QUILLO_REALTIME { return capacity_; }

private:
    /// An element's place in the order, and its slot in the pool.
    struct Node {
        SampleTime time;
        std::uint64_t numberAndSlot;  ///< above the slot, the number of what was pushed before

        [[nodiscard]] std::size_t slot() const QUILLO_REALTIME { return numberAndSlot % mostSlots; }

        [[nodiscard]] bool leavesBefore(const Node& other) const QUILLO_REALTIME {
            return time != other.time ? time < other.time : numberAndSlot < other.numberAndSlot;
        }
    };

    /// Room for an element that is made when it is pushed; written before, for the system to provide its
    /// memory.
    union Slot {
        Slot() : empty{} {}
        ~Slot() {}
        std::array<std::byte, sizeof(Element)> empty;
        Element element;
    };

    [[nodiscard]] Element& element(std::size_t place) const QUILLO_REALTIME {
        return pool_[nodes_[place].slot()].element;
    }

    [[nodiscard]] Node node(SampleTime time, std::size_t slot) QUILLO_REALTIME {
        return {time, pushed_++ * mostSlots + slot};
    }

    /// Moves the hole up from `hole` to where `moved` belongs.
    void siftUp(std::size_t hole, Node moved) QUILLO_REALTIME {
        while (hole > 0) {
            const auto parent = (hole - 1) / 2;
            if (!moved.leavesBefore(nodes_[parent])) {
                break;
            }
            nodes_[hole] = nodes_[parent];
            hole = parent;
        }
        nodes_[hole] = moved;
    }

    /// Moves the hole from the root down to a leaf, and up from there: what comes in its place was a leaf
    /// itself and seldom belongs much higher.
    void siftDown(Node moved) QUILLO_REALTIME {
        std::size_t hole = 0;
        for (auto child = earlierChild(hole); child < size_; child = earlierChild(hole)) {
            nodes_[hole] = nodes_[child];
            hole = child;
        }
        siftUp(hole, moved);
    }

    /// Not below `size_` when there is no child.
    [[nodiscard]] std::size_t earlierChild(std::size_t parent) const QUILLO_REALTIME {
        const auto left = 2 * parent + 1;
        const auto right = left + 1;
        return right < size_ && nodes_[right].leavesBefore(nodes_[left]) ? right : left;
    }

    std::size_t capacity_;
    std::size_t size_ = 0;
    std::size_t slotsUsed_ = 0;  ///< slots below it have been in use
    std::uint64_t pushed_ = 0;
    std::unique_ptr<Node[]> nodes_;  ///< those at `size_` and behind it keep the slots that are free again
    std::unique_ptr<Slot[]> pool_;
};

}  // namespace quillo
