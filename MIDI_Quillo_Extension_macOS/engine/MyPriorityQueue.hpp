// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <utility>

namespace quillo {

/// A queue that hands out first an element that is due first.
template <class Queue, class Element>
concept MyPriorityQueue = requires(Queue queue, const Queue constQueue, Element element) {
    queue.push(std::move(element));
    { constQueue.peek() } -> std::same_as<const Element*>;
    { queue.pop() } -> std::same_as<std::optional<Element>>;
    { constQueue.size() } -> std::same_as<std::size_t>;
};

}  // namespace quillo
