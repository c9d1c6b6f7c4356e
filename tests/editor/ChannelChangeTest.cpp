// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ChannelChange.hpp"

#include <gtest/gtest.h>

#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

RuleEntry noteEntry() {
    RuleEntry entry;
    entry.trigger.type = TriggerEntryType::NoteOn;
    return entry;
}

TEST(ChannelChange, IsWhatTwoEntriesDifferIn) {
    auto after = noteEntry();
    EXPECT_EQ(channelChange(noteEntry(), after), std::nullopt);
    after.trigger.channel = exactly(3);
    EXPECT_EQ(channelChange(noteEntry(), after), (ChannelChange{exactly(3), std::nullopt}));
    after.output.channel = triggerChannel;
    EXPECT_EQ(channelChange(noteEntry(), after), (ChannelChange{exactly(3), triggerChannel}));
    after.name = "other";
    EXPECT_EQ(channelChange(noteEntry(), after), std::nullopt);
}

TEST(ChannelChange, IsMadeToTriggerAndMessage) {
    const auto entry = changed(noteEntry(), {exactly(3), channel(5)});
    auto expected = noteEntry();
    expected.trigger.channel = exactly(3);
    expected.output.channel = channel(5);
    EXPECT_EQ(entry, expected);
    EXPECT_EQ(changed(entry, {any, std::nullopt}).trigger.channel, TriggerValueV2(any));
    EXPECT_EQ(changed(entry, {std::nullopt, triggerChannel}).output.channel,
              RuleOutputChannelV2(triggerChannel));
}

TEST(ChannelChange, LeavesWhatHasNoChannel) {
    RuleEntry entry;
    entry.output.type = OutputEntryType::SystemExclusive;
    EXPECT_EQ(changed(entry, {exactly(3), channel(5)}), entry);
    entry.output.type = OutputEntryType::NoteOn;
    EXPECT_EQ(changed(entry, {exactly(3), triggerChannel}), entry);
    EXPECT_EQ(changed(entry, {exactly(3), channel(5)}).output.channel, RuleOutputChannelV2(channel(5)));
}

}  // namespace
}  // namespace quillo
