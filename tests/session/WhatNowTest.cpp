// SPDX-License-Identifier: GPL-3.0-or-later
// What the events of the logs would do now, without a window.
#include "session/WhatNow.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "session/Session.hpp"
#include "support/TestOutput.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using Texts = std::vector<std::string>;

Texts texts(const MarkedLog& log) {
    Texts all;
    for (const auto& entry : log.entries) {
        all.push_back(markedText(entry));
    }
    return all;
}

Rule echo(std::uint8_t note, std::uint32_t delay = 0) {
    return rule(onNoteOn(exactly(60)), send(noteOn(1, note, 1), delay), "Echo");
}

EventLogEntry entry(SampleTime time, MIDIMessage message) {
    return {time, EventLogEntryVariants::MIDI{std::move(message)}};
}

/// A session that an editor has been opened on, at 44100 frames a second.
class WhatNow : public testing::Test {
protected:
    WhatNow() {
        static_cast<void>(session.setSampleRate(44100));
        session.viewDidLoad();
    }

    void edit(const std::vector<Rule>& rules) {
        session.onRulesChanged(rules);
        session.model()->setRules(elementsFrom(rules));
    }

    /// A block of 100 frames with a message at its frame 10.
    void play(const MIDIMessage& message) {
        TestOutput output;
        session.renderer().begin(100, output);
        session.renderer().receive(10, message.bytes());
        static_cast<void>(session.renderer().end());
        session.drain();
    }

    void playNothing() {
        TestOutput output;
        session.renderer().begin(100, output);
        static_cast<void>(session.renderer().end());
        session.drain();
    }

    Session session;
};

TEST_F(WhatNow, NothingIsDifferentWithoutAnEdit) {
    edit({echo(64)});
    play({0x90, 60, 100});
    const auto log = session.whatNow();
    EXPECT_THAT(texts(log), ElementsAre("[10] 91 40 01", "[10] 90 3c 64"));
    EXPECT_EQ(sumText(log), "Nothing would be different");
    EXPECT_EQ(log.alike, 2U);
}

TEST_F(WhatNow, MarksWhatWouldNotLeaveAnyMoreAndWhatWouldInstead) {
    edit({echo(64)});
    play({0x90, 60, 100});
    edit({echo(65)});
    const auto log = session.whatNow();
    EXPECT_THAT(texts(log), ElementsAre("[10] 91 40 01, would not be sent now", "[10] 90 3c 64",
                                        "[10] 91 41 01, would be sent now"));
    EXPECT_EQ(sumText(log), "1 would be sent, 1 would not; 1 alike");
}

TEST_F(WhatNow, WhatWouldBeSentStandsAtItsTimeAtTheSessionsRate) {
    edit({});
    play({0x90, 60, 100});
    play({0x80, 60, 0});
    edit({echo(64, 1), echo(65, 10)});
    const auto log = session.whatNow();
    EXPECT_THAT(texts(log), ElementsAre("[10] 90 3c 64", "[54] 91 40 01, would be sent now", "[110] 80 3c 00",
                                        "[451] 91 41 01, would be sent now"));
    EXPECT_EQ(sumText(log), "2 more would be sent; 2 alike");
}

TEST_F(WhatNow, TheRulesOfTheNewestEventCountHoweverOftenTheyWereEditedSince) {
    edit({echo(64)});
    play({0x90, 60, 100});
    edit({echo(65)});
    edit({rule(onNoteOn(exactly(60), any, PassThroughV2::EatMatching), send(noteOn(1, 64, 1)), "Echo")});
    EXPECT_EQ(sumText(session.whatNow()), "1 would not be sent; 1 alike");
    play({0x80, 60, 0});
    EXPECT_EQ(sumText(session.whatNow()), "Nothing would be different");
}

TEST_F(WhatNow, AnEventCountsForTheRulesThatItMetThoughItIsShownAfterAnEdit) {
    edit({echo(64)});
    TestOutput output;
    session.renderer().begin(100, output);
    session.renderer().receive(10, MIDIMessage{0x90, 60, 100}.bytes());
    ASSERT_EQ(session.renderer().end(), noErr);
    edit({echo(65)});
    session.drain();
    EXPECT_EQ(sumText(session.whatNow()), "1 would be sent, 1 would not; 1 alike");
}

TEST_F(WhatNow, ClockAndActiveSensingAreNoNewerEvents) {
    edit({echo(64)});
    play({0x90, 60, 100});
    edit({});
    play({0xF8});
    play({0xFE});
    EXPECT_EQ(sumText(session.whatNow()), "1 would not be sent; 3 alike");
}

TEST_F(WhatNow, WhatOlderRulesSentThatWouldBeSentNowIsAlike) {
    edit({echo(64)});
    play({0x90, 60, 100});
    edit({echo(65)});
    play({0x80, 60, 0});
    edit({echo(64)});
    EXPECT_EQ(sumText(session.whatNow()), "Nothing would be different");
}

