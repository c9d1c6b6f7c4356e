// SPDX-License-Identifier: GPL-3.0-or-later
#include "midi/Status.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace quillo::midi {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Status, BytesUpTo127AreData) {
    EXPECT_TRUE(isData(0x00));
    EXPECT_TRUE(isData(0x7F));
    EXPECT_FALSE(isData(0x80));
    EXPECT_FALSE(isData(0xFF));
}

TEST(Status, SystemMessagesBeginWithSystemExclusive) {
    EXPECT_FALSE(isSystem(0xEF));
    EXPECT_TRUE(isSystem(0xF0));
    EXPECT_TRUE(isSystem(0xFF));
}

TEST(Status, RealTimeMessagesBeginWithTheTimingClock) {
    EXPECT_FALSE(isRealTime(0xF7));
    EXPECT_TRUE(isRealTime(0xF8));
    EXPECT_TRUE(isRealTime(0xFF));
}

TEST(Status, SystemExclusiveIsKnownByItsFirstByte) {
    EXPECT_TRUE(isSystemExclusive(Bytes{0xF0, 1, 0xF7}));
    EXPECT_TRUE(isSystemExclusive(Bytes{0xF0}));
    EXPECT_FALSE(isSystemExclusive(Bytes{0xF7}));
    EXPECT_FALSE(isSystemExclusive(Bytes{1, 0xF0}));
    EXPECT_FALSE(isSystemExclusive(Bytes{}));
}

}  // namespace
}  // namespace quillo::midi
