// SPDX-License-Identifier: GPL-3.0-or-later
// Hosts that send note events in place of MIDI.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "hosts/clap/CLAPTestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using ByteMessages = std::vector<Bytes>;

class CLAPNoteEvents : public testing::Test {
protected:
    CLAPNoteEvents() { host.start(); }

    void on(int channel, int key, double velocity = 1.0, std::int32_t id = -1) {
        events.addNote(CLAP_EVENT_NOTE_ON, 0, channel, key, velocity, id);
    }
    void off(int channel, int key, double velocity = 0.0, std::int32_t id = -1) {
        events.addNote(CLAP_EVENT_NOTE_OFF, 0, channel, key, velocity, id);
    }
    void choke(int channel, int key, std::int32_t id = -1) {
        events.addNote(CLAP_EVENT_NOTE_CHOKE, 0, channel, key, 1.0, id);
    }
    void press(int channel, int key, double value, std::int32_t id = -1) {
        events.addExpression(CLAP_NOTE_EXPRESSION_PRESSURE, 0, channel, key, value, id);
    }

    /// What the events so far become; they are forgotten then.
    ByteMessages heard() {
        host.process(64, events);
        events.clear();
        ByteMessages messages;
        for (const auto& message : host.take()) {
            messages.push_back(message.bytes);
        }
        return messages;
    }

    CLAPTestHost host;
    CLAPEvents events;
};

TEST_F(CLAPNoteEvents, BecomeMIDIAtTheirTimes) {
    events.addNote(CLAP_EVENT_NOTE_ON, 3, 4, 60, 100 / 127.0);
    events.addMIDI(5, {0xB4, 7, 1});
    events.addNote(CLAP_EVENT_NOTE_OFF, 9, 4, 60, 33 / 127.0);
    host.process(64, events);
    EXPECT_EQ(host.take(),
              (std::vector<ScriptMessage>{{3, {0x94, 60, 100}}, {5, {0xB4, 7, 1}}, {9, {0x84, 60, 33}}}));
}

TEST_F(CLAPNoteEvents, WakeTheRulesThatWaitForSuchNotes) {
    host.loadRules(
        {rule(onNoteOn(exactly(60), exactly(4), PassThroughV2::EatMatching), send(noteOn(0, 1, 2)))});
    on(4, 60);
    EXPECT_EQ(heard(), (ByteMessages{{0x90, 1, 2}}));
}

TEST_F(CLAPNoteEvents, HaveEachVelocityThatMIDIHas) {
    for (int velocity = 1; velocity < 128; ++velocity) {
        on(0, 60, velocity / 127.0);
        off(0, 60, velocity / 127.0);
        const auto byte = static_cast<std::uint8_t>(velocity);
        EXPECT_EQ(heard(), (ByteMessages{{0x90, 60, byte}, {0x80, 60, byte}}));
    }
}

