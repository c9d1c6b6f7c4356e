// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyDragAndDropDropDelegate.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

std::vector<UUID> freshItems(std::size_t count) {
    std::vector<UUID> items;
    while (items.size() < count) {
        items.emplace_back();
    }
    return items;
}

TEST(MyDragAndDropDropDelegate, TheDraggedItemGoesIntoTheGap) {
    const auto items = freshItems(4);
    const auto drop = [&items](std::size_t dragged, std::size_t gap) {
        return MyDragAndDropDropDelegate{{items[dragged]}, gap}.itemsAfterDrop(items);
    };
    EXPECT_EQ(drop(0, 4), (std::vector<UUID>{items[1], items[2], items[3], items[0]}));
    EXPECT_EQ(drop(0, 2), (std::vector<UUID>{items[1], items[0], items[2], items[3]}));
    EXPECT_EQ(drop(3, 0), (std::vector<UUID>{items[3], items[0], items[1], items[2]}));
    EXPECT_EQ(drop(2, 1), (std::vector<UUID>{items[0], items[2], items[1], items[3]}));
}

TEST(MyDragAndDropDropDelegate, TheGapsBesideItLeaveItWhereItIs) {
    const auto items = freshItems(3);
    for (std::size_t position = 0; position < items.size(); ++position) {
        EXPECT_EQ((MyDragAndDropDropDelegate{{items[position]}, position}.newPosition(items)), std::nullopt);
        EXPECT_EQ((MyDragAndDropDropDelegate{{items[position]}, position + 1}.newPosition(items)),
                  std::nullopt);
    }
}

TEST(MyDragAndDropDropDelegate, EveryDropKeepsEveryItemOnceAndPutsTheDraggedOneWhereItSays) {
    const auto items = freshItems(7);
    auto sorted = items;
    std::sort(sorted.begin(), sorted.end());
    for (std::size_t dragged = 0; dragged < items.size(); ++dragged) {
        for (std::size_t gap = 0; gap <= items.size() + 2; ++gap) {
            const MyDragAndDropDropDelegate delegate{{items[dragged]}, gap};
            auto after = delegate.itemsAfterDrop(items);
            EXPECT_EQ(after[delegate.newPosition(items).value_or(dragged)], items[dragged]);
            std::sort(after.begin(), after.end());
            EXPECT_EQ(after, sorted);
        }
    }
}

TEST(MyDragAndDropDropDelegate, ItemsThatAreDraggedTogetherStandTogetherInTheirOrder) {
    const auto items = freshItems(5);
    const auto drop = [&items](std::size_t gap) {
        const MyDragAndDropDropDelegate delegate{{items[3], items[1]}, gap};
        EXPECT_EQ(delegate.itemsAfterDrop(items)[delegate.newPosition(items).value()], items[1]);
        return delegate.itemsAfterDrop(items);
    };
    using Items = std::vector<UUID>;
    EXPECT_EQ(drop(0), (Items{items[1], items[3], items[0], items[2], items[4]}));
    EXPECT_EQ(drop(2), (Items{items[0], items[1], items[3], items[2], items[4]}));
    EXPECT_EQ(drop(3), (Items{items[0], items[2], items[1], items[3], items[4]}));
    EXPECT_EQ(drop(9), (Items{items[0], items[2], items[4], items[1], items[3]}));
    const MyDragAndDropDropDelegate together{{items[1], items[2]}, 2};
    EXPECT_EQ(together.newPosition(items), std::nullopt);
}

TEST(MyDragAndDropDropDelegate, WhatIsNotInTheListIsNotDropped) {
    const auto items = freshItems(3);
    EXPECT_EQ((MyDragAndDropDropDelegate{{UUID()}, 1}.itemsAfterDrop(items)), items);
}

}  // namespace
}  // namespace quillo
