// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "engine/SampleTime.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// A queue that hands out first an element that is due first.
template <class Queue, class Element>
concept MyPriorityQueue = requires(Queue queue, const Queue constQueue, Element element) {
    queue.push(std::move(element));
    { constQueue.peek() } -> std::same_as<const Element*>;
    { queue.pop() } -> std::same_as<std::optional<Element>>;
    { constQueue.size() } -> std::same_as<std::size_t>;
};

/// A binary heap of elements that have a `time`: no element is due before its parent, so the root is one that
/// is due first. Elements of one time leave in the order in which they were pushed.
///
/// What is sifted are light nodes; the elements lie still in a pool of slots. All storage is made and written
/// once, at construction: neither pushing nor popping allocates, or is the first to touch a page of memory.
///
/// Each element has the number of its push, from 1 on, which no other ever has.
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

    ~MyBinaryHeap() { clear(); }

    /// Inserts an element. When all slots are in use it takes the root's place: the element that is due first
    /// is lost. A heap without slots takes nothing.
    void push(Element added) QUILLO_REALTIME {
        if (size_ < capacity_) {
            const auto slot = size_ < slotsUsed_ ? nodes_[size_].slot() : slotsUsed_++;
            const auto* held = std::construct_at(&pool_[slot].element, std::move(added));
            siftUp(size_++, node(held->time, slot));
        } else if (size_ > 0) {
            ++lost_;
            element(0) = std::move(added);
            siftDown(0, node(element(0).time, nodes_[0].slot()));
        }
    }

    /// The root, or null when the heap is empty. Valid until the next push or pop.
    [[nodiscard]] const Element* peek() const QUILLO_REALTIME { return size_ > 0 ? &element(0) : nullptr; }

    /// Removes and returns the root; nothing when the heap is empty.
    [[nodiscard]] std::optional<Element> pop() QUILLO_REALTIME {
        if (size_ == 0) {
            return std::nullopt;
        }
        std::optional<Element> root(std::move(element(0)));
        erase(0);
        return root;
    }

    /// Removes the element of this number, wherever it is; false when it is not held. Looks at all that are.
    [[nodiscard]] bool remove(std::uint64_t number) QUILLO_REALTIME {
        for (std::size_t place = 0; place < size_; ++place) {
            if (nodes_[place].number() == number) {
                erase(place);
                return true;
            }
        }
        return false;
    }

    /// Removes all elements.
    void clear() QUILLO_REALTIME {
        while (size_ > 0) {
            erase(size_ - 1);
        }
    }

    /// The slots below this one have held elements, or still do. An element stays in its slot as long as it
    /// is held.
    [[nodiscard]] std::size_t slotsUsed() const QUILLO_REALTIME { return slotsUsed_; }

    /// The element in a slot; null when the slot is empty.
    [[nodiscard]] const Element* inSlot(std::size_t slot) const QUILLO_REALTIME {
        return pool_[slot].number != 0 ? &pool_[slot].element : nullptr;
    }

    /// The number of the element in a slot; 0 when the slot is empty.
    [[nodiscard]] std::uint64_t numberInSlot(std::size_t slot) const QUILLO_REALTIME {
        return pool_[slot].number;
    }

    /// How many elements are held.
    [[nodiscard]] std::size_t size() const QUILLO_REALTIME { return size_; }

    /// How many elements were lost because all slots were in use.
    [[nodiscard]] std::uint64_t lost() const QUILLO_REALTIME { return lost_; }

private:
    /// An element's place in the order, and its slot in the pool.
    struct Node {
        SampleTime time;
        std::uint64_t numberAndSlot;  ///< above the slot, the number of the push

        [[nodiscard]] std::size_t slot() const QUILLO_REALTIME { return numberAndSlot % mostSlots; }
        [[nodiscard]] std::uint64_t number() const QUILLO_REALTIME { return numberAndSlot / mostSlots; }

        [[nodiscard]] bool leavesBefore(const Node& other) const QUILLO_REALTIME {
            return time != other.time ? time < other.time : numberAndSlot < other.numberAndSlot;
        }
    };

    /// Room for an element that is made when it is pushed; written before, for the system to provide its
    /// memory.
    struct Slot {
        Slot() : empty{} {}
        ~Slot() {}
        std::uint64_t number = 0;  ///< of the element; 0 while there is none
        union {
            std::array<std::byte, sizeof(Element)> empty;
            Element element;
        };
    };

    [[nodiscard]] Element& element(std::size_t place) const QUILLO_REALTIME {
        return pool_[nodes_[place].slot()].element;
    }

    [[nodiscard]] Node node(SampleTime time, std::size_t slot) QUILLO_REALTIME {
        pool_[slot].number = ++pushed_;
        return {time, pushed_ * mostSlots + slot};
    }

    /// What takes the place is the last one, a leaf.
    void erase(std::size_t place) QUILLO_REALTIME {
        const auto freed = nodes_[place];
        std::destroy_at(&element(place));
        pool_[freed.slot()].number = 0;
        const auto last = nodes_[--size_];
        if (place < size_) {
            siftDown(place, last);
        }
        nodes_[size_] = freed;
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

    /// Moves the hole down to a leaf, and up from there, as far as the root: what comes in its place was a
    /// leaf itself and seldom belongs much higher.
    void siftDown(std::size_t hole, Node moved) QUILLO_REALTIME {
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
    std::uint64_t lost_ = 0;
    std::unique_ptr<Node[]> nodes_;  ///< those at `size_` and behind it keep the slots that are free again
    std::unique_ptr<Slot[]> pool_;
};

}  // namespace quillo
