// SPDX-License-Identifier: GPL-3.0-or-later
#include "midi/MessageLength.hpp"

#include <gmock/gmock.h>

#include "support/MIDIFileBytes.hpp"

namespace quillo {
namespace {

using fixture::Bytes;
using fixture::hex;

/// The statuses from 80 to ff, one row of sixteen for each high nibble.
std::vector<std::size_t> lengthsOf(unsigned highNibble) {
    std::vector<std::size_t> lengths(16);
    for (unsigned low = 0; low < lengths.size(); ++low) {
        lengths[low] = messageLength(static_cast<std::uint8_t>(highNibble << 4 | low));
    }
    return lengths;
}

TEST(MessageLength, IsThreeForNotesPressureControllersAndPitchOnEveryChannel) {
    for (const unsigned nibble : {0x8u, 0x9u, 0xAu, 0xBu, 0xEu}) {
        EXPECT_THAT(lengthsOf(nibble), testing::Each(3)) << nibble;
    }
}

TEST(MessageLength, IsTwoForProgramsAndChannelPressureOnEveryChannel) {
    EXPECT_THAT(lengthsOf(0xC), testing::Each(2));
    EXPECT_THAT(lengthsOf(0xD), testing::Each(2));
}

TEST(MessageLength, OfSystemMessagesIsZeroForSystemExclusiveAndUndefinedStatuses) {
    EXPECT_THAT(lengthsOf(0xF), testing::ElementsAre(0, 2, 3, 2, 0, 0, 1, 0, 1, 0, 1, 1, 1, 0, 1, 1));
}

TEST(MessageLength, IsZeroForEveryDataByte) {
    for (unsigned nibble = 0; nibble < 8; ++nibble) {
        EXPECT_THAT(lengthsOf(nibble), testing::Each(0)) << nibble;
    }
}

TEST(CompleteMessage, HasExactlyItsBytes) {
    EXPECT_TRUE(isCompleteShortMessage(hex("90 3c 64")));
    EXPECT_TRUE(isCompleteShortMessage(hex("c0 05")));
    EXPECT_TRUE(isCompleteShortMessage(hex("fa")));
    EXPECT_TRUE(isCompleteShortMessage(hex("f2 00 7f")));
    EXPECT_FALSE(isCompleteShortMessage(hex("90 3c")));
    EXPECT_FALSE(isCompleteShortMessage(hex("90 3c 64 40")));
    EXPECT_FALSE(isCompleteShortMessage(Bytes{}));
}

TEST(CompleteMessage, HasDataBytesBelow128) {
    EXPECT_TRUE(isCompleteShortMessage(hex("b0 7f 7f")));
    EXPECT_FALSE(isCompleteShortMessage(hex("b0 80 7f")));
    EXPECT_FALSE(isCompleteShortMessage(hex("b0 7f 80")));
}

TEST(CompleteMessage, IsNeitherSystemExclusiveNorPartOfOne) {
    EXPECT_FALSE(isCompleteShortMessage(hex("f0 f7")));
    EXPECT_FALSE(isCompleteShortMessage(hex("f7")));
    EXPECT_FALSE(isCompleteShortMessage(hex("43 12")));
}

TEST(CompleteMessage, OfAChannelIsNoSystemMessage) {
    EXPECT_TRUE(isCompleteChannelMessage(hex("ef 00 40")));
    EXPECT_FALSE(isCompleteChannelMessage(hex("fa")));
    EXPECT_FALSE(isCompleteChannelMessage(hex("ef 00")));
}

}  // namespace
}  // namespace quillo