TEST_F(WhatNow, ARuleThatIsSwitchedOffSendsNothing) {
    edit({echo(64)});
    play({0x90, 60, 100});
    session.onRulesChanged({}, {{0, echo(64)}});
    session.model()->setRules(elementsFrom({}, {{0, echo(64)}}));
    EXPECT_EQ(sumText(session.whatNow()), "1 would not be sent; 1 alike");
}

TEST_F(WhatNow, WhatNoEventOfTheLogHasSentIsNeverMarked) {
    session.install({rule(onLoad(), send(noteOn(3, 1, 1)), "Load"), echo(64)});
    session.drain();
    play({0x90, 60, 100});
    session.onInstantMessageClick(noteOn(4, 2, 2));
    session.panic();
    playNothing();
    edit({});
    Texts marked;
    for (const auto& line : texts(session.whatNow())) {
        if (line.ends_with("now")) {
            marked.push_back(line);
        }
    }
    EXPECT_GT(session.model()->outLog().size(), 4U);
    EXPECT_THAT(marked, ElementsAre("[10] 91 40 01, would not be sent now"));
}

TEST_F(WhatNow, WhatLeftBecauseOfAForgottenEventIsNotMarked) {
    edit({echo(64)});
    play({0x90, 60, 100});
    for (int count = 0; count < 99; ++count) {
        play({0xB0, 1, 1});
    }
    EXPECT_EQ(session.whatNow().count(MarkedEntry::Mark::gone), 0U);
    edit({});
    EXPECT_EQ(session.whatNow().count(MarkedEntry::Mark::gone), 0U)
        << "Its echo has left the log of 100 messages.";
    play({0x90, 60, 100});
    play({0xB0, 1, 1});
    EXPECT_EQ(sumText(session.whatNow()), "Nothing would be different");
}

TEST_F(WhatNow, WhatRulesThatCannotBeShownHaveSentCounts) {
    edit({});
    session.install(
        {rule(onNoteOn(), send(protocol(StatusV2::pitchWheel, triggerChannel, byte(0), triggerByte)))});
    session.drain();
    ASSERT_TRUE(session.model()->whyNotEditable());
    play({0x90, 60, 100});
    session.install({});
    session.drain();
    EXPECT_EQ(sumText(session.whatNow()), "1 would not be sent; 1 alike");
}

TEST(WhatNowOfLogs, BeforeTheOldestEntryOfAFullLogNothingIsAdded) {
    const MIDIMessage note{0x90, 60, 100};
    KeptLogs logs{{entry(1, note), entry(5, note)}, {entry(5, note)}, true};
    EXPECT_THAT(texts(whatNow({}, {echo(64)}, logs, 1000)),
                ElementsAre("[5] 90 3c 64", "[5] 91 40 01, would be sent now"));
    logs.forgets = false;
    EXPECT_EQ(whatNow({}, {echo(64)}, logs, 1000).count(MarkedEntry::Mark::added), 2U);
}

TEST(WhatNowOfLogs, ADelayedMessageThatHasNotLeftYetIsNotNew) {
    const MIDIMessage note{0x90, 60, 100};
    const KeptLogs logs{{entry(1, note)}, {entry(1, note)}};
    EXPECT_THAT(texts(whatNow({echo(64, 9)}, {echo(64, 9)}, logs, 1000)), ElementsAre("[1] 90 3c 64"));
}

TEST(WhatNowOfLogs, OfTwoEqualMessagesOneWouldBeLeft) {
    const MIDIMessage note{0x90, 60, 100};
    const MIDIMessage answer{0x91, 64, 1};
    const KeptLogs logs{{entry(1, note)}, {entry(1, answer), entry(1, answer), entry(1, note)}};
    EXPECT_THAT(texts(whatNow({echo(64), echo(64)}, {echo(64)}, logs, 1000)),
                ElementsAre("[1] 91 40 01", "[1] 91 40 01, would not be sent now", "[1] 90 3c 64"));
}

TEST(WhatNowOfLogs, AnotherOrderAtOneTimeIsSaid) {
    const MIDIMessage note{0x90, 60, 100};
    const KeptLogs logs{{entry(1, note)}, {entry(1, {0x91, 64, 1}), entry(1, {0x91, 65, 1}), entry(1, note)}};
    const auto log = whatNow({echo(64), echo(65)}, {echo(65), echo(64)}, logs, 1000);
    EXPECT_EQ(log.alike, 3U);
    EXPECT_EQ(sumText(log), "Only the order would be different");
}

TEST(WhatNowOfLogs, TheHostsTransportIsAnEventAsWell) {
    using Transport = HostTransportTriggerVariantsV2;
    const KeptLogs logs{{{7, EventLogEntryVariants::Host{Transport::Start}}}, {}};
    EXPECT_THAT(texts(whatNow({}, {rule(onHost(Transport::Start), send(noteOn(0, 1, 1), 3))}, logs, 1000)),
                ElementsAre("[10] 90 01 01, would be sent now"));
}

}  // namespace
}  // namespace quillo
