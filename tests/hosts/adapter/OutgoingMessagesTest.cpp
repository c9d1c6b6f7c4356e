// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/OutgoingMessages.hpp"

#include <gtest/gtest.h>

#include <utility>

#include "support/OutputRecorder.hpp"

namespace quillo {
namespace {

using namespace test;
using Timed = std::vector<std::pair<std::uint32_t, Bytes>>;

Timed inOrder(OutgoingMessages& messages) {
    Timed result;
    for (const auto& message : messages.inTimeOrder()) {
        result.emplace_back(message.offset, copyOf(message.bytes));
    }
    return result;
}

TEST(OutgoingMessages, KeepTheirOrderWhenItIsThatOfTime) {
    OutgoingMessages messages(4, 12);
    ASSERT_TRUE(messages.tryPush(0, Bytes{0x90, 60, 1}));
    ASSERT_TRUE(messages.tryPush(7, Bytes{0xC0, 2}));
    EXPECT_TRUE(messages.cameInTimeOrder());
    EXPECT_EQ(inOrder(messages), (Timed{{0, {0x90, 60, 1}}, {7, {0xC0, 2}}}));
}

TEST(OutgoingMessages, LeaveByTimeAndThoseOfOneTimeInTheOrderInWhichTheyCame) {
    OutgoingMessages messages(8, 32);
    ASSERT_TRUE(messages.tryPush(9, Bytes{0xB0, 0, 1}));
    ASSERT_TRUE(messages.tryPush(9, Bytes{0xB0, 32, 2}));
    ASSERT_TRUE(messages.tryPush(9, Bytes{0xC0, 3}));
    ASSERT_TRUE(messages.tryPush(4, Bytes{0x90, 60, 4}));
    ASSERT_TRUE(messages.tryPush(9, Bytes{0x90, 61, 5}));
    ASSERT_TRUE(messages.tryPush(4, Bytes{0x80, 60, 6}));
    EXPECT_FALSE(messages.cameInTimeOrder());
    EXPECT_EQ(inOrder(messages), (Timed{{4, {0x90, 60, 4}},
                                        {4, {0x80, 60, 6}},
                                        {9, {0xB0, 0, 1}},
                                        {9, {0xB0, 32, 2}},
                                        {9, {0xC0, 3}},
                                        {9, {0x90, 61, 5}}}));
    EXPECT_FALSE(messages.cameInTimeOrder());
    messages.clear();
    EXPECT_TRUE(messages.cameInTimeOrder());
}

TEST(OutgoingMessages, TakeAMessageWholeOrNotAtAll) {
    OutgoingMessages messages(8, 4);
    ASSERT_TRUE(messages.tryPush(0, Bytes{0xC0, 1}));
    EXPECT_FALSE(messages.hasRoomFor(3));
    EXPECT_FALSE(messages.tryPush(0, Bytes{0x90, 60, 1}));
    EXPECT_TRUE(messages.tryPush(1, Bytes{0xC0, 2}));
    EXPECT_EQ(inOrder(messages), (Timed{{0, {0xC0, 1}}, {1, {0xC0, 2}}}));
}

TEST(OutgoingMessages, AreFullWhenTheLastPlaceIsTaken) {
    OutgoingMessages messages(1, 100);
    ASSERT_TRUE(messages.tryPush(0, Bytes{0xC0, 1}));
    EXPECT_FALSE(messages.tryPush(0, Bytes{0xC0, 2}));
}

TEST(OutgoingMessages, HaveAllTheirRoomAgainOnceCleared) {
    OutgoingMessages messages(1, 2);
    ASSERT_TRUE(messages.tryPush(5, Bytes{0xC0, 1}));
    messages.clear();
    EXPECT_TRUE(inOrder(messages).empty());
    ASSERT_TRUE(messages.tryPush(3, Bytes{0xC0, 2}));
    EXPECT_TRUE(messages.cameInTimeOrder());
    EXPECT_EQ(inOrder(messages), (Timed{{3, {0xC0, 2}}}));
}

}  // namespace
}  // namespace quillo
