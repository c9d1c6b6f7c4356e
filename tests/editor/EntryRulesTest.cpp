// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EntryRules.hpp"

#include <gtest/gtest.h>

#include "engine/RuleCompiler.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Transport = HostTransportTriggerVariantsV2;

EventLogEntryVariants message(std::initializer_list<std::uint8_t> bytes) {
    return EventLogEntryVariants::MIDI{MIDIMessage(bytes)};
}

/// The trigger of a rule that waits for this event.
std::optional<RuleTriggerV2> triggerOf(const EventLogEntryVariants& event) {
    const auto trigger = triggerFor(event);
    return trigger ? std::optional(ruleFromEntry({RuleOutputEntry(), *trigger, ""}).trigger) : std::nullopt;
}

/// What a rule for this message sends.
std::optional<RuleOutputV2> sentFor(const EventLogEntryVariants& event) {
    const auto output = outputFor(event);
    return output ? std::optional(ruleFromEntry({*output, RuleTriggerEntry(), ""}).output) : std::nullopt;
}

TEST(EntryRules, ATriggerWaitsForExactlyTheEvent) {
    EXPECT_EQ(triggerOf(message({0x92, 60, 1})), onNoteOn(exactly(60), exactly(2)));
    EXPECT_EQ(triggerOf(message({0x80, 61, 0})), onNoteOff(exactly(61), exactly(0)));
    EXPECT_EQ(triggerOf(message({0xBF, 64, 127})), onControlChange(64, exactly(127), exactly(15)));
    EXPECT_EQ(triggerOf(message({0xC1, 5})), onProgramChange(exactly(5), exactly(1)));
    EXPECT_EQ(triggerOf(message({0xFA})), onMIDIStart());
    EXPECT_EQ(triggerOf(message({0xFB})), onMIDIContinue());
    EXPECT_EQ(triggerOf(message({0xFC})), onMIDIStop());
    for (const auto change : {Transport::Start, Transport::Continue, Transport::Stop}) {
        EXPECT_EQ(triggerOf(EventLogEntryVariants::Host{change}), onHost(change));
    }
}

TEST(EntryRules, NoRuleCanWaitForPressureThePitchWheelOrTheClock) {
    for (const auto& event : {message({0xA0, 60, 1}), message({0xD0, 1}), message({0xE0, 0, 64}),
                              message({0xF8}), message({0xFE}), message({0xF0, 1, 0xF7})}) {
        EXPECT_EQ(triggerOf(event), std::nullopt);
    }
}

TEST(EntryRules, AnOutputSendsExactlyTheMessage) {
    EXPECT_EQ(sentFor(message({0x91, 60, 100})), send(noteOn(1, 60, 100)));
    EXPECT_EQ(sentFor(message({0x81, 60, 9})),
              send(protocol(StatusV2::noteOff, channel(1), byte(60), byte(9))));
    EXPECT_EQ(sentFor(message({0xB3, 7, 8})), send(controlChange(3, 7, 8)));
    EXPECT_EQ(sentFor(message({0xC2, 48})), send(programChange(channel(2), 0, byte(48))));
    EXPECT_EQ(sentFor(message({0xD2, 99})), send(protocol(StatusV2::channelPressure, channel(2), byte(99))));
    EXPECT_EQ(sentFor(message({0xE2, 1, 64})),
              send(protocol(StatusV2::pitchWheel, channel(2), byte(1), byte(64))));
    EXPECT_EQ(sentFor(message({0xF0, 1, 2, 0xF7})), send(systemExclusive({1, 2})));
}

TEST(EntryRules, NoRuleCanSendNotePressureASystemMessageOrTheHostsTransport) {
    EXPECT_EQ(sentFor(message({0xA0, 60, 1})), std::nullopt);
    EXPECT_EQ(sentFor(message({0xFA})), std::nullopt);
    EXPECT_EQ(sentFor(EventLogEntryVariants::Host{Transport::Start}), std::nullopt);
}

TEST(EntryRules, NothingWaitsForOrSendsAMessageThatIsCutShort) {
    for (const auto& event :
         {message({}), message({0x90}), message({0x90, 60}), message({0xB0, 7}), message({0xC0}),
          message({0xD0}), message({0xE0, 1}), message({0xF0}), message({0xF0, 1})}) {
        EXPECT_EQ(triggerFor(event), std::nullopt);
        EXPECT_EQ(outputFor(event), std::nullopt);
    }
}

}  // namespace
}  // namespace quillo
