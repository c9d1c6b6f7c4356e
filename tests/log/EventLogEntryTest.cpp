// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/EventLogEntry.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace quillo {
namespace {

using Host = EventLogEntryVariants::Host;
using MIDI = EventLogEntryVariants::MIDI;
using Transport = HostTransportTriggerVariantsV2;

TEST(EventLogEntry, AMessageReadsAsItsStampAndLowerCaseHexadecimalBytes) {
    EXPECT_EQ(text({512, MIDI{{0x90, 0x3C, 0x7F}}}), "[512] 90 3c 7f");
    EXPECT_EQ(text({0, MIDI{{0x0A}}}), "[0] 0a");
}

TEST(EventLogEntry, AnEmptyMessageReadsAsItsStampAndOneSpace) {
    EXPECT_EQ(text({7, MIDI{}}), "[7] ");
}

TEST(EventLogEntry, ANegativeStampHasAMinusSign) {
    EXPECT_EQ(text({-4294967296, MIDI{{0x90, 0x3C, 0x7F}}}), "[-4294967296] 90 3c 7f");
}

TEST(EventLogEntry, ATransportChangeReadsAsItsName) {
    EXPECT_EQ(text({0, Host{Transport::Start}}), "[0] AU Host Start");
    EXPECT_EQ(text({1, Host{Transport::Continue}}), "[1] AU Host Continue");
    EXPECT_EQ(text({2, Host{Transport::Stop}}), "[2] AU Host Stop");
}

TEST(EventLogEntry, ALongSystemExclusiveMessageIsShownWhole) {
    const std::vector<std::uint8_t> bytes(1000, 0x41);
    const auto line = text({0, MIDI{MIDIMessage::copyOf(bytes)}});
    EXPECT_EQ(line.size(), std::string("[0] ").size() + 1000 * 3 - 1);
    EXPECT_EQ(line.substr(line.size() - 5), "41 41");
}

TEST(EventLogEntry, HoldsAMessageOrATransportChangeAndNotBoth) {
    const EventLogEntryVariants message = MIDI{{0xF8}};
    ASSERT_NE(message.midi(), nullptr);
    EXPECT_EQ(message.midi()->message, MIDIMessage{0xF8});
    EXPECT_EQ(message.host(), nullptr);
    const EventLogEntryVariants change = Host{Transport::Stop};
    ASSERT_NE(change.host(), nullptr);
    EXPECT_EQ(change.host()->trigger, Transport::Stop);
    EXPECT_EQ(change.midi(), nullptr);
}

TEST(EventLogEntry, IsEqualWhenStampKindAndContentAre) {
    const EventLogEntry entry{5, MIDI{{0x90, 1, 2}}};
    EXPECT_EQ(entry, (EventLogEntry{5, MIDI{{0x90, 1, 2}}}));
    EXPECT_NE(entry, (EventLogEntry{6, MIDI{{0x90, 1, 2}}}));
    EXPECT_NE(entry, (EventLogEntry{5, MIDI{{0x90, 1, 3}}}));
    EXPECT_NE(entry, (EventLogEntry{5, Host{Transport::Start}}));
    EXPECT_NE((EventLogEntry{5, Host{Transport::Stop}}), (EventLogEntry{5, Host{Transport::Start}}));
}

}  // namespace
}  // namespace quillo
