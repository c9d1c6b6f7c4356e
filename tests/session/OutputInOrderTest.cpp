// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/OutputInOrder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "platform/InStableOrder.hpp"
#include "support/TestOutput.hpp"

namespace quillo {
namespace {

using namespace test;
using Room = HostOutput::Room;
using Delivery = OutputInOrder::Delivery;

class OutputInOrderTest : public testing::Test {
protected:
    OutputInOrderTest() { messages.begin(host, Delivery::asItComes); }

    TestOutput host;
    OutputInOrder messages;
};

TEST_F(OutputInOrderTest, WhatIsDueGoesStraightOn) {
    EXPECT_EQ(messages.trySend(0, Bytes{0x90, 60, 1}), Room::enough);
    messages.passTo(7);
    EXPECT_EQ(messages.trySend(7, Bytes{0xC0, 2}), Room::enough);
    EXPECT_EQ(host.take(), (Timed{{0, {0x90, 60, 1}}, {7, {0xC0, 2}}}));
}

TEST_F(OutputInOrderTest, WhatIsOverdueIsDueNow) {
    messages.passTo(7);
    EXPECT_EQ(messages.trySend(3, Bytes{0xC0, 2}), Room::enough);
    EXPECT_EQ(host.take(), (Timed{{7, {0xC0, 2}}}));
}

TEST_F(OutputInOrderTest, WhatIsDueLaterWaitsUntilItsTime) {
    EXPECT_EQ(messages.trySend(5, Bytes{0xC0, 5}), Room::enough);
    messages.passTo(4);
    EXPECT_TRUE(host.sent.empty());
    messages.passTo(5);
    EXPECT_EQ(host.take(), (Timed{{5, {0xC0, 5}}}));
}

TEST_F(OutputInOrderTest, WhatStillWaitsLeavesAtTheEnd) {
    EXPECT_EQ(messages.trySend(9, Bytes{0xC0, 9}), Room::enough);
    EXPECT_EQ(messages.trySend(4, Bytes{0xC0, 4}), Room::enough);
    messages.end();
    EXPECT_EQ(host.take(), (Timed{{4, {0xC0, 4}}, {9, {0xC0, 9}}}));
}

TEST_F(OutputInOrderTest, MessagesOfOneTimeLeaveInTheOrderInWhichTheyWereSent) {
    std::mt19937 random(14);
    std::uniform_int_distribution<std::uint32_t> anyOffset(0, 20);
    Timed sent;
    for (std::uint8_t number = 0; number < 128; ++number) {
        sent.push_back({anyOffset(random), {0xC0, number}});
        EXPECT_EQ(messages.trySend(sent.back().first, sent.back().second), Room::enough);
    }
    messages.end();
    EXPECT_EQ(host.take(), inStableOrder(sent, &Timed::value_type::first));
}

TEST_F(OutputInOrderTest, WhatWaitsComesBeforeWhatIsSentAtItsTime) {
    EXPECT_EQ(messages.trySend(5, Bytes{0xC0, 1}), Room::enough);
    messages.passTo(5);
    EXPECT_EQ(messages.trySend(5, Bytes{0xC0, 2}), Room::enough);
    EXPECT_EQ(host.take(), (Timed{{5, {0xC0, 1}}, {5, {0xC0, 2}}}));
}

TEST_F(OutputInOrderTest, TheHostsAnswerIsPassedOnAndNothingIsSentThen) {
    for (const auto answer : {Room::full, Room::never}) {
        host.room = [&](std::span<const std::uint8_t>, const HostOutput::Waiting&) { return answer; };
        EXPECT_EQ(messages.trySend(0, Bytes{0xC0, 1}), answer);
        EXPECT_EQ(messages.trySend(5, Bytes{0xC0, 1}), answer);
    }
    messages.end();
    EXPECT_TRUE(host.sent.empty());
}

TEST_F(OutputInOrderTest, TheHostHearsOfWhatWaitsInBytesThatAreRoundedUpToEight) {
    std::vector<std::size_t> waiting;
    host.room = [&](std::span<const std::uint8_t>, const HostOutput::Waiting& before) {
        waiting.push_back(before.bytes);
        return Room::enough;
    };
    for (const std::size_t length : {1U, 7U, 8U, 9U, 16U, 1U}) {
        EXPECT_EQ(messages.trySend(5, Bytes(length, 0xF0)), Room::enough);
    }
    EXPECT_EQ(waiting, (std::vector<std::size_t>{0, 8, 16, 24, 40, 56}));
}

TEST(MessageStore, IsEmptyAtFirst) {
    MessageStore store;
    EXPECT_EQ(store.size(), 0U);
    EXPECT_TRUE(store.hasRoomFor(MessageStore::mostMessages, MessageStore::mostBytes));
}

TEST_F(OutputInOrderTest, TheStoreTakesNoMoreThanItSaysButWhatIsDueNeedsNone) {
    for (std::size_t i = 0; i < MessageStore::mostMessages; ++i) {
        ASSERT_EQ(messages.trySend(5, Bytes{0xC0, 1}), Room::enough);
    }
    EXPECT_EQ(messages.trySend(5, Bytes{0xC0, 1}), Room::full);
    EXPECT_EQ(messages.trySend(0, Bytes{0xC0, 2}), Room::enough);
    EXPECT_EQ(host.take(), (Timed{{0, {0xC0, 2}}}));
    messages.end();
    EXPECT_EQ(host.sent.size(), MessageStore::mostMessages);
}

TEST_F(OutputInOrderTest, ItsRoomIsThereAgainOnceAllHaveLeft) {
    const Bytes long_(MessageStore::mostBytes, 0xF0);
    for (std::uint32_t offset = 1; offset < 4; ++offset) {
        EXPECT_EQ(messages.trySend(offset, long_), Room::enough);
        EXPECT_EQ(messages.trySend(offset, Bytes{0xC0, 1}), Room::full);
        messages.passTo(offset);
        EXPECT_EQ(host.take().size(), 1U);
    }
}

TEST_F(OutputInOrderTest, AMessageThatIsLongerThanTheStoreNeverHasRoom) {
    EXPECT_EQ(messages.trySend(0, Bytes(MessageStore::mostBytes + 1, 0xF0)), Room::never);
}

TEST_F(OutputInOrderTest, WhatWaitsIsForgottenWhenABlockBegins) {
    EXPECT_EQ(messages.trySend(5, Bytes{0xC0, 1}), Room::enough);
    messages.begin(host, Delivery::asItComes);
    messages.end();
    EXPECT_TRUE(host.sent.empty());
}

TEST_F(OutputInOrderTest, DeliveredAtTheEndNothingLeavesBefore) {
    messages.begin(host, Delivery::atTheEnd);
    EXPECT_EQ(messages.trySend(0, Bytes{0xC0, 1}), Room::enough);
    messages.passTo(7);
    EXPECT_EQ(messages.trySend(3, Bytes{0xC0, 2}), Room::enough);
    EXPECT_TRUE(host.sent.empty());
    messages.end();
    EXPECT_EQ(host.take(), (Timed{{0, {0xC0, 1}}, {7, {0xC0, 2}}}));
}

}  // namespace
}  // namespace quillo
