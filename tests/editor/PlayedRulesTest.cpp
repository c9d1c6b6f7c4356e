// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PlayedRules.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

using Positions = std::vector<std::size_t>;

TEST(PlayedRules, AreThoseThatFiredShortlyBeforeTheNewestHit) {
    EXPECT_EQ(playedRules({{5, 0.1}, {1, 60}, {0, 0}, {2, 2.1}, {9, 2.2}}), (Positions{0, 3}));
}

TEST(PlayedRules, StayWhenNothingIsPlayedAnyMore) {
    EXPECT_EQ(playedRules({{5, 100}, {1, 160}, {2, 101.5}}), (Positions{0, 2}));
}

TEST(PlayedRules, AreNoneWhereNothingHasFired) {
    EXPECT_EQ(playedRules({{0, 0}, {0, 0}}), Positions());
    EXPECT_EQ(playedRules({}), Positions());
}

}  // namespace
}  // namespace quillo
