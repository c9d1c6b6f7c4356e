// SPDX-License-Identifier: GPL-3.0-or-later
#include "midifile/TempoMap.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace quillo {
namespace {

constexpr auto greatest = std::numeric_limits<std::uint64_t>::max();

TEST(Wide, ComparesTheHighHalvesFirst) {
    EXPECT_LT((Wide{1, greatest}), (Wide{2, 0}));
    EXPECT_LT((Wide{1, 1}), (Wide{1, 2}));
    EXPECT_EQ((Wide{1, 2}), (Wide{1, 2}));
}

TEST(Wide, CarriesAndBorrowsBetweenTheHalves) {
    EXPECT_EQ((Wide{1, greatest} + Wide{2, 1}), (Wide{4, 0}));
    EXPECT_EQ((Wide{1, 2} + Wide{3, 4}), (Wide{4, 6}));
    EXPECT_EQ((Wide{4, 0} - Wide{2, 1}), (Wide{1, greatest}));
    EXPECT_EQ((Wide{4, 6} - Wide{3, 4}), (Wide{1, 2}));
}

TEST(Wide, MultipliesWithoutLosingABit) {
    EXPECT_EQ(product(greatest, greatest), (Wide{greatest - 1, 1}));
    EXPECT_EQ(product(0x1'0000'0000, 0xFFFF'FFFF), (Wide{0, 0xFFFF'FFFF'0000'0000}));
    EXPECT_EQ(product(0xFFFF'FFFF, 0x1'0000'0001), (Wide{0, greatest}));
    EXPECT_EQ(product(0x1234'5678'9ABC'DEF0, 16), (Wide{1, 0x2345'6789'ABCD'EF00}));
}

TEST(Wide, DividesDownToTheWholeNumberBelow) {
    EXPECT_EQ(quotient({0, 7}, 2), 3u);
    EXPECT_EQ(quotient({1, 0}, 3), 0x5555'5555'5555'5555u);
    EXPECT_EQ(quotient({0, greatest}, 1), greatest);
    EXPECT_EQ(quotient(product(greatest, std::uint64_t{1} << 63) - Wide{0, 1}, std::uint64_t{1} << 63),
              greatest - 1);
}

TEST(Wide, StopsAtTheGreatestQuotient) {
    EXPECT_EQ(quotient({1, 0}, 1), greatest);
    EXPECT_EQ(quotient({3, 0}, 3), greatest);
    EXPECT_EQ(quotient({greatest, greatest}, 2), greatest);
}

}  // namespace
}  // namespace quillo
