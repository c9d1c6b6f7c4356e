// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/InStableOrder.hpp"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace quillo {
namespace {

using Entry = std::pair<int, std::string>;

TEST(InStableOrder, SortsByTheKeyAndKeepsTheOrderOfEquals) {
    const std::vector<Entry> entries{{2, "a"}, {1, "b"}, {2, "c"}, {1, "d"}, {0, "e"}, {2, "f"}};
    EXPECT_THAT(inStableOrder(entries, &Entry::first),
                testing::ElementsAre(Entry{0, "e"}, Entry{1, "b"}, Entry{1, "d"}, Entry{2, "a"},
                                     Entry{2, "c"}, Entry{2, "f"}));
}

TEST(InStableOrder, KeepsThousandsOfEqualsInTheirOrder) {
    std::vector<Entry> entries;
    entries.reserve(5000);
    for (int i = 0; i < 5000; ++i) {
        entries.emplace_back(i % 3, std::to_string(i));
    }
    const auto ordered = inStableOrder(entries, &Entry::first);
    for (std::size_t i = 1; i < ordered.size(); ++i) {
        const auto positionOf = [&](std::size_t at) {
            return std::pair(ordered[at].first, std::stoi(ordered[at].second));
        };
        ASSERT_LT(positionOf(i - 1), positionOf(i));
    }
}

TEST(InStableOrder, OfNothingIsNothing) {
    EXPECT_TRUE(inStableOrder(std::vector<Entry>{}, &Entry::first).empty());
}

}  // namespace
}  // namespace quillo
