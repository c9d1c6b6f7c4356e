// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "engine/MyPriorityQueue.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// A binary heap over slots that are made once: no element is less than any of its children, so the root is a
/// greatest element. Neither pushing nor popping allocates. Elements that are equally great leave in any order.
///
/// No locking of its own.
template <class Element>
class MyBinaryHeap {
public:
    /// [any but render] Makes `capacity` empty slots.
    explicit MyBinaryHeap(std::size_t capacity) : data_(capacity) {}

    /// Inserts an element. When all slots are in use it takes the root's place: the greatest element is lost.
    /// A heap without slots takes nothing.
    void push(Element element) QUILLO_REALTIME {
        if (size_ < data_.size()) {
            data_[size_] = std::move(element);
            siftUp(size_++);
        } else if (size_ > 0) {
            data_[0] = std::move(element);
            siftDown();
        }
    }

    /// The root, or null when there is none. Valid until the next push or pop.
    [[nodiscard]] const Element* peek() const QUILLO_REALTIME {
        return size_ > 0 && data_[0] ? &*data_[0] : nullptr;
    }

    /// Removes and returns the root; nothing when there is none.
    [[nodiscard]] std::optional<Element> pop() QUILLO_REALTIME {
        if (size_ == 0) {
            return std::nullopt;
        }
        std::optional<Element> root = std::move(data_[0]);
        --size_;
        if (size_ > 0) {
            data_[0] = std::move(data_[size_]);
        }
        data_[size_].reset();
        siftDown();
        return root;
    }

    /// How many elements are held.
    [[nodiscard]] std::size_t size() const QUILLO_REALTIME { return size_; }

    /// How many elements can be held.
    [[nodiscard]] std::size_t capacity() const QUILLO_REALTIME { return data_.size(); }

private:
    void siftUp(std::size_t slot) QUILLO_REALTIME {
        while (slot > 0) {
            const auto parent = (slot - 1) / 2;
            if (*data_[slot] <= *data_[parent]) {
                return;
            }
            std::swap(data_[slot], data_[parent]);
            slot = parent;
        }
    }

    void siftDown() QUILLO_REALTIME {
        std::size_t parent = 0;
        for (auto child = greaterChild(parent); child < size_; child = greaterChild(parent)) {
            if (*data_[child] <= *data_[parent]) {
                return;
            }
            std::swap(data_[child], data_[parent]);
            parent = child;
        }
    }

    /// The slot of the greater child, the right one of equals; not below `size_` when there is no child.
    [[nodiscard]] std::size_t greaterChild(std::size_t parent) const QUILLO_REALTIME {
        const auto left = 2 * parent + 1;
        const auto right = left + 1;
        return right < size_ && !(*data_[left] > *data_[right]) ? right : left;
    }

    std::vector<std::optional<Element>> data_;
    std::size_t size_ = 0;
};

}  // namespace quillo
