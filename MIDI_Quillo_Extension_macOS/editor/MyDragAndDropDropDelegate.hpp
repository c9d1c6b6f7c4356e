// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <vector>

#include "platform/UUID.hpp"

namespace quillo {

/// A drag under way over a list: the items that are dragged together, and the gap where they would go if they
/// were let go now. Whatever is dropped, each item stays in the list exactly once.
struct MyDragAndDropDropDelegate {
    std::set<UUID> draggedItems;
    /// In front of the item at this position; the number of items for the end.
    std::size_t gap = 0;

    /// The position of the first dragged item after the drop; nothing when all would stay where they are.
    [[nodiscard]] std::optional<std::size_t> newPosition(const std::vector<UUID>& items) const {
        const auto after = itemsAfterDrop(items);
        if (after == items) {
            return std::nullopt;
        }
        const auto first =
            std::ranges::find_if(after, [this](const UUID& item) { return draggedItems.contains(item); });
        return static_cast<std::size_t>(first - after.begin());
    }

    /// The list after the drop: the dragged items stand together, in the order in which they stood.
    [[nodiscard]] std::vector<UUID> itemsAfterDrop(const std::vector<UUID>& items) const {
        std::vector<UUID> after;
        const auto gather = [&](bool dragged, std::size_t from, std::size_t end) {
            for (auto position = from; position < end; ++position) {
                if (draggedItems.contains(items[position]) == dragged) {
                    after.push_back(items[position]);
                }
            }
        };
        const auto place = std::min(gap, items.size());
        gather(false, 0, place);
        gather(true, 0, items.size());
        gather(false, place, items.size());
        return after;
    }
};

}  // namespace quillo
