// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "platform/UUID.hpp"

namespace quillo {

/// A drag under way over a list: the item that is dragged, and the gap where it would go if it were let go now.
/// Whatever is dropped, each item stays in the list exactly once.
struct MyDragAndDropDropDelegate {
    UUID draggedItem;
    /// In front of the item at this position; the number of items for the end.
    std::size_t gap = 0;

    /// The dragged item's position after the drop; nothing when it would stay where it is or is not in the list.
    [[nodiscard]] std::optional<std::size_t> newPosition(const std::vector<UUID>& items) const {
        const auto found = std::find(items.begin(), items.end(), draggedItem);
        if (found == items.end()) {
            return std::nullopt;
        }
        const auto position = static_cast<std::size_t>(found - items.begin());
        const auto target = std::min(gap, items.size());
        const auto result = target > position ? target - 1 : target;
        return result != position ? std::optional(result) : std::nullopt;
    }

    /// The list after the drop.
    [[nodiscard]] std::vector<UUID> itemsAfterDrop(std::vector<UUID> items) const {
        if (const auto position = newPosition(items)) {
            items.erase(std::find(items.begin(), items.end(), draggedItem));
            items.insert(items.begin() + static_cast<std::vector<UUID>::difference_type>(*position),
                         draggedItem);
        }
        return items;
    }
};

}  // namespace quillo
