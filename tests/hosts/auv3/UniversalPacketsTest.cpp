// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/UniversalPackets.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "support/OutputRecorder.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

/// The bytes of the message in a packet; none where there is no message.
Bytes messageIn(std::uint32_t firstWord) {
    const auto message = shortMessage(firstWord);
    return message ? copyOf(message->bytes()) : Bytes{};
}

std::vector<Bytes> messagesIn(const std::vector<std::uint32_t>& words) {
    std::vector<Bytes> messages;
    forEachShortMessage(words,
                        [&](std::span<const std::uint8_t> bytes) { messages.push_back(copyOf(bytes)); });
    return messages;
}

TEST(UniversalPackets, EveryTypeOfPacketHasItsLength) {
    const std::vector<std::size_t> lengths{1, 1, 1, 2, 2, 4, 1, 1, 2, 2, 2, 3, 3, 4, 4, 4};
    for (std::uint32_t type = 0; type < lengths.size(); ++type) {
        EXPECT_EQ(packetLength(type << 28U), lengths[type]) << type;
        EXPECT_EQ(packetLength((type << 28U) | 0x0FFFFFFFU), lengths[type]) << type;
    }
}

TEST(UniversalPackets, ChannelMessagesKeepTheirBytesInEveryGroup) {
    for (std::uint32_t group = 0; group < 16; ++group) {
        const auto front = 0x20000000U | (group << 24U);
        for (std::uint32_t status = 0x80; status < 0xF0; ++status) {
            const auto statusByte = static_cast<std::uint8_t>(status);
            const bool isShort = (status & 0xF0U) == 0xC0 || (status & 0xF0U) == 0xD0;
            EXPECT_EQ(messageIn(front | (status << 16U) | 0x017FU),
                      isShort ? (Bytes{statusByte, 0x01}) : (Bytes{statusByte, 0x01, 0x7F}));
        }
    }
}

TEST(UniversalPackets, SystemMessagesHaveTheLengthOfTheirStatus) {
    EXPECT_EQ(messageIn(0x10F12500U), (Bytes{0xF1, 0x25}));
    EXPECT_EQ(messageIn(0x10F20102U), (Bytes{0xF2, 0x01, 0x02}));
    EXPECT_EQ(messageIn(0x10F30700U), (Bytes{0xF3, 0x07}));
    for (const std::uint32_t status : {0xF6U, 0xF8U, 0xFAU, 0xFBU, 0xFCU, 0xFEU, 0xFFU}) {
        EXPECT_EQ(messageIn(0x10000000U | (status << 16U)), Bytes{static_cast<std::uint8_t>(status)});
    }
}

TEST(UniversalPackets, UndefinedAndSystemExclusiveStatusesAreNoMessages) {
    for (const std::uint32_t status : {0xF0U, 0xF4U, 0xF5U, 0xF7U, 0xF9U, 0xFDU}) {
        EXPECT_EQ(messageIn(0x10000000U | (status << 16U)), Bytes{}) << status;
    }
}

TEST(UniversalPackets, AStatusOfAnotherTypeIsNoMessage) {
    EXPECT_EQ(messageIn(0x10903C64U), Bytes{});
    EXPECT_EQ(messageIn(0x20F80000U), Bytes{});
    EXPECT_EQ(messageIn(0x20403C64U), Bytes{});
    EXPECT_EQ(messageIn(0x107F0000U), Bytes{});
}

TEST(UniversalPackets, PacketsOfOtherTypesAreNoMessages) {
    for (std::uint32_t type = 0; type < 16; ++type) {
        if (type != 1 && type != 2) {
            EXPECT_EQ(messageIn((type << 28U) | 0x00903C64U), Bytes{}) << type;
            EXPECT_EQ(messageIn((type << 28U) | 0x00F80000U), Bytes{}) << type;
        }
    }
}

TEST(UniversalPackets, LongerPacketsAreSteppedOverWhole) {
    EXPECT_THAT(messagesIn({0x30160102U, 0x20903C64U, 0x20803C00U, 0x50000000U, 0x20903C64U, 0x20903C64U,
                            0x20903C64U, 0x10FA0000U}),
                ElementsAre(Bytes{0x80, 0x3C, 0x00}, Bytes{0xFA}));
}

TEST(UniversalPackets, APacketThatIsCutShortIsLeftOut) {
    EXPECT_THAT(messagesIn({0x20903C64U, 0x40903C00U}), ElementsAre(Bytes{0x90, 0x3C, 0x64}));
    EXPECT_THAT(messagesIn({0xF0000000U, 0, 0}), IsEmpty());
    EXPECT_THAT(messagesIn({}), IsEmpty());
}

}  // namespace
}  // namespace quillo
