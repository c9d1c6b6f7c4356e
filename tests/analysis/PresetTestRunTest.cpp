// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/PresetTest.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platform/HexText.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

std::string textOf(const MIDIMessage& message) {
    return hexText(message.bytes(), HexCase::lower);
}

/// "400 ms, line 2: 91 3c 64, got 91 3c 50 of rule 0".
std::string textOf(const Mismatch& mismatch) {
    const auto sender = [](const Departure& got) {
        return got.rule ? " of rule " + std::to_string(*got.rule) : " forwarded";
    };
    return std::to_string(mismatch.time) + " ms, line " + std::to_string(mismatch.line) + ": " +
           (mismatch.wanted ? textOf(*mismatch.wanted) : "nothing") + ", got " +
           (mismatch.got ? textOf(mismatch.got->message) + sender(*mismatch.got) : "nothing");
}

std::vector<std::string> found(const std::vector<Rule>& rules, const std::string& test) {
    EngineProbe probe(rules);
    std::vector<std::string> texts;
    for (const auto& mismatch : mismatches(PresetTest::read(test), probe)) {
        texts.push_back(textOf(mismatch));
    }
    return texts;
}

const std::vector<Rule> echoing{rule(onNoteOn(), send(noteOn(1, 0x3C, 0x64), 300), "echo")};

TEST(PresetTestRun, PassesWhereAllOfItLeavesAndNothingElse) {
    EXPECT_THAT(found(echoing, "at 100 ms: 90 3c 64 -> at 100 ms: 90 3c 64, at 400 ms: 91 3c 64\n"
                               "at 400 ms: fa -> at 400 ms: fa"),
                IsEmpty());
}

TEST(PresetTestRun, FindsWhatIsAnotherMessageOrAtAnotherTime) {
    EXPECT_THAT(found(echoing, "at 0 ms: 90 3c 64\n-> at 0 ms: 90 3c 64\n-> at 300 ms: 91 3c 50"),
                ElementsAre("300 ms, line 3: 91 3c 50, got 91 3c 64 of rule 0"));
    EXPECT_THAT(found(echoing, "at 0 ms: 90 3c 64 -> at 0 ms: 90 3c 64\n-> at 299 ms: 91 3c 64"),
                ElementsAre("299 ms, line 2: 91 3c 64, got nothing",
                            "300 ms, line 1: nothing, got 91 3c 64 of rule 0"));
}

TEST(PresetTestRun, FindsWhatWasNotExpected) {
    EXPECT_THAT(found(echoing, "# one\nat 0 ms: 90 3c 64 -> at 0 ms: 90 3c 64"),
                ElementsAre("300 ms, line 2: nothing, got 91 3c 64 of rule 0"));
    EXPECT_THAT(found({}, "at 7 ms: fa"), ElementsAre("7 ms, line 1: nothing, got fa forwarded"));
    EXPECT_THAT(found({rule(onLoad(), send(noteOn(0, 1, 1)))}, "# nothing of loading\n"),
                ElementsAre("0 ms, line 0: nothing, got 90 01 01 of rule 0"));
}

TEST(PresetTestRun, FindsWhatDoesNotLeaveAnyMore) {
    EXPECT_THAT(found({}, "at 7 ms: f0 7e f7 -> at 7 ms: f0 7e f7"),
                ElementsAre("7 ms, line 1: f0 7e f7, got nothing"));
}

TEST(PresetTestRun, WantsTheOrderInWhichMessagesLeaveAtOneTime) {
    const std::vector<Rule> sound{rule(onMIDIStart(), send(programChange(channel(0), 2, byte(5))))};
    EXPECT_THAT(found(sound, "at 0 ms: fa -> at 0 ms: b0 00 02, at 0 ms: c0 05, at 0 ms: fa"), IsEmpty());
    EXPECT_THAT(found(sound, "at 0 ms: fa -> at 0 ms: c0 05, at 0 ms: b0 00 02, at 0 ms: fa"),
                ElementsAre("0 ms, line 1: c0 05, got b0 00 02 of rule 0",
                            "0 ms, line 1: b0 00 02, got c0 05 of rule 0"));
}

TEST(PresetTestRun, SetsOnlyWhatDiffersAtOneTimeSideBySide) {
    EXPECT_THAT(found({}, "at 0 ms: fa -> at 0 ms: fa\nat 0 ms: 90 01 01\nat 0 ms: fc -> at 0 ms: fc"),
                ElementsAre("0 ms, line 2: nothing, got 90 01 01 forwarded"));
}

TEST(PresetTestRun, LetsAnEventComeBeforeTheAnswerToAnEarlierOneHasLeft) {
    EXPECT_THAT(found(echoing, "at 0 ms: 90 3c 64 -> at 0 ms: 90 3c 64, at 300 ms: 91 3c 64\n"
                               "at 100 ms: fa -> at 100 ms: fa"),
                IsEmpty());
}

TEST(PresetTestRun, PassesWhatItRecorded) {
    const std::vector<TimedEvent> take{{0, PluginLoad{}},
                                       {0, HostTransportTriggerVariantsV2::Start},
                                       {100, MIDIMessage{0x90, 0x3C, 0x64}},
                                       {500, MIDIMessage{0xFA}},
                                       {600, MIDIMessage{0xF0, 0xF7}}};
    EngineProbe probe(echoing);
    const auto text = recordedTest(probe, take);
    EXPECT_EQ(text, "on load \u2192 nothing\n"
                    "at 0 ms: transport start \u2192 nothing\n"
                    "at 100 ms: 90 3c 64\n"
                    "    \u2192 at 100 ms: 90 3c 64\n"
                    "    \u2192 at 400 ms: 91 3c 64\n"
                    "at 500 ms: fa \u2192 at 500 ms: fa\n"
                    "at 600 ms: f0 f7 \u2192 nothing\n");
    EXPECT_THAT(found(echoing, text), IsEmpty());
}

}  // namespace
}  // namespace quillo
