// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/DelayedMessage.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

const MessageList noteOnList(MIDIMessage{0x90, 60, 100});
const MessageList noteOffList(MIDIMessage{0x80, 60, 0});

TEST(DelayedMessage, TheEarlierOneIsTheGreater) {
    const DelayedMessage earlier{10, noteOnList};
    const DelayedMessage later{20, noteOnList};
    EXPECT_TRUE(earlier > later);
    EXPECT_TRUE(earlier >= later);
    EXPECT_TRUE(later < earlier);
    EXPECT_TRUE(later <= earlier);
    EXPECT_FALSE(later > earlier);
}

TEST(DelayedMessage, MessagesTakeNoPartInTheOrder) {
    const DelayedMessage one{10, noteOnList};
    const DelayedMessage other{10, noteOffList};
    EXPECT_FALSE(one < other);
    EXPECT_FALSE(one > other);
    EXPECT_TRUE(one <= other);
    EXPECT_TRUE(one >= other);
}

TEST(DelayedMessage, IsEqualWhenTimeAndMessagesAre) {
    EXPECT_EQ((DelayedMessage{10, noteOnList}), (DelayedMessage{10, noteOnList}));
    EXPECT_NE((DelayedMessage{10, noteOnList}), (DelayedMessage{11, noteOnList}));
    EXPECT_NE((DelayedMessage{10, noteOnList}), (DelayedMessage{10, noteOffList}));
    EXPECT_NE((DelayedMessage{10, noteOnList}),
              (DelayedMessage{10, MessageList({0x90, 60, 100}, {0x80, 60, 0})}));
}

}  // namespace
}  // namespace quillo
