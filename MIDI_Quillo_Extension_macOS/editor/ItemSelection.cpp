// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ItemSelection.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quillo {

void ItemSelection::follow(std::vector<UUID> items) {
    items_ = std::move(items);
    const std::set<UUID> there(items_.begin(), items_.end());
    std::erase_if(chosen_, [&there](const UUID& item) { return !there.contains(item); });
    if (anchor_ && !there.contains(*anchor_)) {
        anchor_.reset();
    }
}

void ItemSelection::choose(const UUID& item) {
    chooseAll({item});
}

void ItemSelection::toggle(const UUID& item) {
    if (!find(item)) {
        return;
    }
    anchor_ = item;
    if (chosen_.erase(item) == 0) {
        chosen_.insert(item);
    }
}

void ItemSelection::extendTo(const UUID& item) {
    const auto to = find(item);
    if (!to) {
        return;
    }
    const auto from = find(anchor_.value_or(item)).value_or(*to);
    const auto [first, last] = std::minmax(from, *to);
    const auto at = [this](std::size_t position) {
        return items_.begin() + static_cast<std::ptrdiff_t>(position);
    };
    anchor_ = items_[from];
    chosen_ = {at(first), at(last + 1)};
}

void ItemSelection::chooseAll() {
    chosen_ = {items_.begin(), items_.end()};
}

void ItemSelection::chooseAll(const std::vector<UUID>& items) {
    const std::set<UUID> there(items_.begin(), items_.end());
    clear();
    for (const auto& item : items) {
        if (there.contains(item)) {
            anchor_ = anchor_.value_or(item);
            chosen_.insert(item);
        }
    }
}

void ItemSelection::clear() {
    chosen_.clear();
    anchor_.reset();
}

std::vector<UUID> ItemSelection::chosen() const {
    std::vector<UUID> chosen;
    std::ranges::copy_if(items_, std::back_inserter(chosen),
                         [this](const UUID& item) { return contains(item); });
    return chosen;
}

std::vector<UUID> ItemSelection::togetherWith(const UUID& item) const {
    return contains(item) ? chosen() : std::vector{item};
}

std::optional<std::size_t> ItemSelection::find(const UUID& item) const {
    const auto found = std::ranges::find(items_, item);
    return found != items_.end() ? std::optional(static_cast<std::size_t>(found - items_.begin()))
                                 : std::nullopt;
}

}  // namespace quillo
