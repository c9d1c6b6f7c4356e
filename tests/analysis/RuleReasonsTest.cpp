// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleReasons.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using Transport = HostTransportTriggerVariantsV2;
using Texts = std::vector<std::string>;

Texts textsOf(const std::vector<Rule>& rules, const AskedEvent& event) {
    Texts texts;
    for (const auto& reason : why(rules, event)) {
        texts.push_back(reason.text());
    }
    return texts;
}

const RuleOutputV2 answer = send(noteOn(0, 1, 1));

TEST(RuleReasons, SayWhatARuleThatFiredSentAndWhen) {
    const std::vector rules{rule(onNoteOn(), send(programChange(channel(0), 0, byte(0x30)))),
                            rule(onNoteOn(), send(noteOn(2, 1, 9), 300))};
    EXPECT_THAT(textsOf(rules, MIDIMessage{0x90, 60, 1}),
                ElementsAre("fired: sent b0 00 00, c0 30 at once", "fired: sent 92 01 09 after 300 ms"));
}

TEST(RuleReasons, SayWhatARuleThatWasPassedOverWaitsFor) {
    EXPECT_THAT(textsOf({rule(onNoteOn(any, exactly(1)), answer), rule(onNoteOff(), answer)},
                        MIDIMessage{0x90, 60, 1}),
                ElementsAre("passed over: it waits for channel 2, this is channel 1",
                            "passed over: it waits for Note Off, this is a Note On"));
}

TEST(RuleReasons, CountTheRulesThatAreSwitchedOff) {
    const std::vector rules{rule(onNoteOn(any, any, eatMatching), answer, "Pedal"), rule(onNoteOn(), answer)};
    const auto reasons = why(rules, MIDIMessage{0x90, 60, 1}, {{0, rules[1]}});
    ASSERT_EQ(reasons.size(), 3U);
    EXPECT_EQ(reasons[2].text(), "not reached: rule 2 \"Pedal\" consumed it");
}

TEST(RuleReasons, NameTheRuleThatConsumedTheEvent) {
    const std::vector rules{rule(onNoteOn(), answer, "Echo"), rule(onLoad(), answer, "Reset"),
                            rule(onNoteOn(any, any, eatMatching), answer, "Pedal"),
                            rule(onNoteOn(), answer, "Late")};
    EXPECT_THAT(textsOf(rules, MIDIMessage{0x90, 60, 1}),
                ElementsAre("fired: sent 90 01 01 at once",
                            "not asked: it fires only when the plug-in is loaded",
                            "fired: sent 90 01 01 at once, and consumed it",
                            "not reached: rule 3 \"Pedal\" consumed it"));
}

TEST(RuleReasons, SayThatARuleConsumedWhatItDoesNotWaitFor) {
    const auto reasons =
        why({rule(onNoteOn(any, any, eatNonMatching), answer, "Only notes")}, MIDIMessage{0xB0, 1, 2});
    EXPECT_EQ(reasons,
              (std::vector<RuleReason>{{"consumed it", "it waits for Note On, this is a CC", false, true}}));
}

TEST(RuleReasons, AnswerForTheHostsTransportToo) {
    const std::vector rules{rule(onHost(Transport::Start), answer), rule(onHost(Transport::Stop), answer),
                            rule(onMIDIStart(), answer)};
    EXPECT_THAT(textsOf(rules, Transport::Start),
                ElementsAre("fired: sent 90 01 01 at once",
                            "passed over: it waits for the host's transport to stop, this is its start",
                            "passed over: it waits for MIDI Start, this is the host's transport"));
}

TEST(RuleReasons, SayThatSystemExclusiveIsNotShownToTheRules) {
    EXPECT_THAT(textsOf({rule(onNoteOn(), answer)}, MIDIMessage{0xF0, 1, 0xF7}),
                ElementsAre("not asked: system exclusive that comes in is never shown to the rules"));
}

TEST(RuleReasons, AskAboutWhatALogEntryRecords) {
    EXPECT_EQ(askedEvent(EventLogEntryVariants::Host{Transport::Stop}), AskedEvent(Transport::Stop));
    EXPECT_EQ(askedEvent(EventLogEntryVariants::MIDI{MIDIMessage{0x90, 1, 2}}),
              AskedEvent(MIDIMessage{0x90, 1, 2}));
}

}  // namespace
}  // namespace quillo
