// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/MIDIMessage.hpp"

#include <gtest/gtest.h>

#include <numeric>
#include <utility>
#include <vector>

#include "engine/SharedBytes.hpp"
#include "support/OutputRecorder.hpp"

namespace quillo {
namespace {

using test::Bytes;
using test::copyOf;

Bytes counting(std::size_t size) {
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

TEST(MIDIMessage, OneMadeOfNothingHasNoBytes) {
    EXPECT_EQ(MIDIMessage().size(), 0U);
    EXPECT_EQ(MIDIMessage::copyOf({}), MIDIMessage());
}

TEST(MIDIMessage, HoldsBytesOfAnyNumber) {
    for (const std::size_t size : {1U, 3U, 7U, 8U, 9U, 1000U, 65536U}) {
        const auto bytes = counting(size);
        EXPECT_EQ(copyOf(MIDIMessage::copyOf(bytes).bytes()), bytes) << size;
    }
}

TEST(MIDIMessage, IsEqualToOneOfTheSameBytes) {
    EXPECT_EQ((MIDIMessage{0x90, 60, 100}), MIDIMessage::copyOf(Bytes{0x90, 60, 100}));
    EXPECT_NE((MIDIMessage{0x90, 60, 100}), (MIDIMessage{0x90, 60, 101}));
    EXPECT_NE((MIDIMessage{0x90, 60, 100}), (MIDIMessage{0x90, 60}));
    EXPECT_EQ(MIDIMessage::copyOf(counting(100)), MIDIMessage::copyOf(counting(100)));
}

TEST(MIDIMessage, CopiesOfALongOneShareItsBytes) {
    const auto message = MIDIMessage::copyOf(counting(100));
    const auto copy = message;
    EXPECT_EQ(copy.bytes().data(), message.bytes().data());
}

TEST(MIDIMessage, OneOfUpToSevenBytesHasThemInItself) {
    for (std::size_t size = 1; size <= 8; ++size) {
        const auto message = MIDIMessage::copyOf(counting(size));
        const auto copy = message;
        EXPECT_EQ(copy.bytes().data() == message.bytes().data(), size == 8) << size;
    }
}

TEST(MIDIMessage, ACopyOutlivesItsOriginal) {
    auto message = MIDIMessage::copyOf(counting(100));
    const auto copy = message;
    message = MIDIMessage{0xFA};
    SharedBytes::freeRetired();
    EXPECT_EQ(copyOf(copy.bytes()), counting(100));
}

TEST(MIDIMessage, MovingLeavesTheOtherOneAssignable) {
    auto message = MIDIMessage::copyOf(counting(100));
    const MIDIMessage moved = std::move(message);
    message = MIDIMessage{0xFC};
    EXPECT_EQ(copyOf(moved.bytes()), counting(100));
    EXPECT_EQ(message, MIDIMessage{0xFC});
}

TEST(MIDIMessage, AssigningOneReplacesTheBytesWhateverTheirNumber) {
    for (const std::size_t size : {0U, 3U, 7U, 8U, 100U}) {
        const auto other = MIDIMessage::copyOf(counting(size));
        for (auto message : {MIDIMessage{0xFC}, MIDIMessage::copyOf(counting(50))}) {
            message = other;
            EXPECT_EQ(copyOf(message.bytes()), counting(size)) << size;
        }
    }
}

TEST(MIDIMessage, SelfAssignmentKeepsTheBytes) {
    auto message = MIDIMessage::copyOf(counting(100));
    const auto& same = message;
    message = same;
    EXPECT_EQ(copyOf(message.bytes()), counting(100));
}

TEST(MIDIMessage, AnInlineCopyTakesNoMoreThanFits) {
    EXPECT_EQ(copyOf(MIDIMessage::inlineCopyOf(counting(9)).bytes()), counting(7));
}

}  // namespace
}  // namespace quillo
