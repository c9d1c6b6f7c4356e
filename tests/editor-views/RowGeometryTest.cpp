// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RowGeometry.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

/// Rows at 10 to 30, 40 to 90 and 100 to 110.
const RowGeometry rows({20, 50, 10}, 10, 10);

TEST(RowGeometry, PutsRowsUnderOneAnother) {
    EXPECT_EQ(rows.count(), 3U);
    EXPECT_EQ(rows.top(1), 40);
    EXPECT_EQ(rows.bottom(1), 90);
    EXPECT_EQ(rows.bottom(), 110);
    EXPECT_EQ(RowGeometry({}, 10, 10).bottom(), 10);
}

TEST(RowGeometry, FindsTheFirstRowThatEndsBelowAPoint) {
    EXPECT_EQ(rows.firstBelow(-5), 0U);
    EXPECT_EQ(rows.firstBelow(29), 0U);
    EXPECT_EQ(rows.firstBelow(30), 1U);
    EXPECT_EQ(rows.firstBelow(109), 2U);
    EXPECT_EQ(rows.firstBelow(110), 3U);
}

TEST(RowGeometry, TheMiddleOfARowPartsItsGaps) {
    EXPECT_EQ(rows.gapAt(-100), 0U);
    EXPECT_EQ(rows.gapAt(20), 0U);
    EXPECT_EQ(rows.gapAt(21), 1U);
    EXPECT_EQ(rows.gapAt(65), 1U);
    EXPECT_EQ(rows.gapAt(66), 2U);
    EXPECT_EQ(rows.gapAt(1000), 3U);
    EXPECT_EQ(RowGeometry().gapAt(5), 0U);
}

TEST(RowGeometry, GapsAreBetweenTheRows) {
    EXPECT_EQ(rows.gapCentre(0), 5);
    EXPECT_EQ(rows.gapCentre(1), 35);
    EXPECT_EQ(rows.gapCentre(3), 115);
}

}  // namespace
}  // namespace quillo