TEST_F(CLAPNoteEvents, BeginWithoutVelocityAsTheSoftestNote) {
    for (const auto velocity : {0.0, 0.001, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        on(0, 60, velocity);
        EXPECT_EQ(heard(), (ByteMessages{{0x90, 60, 1}})) << velocity;
    }
}

TEST_F(CLAPNoteEvents, NeverExceedTheLoudestNote) {
    for (const auto velocity : {1.0, 1.5, std::numeric_limits<double>::infinity()}) {
        on(0, 60, velocity);
        EXPECT_EQ(heard(), (ByteMessages{{0x90, 60, 127}})) << velocity;
    }
}

TEST_F(CLAPNoteEvents, BeginOnTheFirstChannelWhenItIsLeftOpen) {
    on(-1, 60);
    off(-1, 60);
    EXPECT_EQ(heard(), (ByteMessages{{0x90, 60, 127}, {0x80, 60, 0}}));
}

TEST_F(CLAPNoteEvents, AreNoneBeyondTheChannelsAndKeysOfMIDI) {
    on(0, -1);
    on(16, 60);
    on(-2, 60);
    on(0, 128);
    on(0, -2);
    off(16, 60);
    off(0, 128);
    press(16, -1, 1.0);
    EXPECT_EQ(heard(), ByteMessages{});
}

TEST_F(CLAPNoteEvents, EndWhetherOrNotTheyAreHeldWhenNothingIsLeftOpen) {
    off(3, 70, 1.0, 99);
    choke(3, 71, 99);
    EXPECT_EQ(heard(), (ByteMessages{{0x83, 70, 127}, {0x83, 71, 0}}));
}

TEST_F(CLAPNoteEvents, WithAKeyLeftOpenEndEachHeldNoteOfTheChannel) {
    on(0, 60);
    on(0, 127);
    on(1, 60);
    heard();
    off(0, -1, 0.5);
    EXPECT_EQ(heard(), (ByteMessages{{0x80, 60, 64}, {0x80, 127, 64}}));
    off(0, -1);
    EXPECT_EQ(heard(), ByteMessages{});
}

TEST_F(CLAPNoteEvents, WithAChannelLeftOpenEndTheNoteOnEachChannelThatHoldsIt) {
    on(0, 60);
    on(15, 60);
    on(15, 61);
    heard();
    off(-1, 60);
    EXPECT_EQ(heard(), (ByteMessages{{0x80, 60, 0}, {0x8F, 60, 0}}));
}

TEST_F(CLAPNoteEvents, ThatChokeEverythingEndAllHeldNotes) {
    on(0, 60);
    on(9, 36);
    on(9, 38);
    off(9, 38);
    heard();
    choke(-1, -1);
    EXPECT_EQ(heard(), (ByteMessages{{0x80, 60, 0}, {0x89, 36, 0}}));
}

TEST_F(CLAPNoteEvents, AreFoundByTheNumberThatTheHostGaveThem) {
    on(0, 60, 1.0, 5);
    on(1, 61, 1.0, 6);
    on(2, 62);
    heard();
    off(-1, -1, 0.0, 6);
    EXPECT_EQ(heard(), (ByteMessages{{0x81, 61, 0}, {0x82, 62, 0}}));
    off(-1, -1);
    EXPECT_EQ(heard(), (ByteMessages{{0x80, 60, 0}}));
}

TEST_F(CLAPNoteEvents, PressANoteAsPolyphonicPressure) {
    on(2, 60, 1.0, 5);
    heard();
    press(2, 60, 0.5);
    press(-1, 60, 1.0);
    press(-1, -1, 0.0, 5);
    EXPECT_EQ(heard(), (ByteMessages{{0xA2, 60, 64}, {0xA2, 60, 127}, {0xA2, 60, 0}}));
}

TEST_F(CLAPNoteEvents, PressAChannelAsChannelPressure) {
    on(2, 60);
    on(7, 60);
    heard();
    press(3, -1, 1.0);
    press(-1, -1, 0.5);
    EXPECT_EQ(heard(), (ByteMessages{{0xD3, 127}, {0xD2, 64}, {0xD7, 64}}));
}

TEST_F(CLAPNoteEvents, WithoutACounterpartInMIDIAreLeftOut) {
    on(0, 60);
    heard();
    for (const auto expression :
         {CLAP_NOTE_EXPRESSION_VOLUME, CLAP_NOTE_EXPRESSION_PAN, CLAP_NOTE_EXPRESSION_TUNING,
          CLAP_NOTE_EXPRESSION_VIBRATO, CLAP_NOTE_EXPRESSION_EXPRESSION, CLAP_NOTE_EXPRESSION_BRIGHTNESS}) {
        events.addExpression(expression, 0, 0, 60, 0.5);
    }
    events.addNote(CLAP_EVENT_NOTE_END, 0, 0, 60);
    EXPECT_EQ(heard(), ByteMessages{});
}

TEST_F(CLAPNoteEvents, OfAnotherPortAreLeftOut) {
    events.addNote(CLAP_EVENT_NOTE_ON, 0, 0, 60, 1.0, -1, 1);
    events.addExpression(CLAP_NOTE_EXPRESSION_PRESSURE, 0, 0, 60, 1.0, -1, 1);
    events.addNote(CLAP_EVENT_NOTE_ON, 0, 0, 61, 1.0, -1, -1);
    EXPECT_EQ(heard(), (ByteMessages{{0x90, 61, 127}}));
}

}  // namespace
}  // namespace quillo
