// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SystemExclusiveAssembler.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/OutputRecorder.hpp"

namespace quillo {
namespace {

using namespace test;

class SystemExclusiveAssemblerTest : public testing::Test {
protected:
    /// What is delivered when this event is taken.
    std::vector<Bytes> take(const Bytes& event) {
        std::vector<Bytes> delivered;
        auto deliver =
            WithoutDeadline([&](std::span<const std::uint8_t> bytes) { delivered.push_back(copyOf(bytes)); });
        assembler.take(event, deliver);
        return delivered;
    }

    /// A message of so many bytes, from 0xF0 to 0xF7, no two neighbours alike.
    static Bytes messageOf(std::size_t size) {
        Bytes message(size);
        for (std::size_t index = 0; index < size; ++index) {
            message[index] = static_cast<std::uint8_t>(index % 127);
        }
        message.front() = 0xF0;
        message.back() = 0xF7;
        return message;
    }

    SystemExclusiveAssembler assembler;
};

using Messages = std::vector<Bytes>;

TEST_F(SystemExclusiveAssemblerTest, EveryOtherMessagePassesAsItIs) {
    for (const auto& message :
         Messages{{0x90, 60, 1}, {0xC5, 3}, {0xF1, 2}, {0xF6}, {0xF8}, {0xFF}, {0xE0, 0, 64}}) {
        EXPECT_EQ(take(message), Messages{message});
    }
    EXPECT_EQ(take({}), Messages{});
}

TEST_F(SystemExclusiveAssemblerTest, AWholeMessagePassesAsItIs) {
    EXPECT_EQ(take({0xF0, 0xF7}), (Messages{{0xF0, 0xF7}}));
    EXPECT_EQ(take({0xF0, 1, 2, 0xF7}), (Messages{{0xF0, 1, 2, 0xF7}}));
}

TEST_F(SystemExclusiveAssemblerTest, PiecesAreOneMessageWhereverTheCutsAre) {
    const auto message = messageOf(600);
    for (const std::size_t piece : {1U, 2U, 3U, 255U, 256U, 299U, 598U, 599U}) {
        Messages delivered;
        for (std::size_t start = 0; start < message.size(); start += piece) {
            const auto end = std::min(start + piece, message.size());
            delivered = take({message.begin() + static_cast<std::ptrdiff_t>(start),
                              message.begin() + static_cast<std::ptrdiff_t>(end)});
            EXPECT_EQ(delivered.empty(), end < message.size());
        }
        EXPECT_EQ(delivered, Messages{message}) << piece;
    }
}

TEST_F(SystemExclusiveAssemblerTest, PiecesMayLieCyclesApart) {
    EXPECT_EQ(take({0xF0, 1, 0xF7}), (Messages{{0xF0, 1, 0xF7}}));
    EXPECT_EQ(take({0xF0, 2}), Messages{});
    assembler.beginCycle();
    EXPECT_EQ(take({3}), Messages{});
    assembler.beginCycle();
    assembler.beginCycle();
    EXPECT_EQ(take({4, 0xF7}), (Messages{{0xF0, 2, 3, 4, 0xF7}}));
}

TEST_F(SystemExclusiveAssemblerTest, MessagesOfACycleLiveUntilTheNextOne) {
    std::vector<std::span<const std::uint8_t>> delivered;
    auto deliver = WithoutDeadline([&](std::span<const std::uint8_t> bytes) { delivered.push_back(bytes); });
    for (const auto& piece : Messages{{0xF0, 1}, {2, 0xF7}, {0xF0, 3}, {4, 0xF7}, {0xF0, 5}}) {
        assembler.take(piece, deliver);
    }
    ASSERT_EQ(delivered.size(), 2U);
    EXPECT_EQ(copyOf(delivered[0]), (Bytes{0xF0, 1, 2, 0xF7}));
    EXPECT_EQ(copyOf(delivered[1]), (Bytes{0xF0, 3, 4, 0xF7}));
    assembler.beginCycle();
    EXPECT_EQ(take({6, 0xF7}), (Messages{{0xF0, 5, 6, 0xF7}}));
}

TEST_F(SystemExclusiveAssemblerTest, RealTimeMessagesComeBetweenPieces) {
    EXPECT_EQ(take({0xF0, 1}), Messages{});
    EXPECT_EQ(take({0xF8}), (Messages{{0xF8}}));
    EXPECT_EQ(take({2, 0xF7}), (Messages{{0xF0, 1, 2, 0xF7}}));
}

TEST_F(SystemExclusiveAssemblerTest, RealTimeBytesAreTakenOutOfAPiece) {
    EXPECT_EQ(take({0xF0, 1, 0xF8, 2, 0xFA, 0xF7}), (Messages{{0xF8}, {0xFA}, {0xF0, 1, 2, 0xF7}}));
    EXPECT_EQ(take({0xF0, 0xFE}), (Messages{{0xFE}}));
    EXPECT_EQ(take({0xFE, 0xF8}), (Messages{{0xFE}, {0xF8}}));
    EXPECT_EQ(take({0xF8, 3, 0xFC, 0xF7}), (Messages{{0xF8}, {0xFC}, {0xF0, 3, 0xF7}}));
}

TEST_F(SystemExclusiveAssemblerTest, AnotherMessageCutsAnUnterminatedOneShort) {
    EXPECT_EQ(take({0xF0, 1, 2}), Messages{});
    EXPECT_EQ(take({0x90, 60, 1}), (Messages{{0x90, 60, 1}}));
    EXPECT_EQ(take({3, 0xF7}), Messages{});
    EXPECT_EQ(take({0xF0, 1, 0xB0, 7, 5}), (Messages{{0xB0, 7, 5}}));
    EXPECT_EQ(take({0xF7}), Messages{});
    EXPECT_EQ(take({0xF0, 1}), Messages{});
    EXPECT_EQ(take({0xF0, 2, 0xF7}), (Messages{{0xF0, 2, 0xF7}}));
    EXPECT_EQ(take({0xF0, 3, 0xF0, 4, 0xF7}), (Messages{{0xF0, 4, 0xF7}}));
}

TEST_F(SystemExclusiveAssemblerTest, APieceWithoutABeginningIsLeftOut) {
    EXPECT_EQ(take({1, 2, 3}), Messages{});
    EXPECT_EQ(take({4, 0xF7}), Messages{});
    EXPECT_EQ(take({5, 0xF8}), (Messages{{0xF8}}));
    EXPECT_EQ(take({0xF0, 6, 0xF7, 7, 8}), (Messages{{0xF0, 6, 0xF7}}));
    EXPECT_EQ(take({9, 0xF7}), Messages{});
}

TEST_F(SystemExclusiveAssemblerTest, TheLongestMessageIsDeliveredAndALongerOneIsLeftOut) {
    const auto longest = messageOf(SystemExclusiveAssembler::longestMessage);
    const auto tooLong = messageOf(SystemExclusiveAssembler::longestMessage + 1);
    const auto inTwo = [&](const Bytes& message) {
        assembler.beginCycle();
        EXPECT_EQ(take({message.begin(), message.begin() + 100}), Messages{});
        assembler.beginCycle();
        return take({message.begin() + 100, message.end()});
    };
    EXPECT_EQ(inTwo(longest), Messages{longest});
    EXPECT_EQ(inTwo(tooLong), Messages{});
    EXPECT_EQ(inTwo(longest), Messages{longest});
}

TEST_F(SystemExclusiveAssemblerTest, WhatFindsNoRoomBesideTheCyclesOtherMessagesIsLeftOut) {
    const auto longest = messageOf(SystemExclusiveAssembler::longestMessage);
    const auto inTwo = [&](const Bytes& message) {
        EXPECT_EQ(take({message.begin(), message.begin() + 1}), Messages{});
        return take({message.begin() + 1, message.end()});
    };
    EXPECT_EQ(inTwo(longest), Messages{longest});
    EXPECT_EQ(inTwo(longest), Messages{longest});
    EXPECT_EQ(inTwo(messageOf(2)), Messages{});
    assembler.beginCycle();
    EXPECT_EQ(inTwo(messageOf(2)), Messages{messageOf(2)});
}

}  // namespace
}  // namespace quillo
