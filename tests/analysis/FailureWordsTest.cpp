// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleReasons.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Transport = HostTransportTriggerVariantsV2;

const MIDIMessage middleC{0x90, 60, 100};

/// Why a rule with such a trigger does not fire.
std::string reasonFor(const RuleTriggerV2& trigger, const AskedEvent& event) {
    return why({rule(trigger, volume)}, event).front().words;
}

TEST(FailureWords, NameTheKindsOfMessages) {
    EXPECT_EQ(reasonFor(onNoteOn(), MIDIMessage{0x80, 60, 0}), "it waits for Note On, this is a Note Off");
    EXPECT_EQ(reasonFor(onNoteOff(), middleC), "it waits for Note Off, this is a Note On");
    EXPECT_EQ(reasonFor(onControlChange(7), MIDIMessage{0xC0, 7}),
              "it waits for CC, this is a Program Change");
    EXPECT_EQ(reasonFor(onProgramChange(), MIDIMessage{0xB0, 7, 1}),
              "it waits for Program Change, this is a CC");
    EXPECT_EQ(reasonFor(onMIDIStart(), MIDIMessage{0xFC}), "it waits for MIDI Start, this is MIDI Stop");
    EXPECT_EQ(reasonFor(onMIDIStop(), MIDIMessage{0xF8}), "it waits for MIDI Stop, this is timing clock");
    EXPECT_EQ(reasonFor(onMIDIContinue(), MIDIMessage{0xE0, 0, 64}),
              "it waits for MIDI Continue, this is pitch bend");
    EXPECT_EQ(reasonFor(onNoteOn(), MIDIMessage{0xA0, 60, 1}),
              "it waits for Note On, this is pressure on a note");
    EXPECT_EQ(reasonFor(onNoteOn(), MIDIMessage{0xD0, 1}), "it waits for Note On, this is channel pressure");
}

TEST(FailureWords, RemarkThatANoteOnOfVelocityZeroIsNoNoteOff) {
    EXPECT_EQ(reasonFor(onNoteOff(), MIDIMessage{0x90, 60, 0}),
              "it waits for Note Off, this is a Note On (even with velocity 0)");
    EXPECT_EQ(reasonFor(onControlChange(7), MIDIMessage{0x90, 60, 0}), "it waits for CC, this is a Note On");
}

TEST(FailureWords, CountChannelsFromOne) {
    EXPECT_EQ(reasonFor(onNoteOn(any, exactly(2)), middleC), "it waits for channel 3, this is channel 1");
    EXPECT_EQ(reasonFor(onNoteOn(any, exactly(16)), MIDIMessage{0x9F, 60, 1}),
              "it waits for channel 17 (out of range), this is channel 16");
}

TEST(FailureWords, CallDataBytesByTheirNames) {
    EXPECT_EQ(reasonFor(onNoteOn(exactly(61)), middleC), "it waits for note 61 (C♯3), this is note 60 (C3)");
    EXPECT_EQ(reasonFor(onNoteOff(exactly(0)), MIDIMessage{0x80, 1, 0}),
              "it waits for note 0 (C-2), this is note 1 (C♯-2)");
    EXPECT_EQ(reasonFor(onControlChange(7), MIDIMessage{0xB0, 1, 0}),
              "it waits for controller 7 (Volume), this is controller 1 (Modulation)");
    EXPECT_EQ(reasonFor(onProgramChange(exactly(200)), MIDIMessage{0xC0, 5}),
              "it waits for program 200 (out of range), this is program 5");
    EXPECT_EQ(reasonFor(onControlChange(7, exactly(127)), MIDIMessage{0xB0, 7, 64}),
              "it waits for value 127, this is value 64");
}

TEST(FailureWords, DistinguishHostEvents) {
    EXPECT_EQ(reasonFor(onHost(Transport::Start), Transport::Continue),
              "it waits for the host's transport to start, this is its continuation");
    EXPECT_EQ(reasonFor(onHost(Transport::Continue), Transport::Stop),
              "it waits for the host's transport to continue, this is its stop");
    EXPECT_EQ(reasonFor(onHost(Transport::Stop), Transport::Start),
              "it waits for the host's transport to stop, this is its start");
}

TEST(FailureWords, DistinguishMIDIFromTheHostsTransport) {
    EXPECT_EQ(reasonFor(onHost(Transport::Stop), MIDIMessage{0xFC}),
              "it waits for the host's transport to stop, this is MIDI Stop");
    EXPECT_EQ(reasonFor(onMIDIStop(), Transport::Stop),
              "it waits for MIDI Stop, this is the host's transport");
}

TEST(FailureWords, SayWhyARuleIsNotAsked) {
    EXPECT_EQ(reasonFor(onLoad(), middleC), "it fires only when the plug-in is loaded");
    EXPECT_EQ(reasonFor(onNoteOn(), PluginLoad{}), "it waits for MIDI, this is loading");
    EXPECT_EQ(reasonFor(onHost(Transport::Start), PluginLoad{}),
              "it waits for the host's transport, this is loading");
    EXPECT_EQ(reasonFor(onNoteOn(), MIDIMessage{0xF0, 0x7E, 0xF7}),
              "system exclusive that comes in is never shown to the rules");
}

}  // namespace
}  // namespace quillo
