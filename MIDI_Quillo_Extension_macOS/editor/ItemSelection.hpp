// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

#include "platform/UUID.hpp"

namespace quillo {

/// Which items of a list are chosen together: one alone, one more or one less, or all from the one that was
/// chosen last by itself (the anchor) to another. Items that are not in the list are ignored.
///
///     selection.choose(second);        // a click
///     selection.extendTo(fifth);       // with Shift: second to fifth
///     selection.toggle(third);         // with Ctrl: second, fourth and fifth
class ItemSelection {
public:
    /// The items of the list from now on, in order. Those that are gone are chosen no longer.
    void follow(std::vector<UUID> items);

    void choose(const UUID& item);
    void toggle(const UUID& item);
    /// Chooses all from the anchor to the item, and no others; from itself where there is no anchor.
    void extendTo(const UUID& item);
    void chooseAll();
    /// Chooses these alone; the first is the anchor.
    void chooseAll(const std::vector<UUID>& items);
    void clear();

    [[nodiscard]] bool contains(const UUID& item) const { return chosen_.contains(item); }
    [[nodiscard]] bool isEmpty() const { return chosen_.empty(); }
    /// In the list's order.
    [[nodiscard]] std::vector<UUID> chosen() const;
    /// What is handled together with an item: all that are chosen, if it is one of them, or else it alone.
    [[nodiscard]] std::vector<UUID> togetherWith(const UUID& item) const;

private:
    [[nodiscard]] std::optional<std::size_t> find(const UUID& item) const;

    std::vector<UUID> items_;
    std::set<UUID> chosen_;
    std::optional<UUID> anchor_;
};

}  // namespace quillo
