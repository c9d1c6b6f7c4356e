// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/MessageWords.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

TEST(NumberWords, NameNotesAndControllers) {
    EXPECT_EQ(noteWords(60), "60 (C3)");
    EXPECT_EQ(noteWords(127), "127 (G8)");
    EXPECT_EQ(controllerWords(7), "7 (Volume)");
    EXPECT_EQ(dataByteWords(127), "127");
}

TEST(NumberWords, CountChannelsFromOne) {
    EXPECT_EQ(channelWords(0), "channel 1");
    EXPECT_EQ(channelWords(15), "channel 16");
}

TEST(NumberWords, MarkWhatNoMessageCarries) {
    EXPECT_EQ(noteWords(128), "128 (out of range)");
    EXPECT_EQ(controllerWords(255), "255 (out of range)");
    EXPECT_EQ(dataByteWords(128), "128 (out of range)");
    EXPECT_EQ(channelWords(16), "channel 17 (out of range)");
    EXPECT_EQ(numberWords(-5, false), "-5 (out of range)");
}

}  // namespace
}  // namespace quillo
