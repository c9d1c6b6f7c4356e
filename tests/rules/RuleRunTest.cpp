// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/RuleRun.hpp"

#include <gtest/gtest.h>

#include "support/RandomRules.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

using Rules = std::vector<Rule>;
using Runs = std::vector<RuleRun>;

/// A rule that waits for a note and sends one.
Rule noteRule(std::uint8_t waitsFor, GenericByteV2 sends, std::string name = "split") {
    return rule(onNoteOn(exactly(waitsFor), exactly(0), eatMatching),
                send(protocol(StatusV2::noteOn, channel(1), sends, triggerByte)), std::move(name));
}

Rules unfolded(const Rules& list, const Runs& runs) {
    Rules rules;
    for (const auto& run : runs) {
        rules.push_back(list.at(run.first));
        for (auto more = run.count - 1; more > 0; --more) {
            rules.push_back(nextInRun(rules.back(), run.rises).value());
        }
    }
    return rules;
}

TEST(RuleRun, IsRulesWhoseValueRisesByOneAndWhoseMessageIsTheSame) {
    const Rules list{noteRule(36, triggerByte), noteRule(37, triggerByte), noteRule(38, triggerByte)};
    EXPECT_EQ(runsOf(list), (Runs{{0, 3, false}}));
    EXPECT_EQ(runsOf({{noteRule(36, byte(60)), noteRule(37, byte(60))}}), (Runs{{0, 2, false}}));
}

TEST(RuleRun, RisesWhereTheMessagesValueRisesAlong) {
    EXPECT_EQ(runsOf({{noteRule(36, byte(48)), noteRule(37, byte(49)), noteRule(38, byte(50))}}),
              (Runs{{0, 3, true}}));
    const auto controller = [](std::uint8_t value) {
        return rule(onControlChange(64, exactly(value)), send(controlChange(0, 7, value)));
    };
    EXPECT_EQ(runsOf({{controller(3), controller(4)}}), (Runs{{0, 2, true}}));
    const auto program = [](std::uint8_t value) {
        return rule(onProgramChange(exactly(value)), send(programChange(channel(0), 5, byte(value))));
    };
    EXPECT_EQ(runsOf({{program(126), program(127)}}), (Runs{{0, 2, true}}));
}

TEST(RuleRun, EndsWhereAnythingElseDiffers) {
    const auto second = noteRule(37, triggerByte);
    auto otherName = second;
    otherName.name = "other";
    auto otherDelay = second;
    otherDelay.output.delay.ms = 1;
    const auto otherChannel =
        rule(onNoteOn(exactly(37), exactly(1), eatMatching), second.output, second.name);
    const auto otherPolicy = rule(onNoteOn(exactly(37), exactly(0)), second.output, second.name);
    const auto otherKind = rule(onNoteOff(exactly(37), exactly(0), eatMatching), second.output, second.name);
    const auto otherMessage = noteRule(37, byte(5));
    for (const auto& other :
         {otherName, otherDelay, otherChannel, otherPolicy, otherKind, otherMessage,
          noteRule(38, triggerByte), noteRule(35, triggerByte), noteRule(36, triggerByte)}) {
        EXPECT_EQ(runsOf({{noteRule(36, triggerByte), other}}), (Runs{{0, 1, false}, {1, 1, false}}));
    }
}

TEST(RuleRun, IsAsLongAsItCanBeFromTheListsBeginning) {
    const Rules list{noteRule(1, byte(60)), noteRule(2, byte(60)), noteRule(3, byte(61)),
                     noteRule(9, byte(9))};
    EXPECT_EQ(runsOf(list), (Runs{{0, 2, false}, {2, 1, false}, {3, 1, false}}));
    EXPECT_EQ(runsOf({}), Runs{});
}

TEST(RuleRun, EndsWithTheHighestDataByte) {
    EXPECT_EQ(nextInRun(noteRule(126, triggerByte), false), noteRule(127, triggerByte));
    EXPECT_EQ(nextInRun(noteRule(127, triggerByte), false), std::nullopt);
    EXPECT_EQ(nextInRun(noteRule(5, byte(127)), true), std::nullopt);
    EXPECT_EQ(runsOf({{noteRule(128, triggerByte), noteRule(129, triggerByte)}}),
              (Runs{{0, 1, false}, {1, 1, false}}));
}

TEST(RuleRun, IsNotMadeByRulesThatConsumeWhatDoesNotMatch) {
    const auto keepsOnly = [](std::uint8_t note) {
        return rule(onNoteOn(exactly(note), any, PassThroughV2::EatNonMatching),
                    send(controlChange(0, 7, 1)));
    };
    EXPECT_EQ(runValue(keepsOnly(5)), std::nullopt);
    EXPECT_EQ(runsOf({{keepsOnly(5), keepsOnly(6)}}), (Runs{{0, 1, false}, {1, 1, false}}));
}

TEST(RuleRun, IsNotMadeByRulesThatTheEditorCannotHoldOrWouldChange) {
    const auto sends = [](std::uint8_t note, const RuleOutputVariantsV2& message) {
        return rule(onNoteOn(exactly(note)), send(message));
    };
    for (const auto& message : {protocol(StatusV2::channelPressure, channel(0), triggerByte),
                                protocol(StatusV2::programChange, channel(0), byte(9))}) {
        EXPECT_EQ(runValue(sends(5, message)), std::nullopt);
        EXPECT_EQ(runsOf({{sends(5, message), sends(6, message)}}), (Runs{{0, 1, false}, {1, 1, false}}));
    }
}

TEST(RuleRun, HasAValueWhereTheTriggerWaitsForOne) {
    EXPECT_EQ(runValue(noteRule(36, triggerByte)), 36);
    EXPECT_EQ(runValue(rule(onNoteOff(exactly(5)), send(noteOn(0, 1, 2)))), 5);
    EXPECT_EQ(runValue(rule(onControlChange(64, exactly(127)), send(noteOn(0, 1, 2)))), 127);
    EXPECT_EQ(runValue(rule(onProgramChange(exactly(0)), send(noteOn(0, 1, 2)))), 0);
    for (const auto& trigger : {onNoteOn(), onControlChange(64), onProgramChange(), onMIDIStart(),
                                onHost(HostTransportTriggerVariantsV2::Start), onLoad()}) {
        EXPECT_EQ(runValue(rule(trigger, send(noteOn(0, 1, 2)))), std::nullopt);
    }
}

TEST(RuleRun, IsLinkedRuleByRule) {
    const auto link = [](const Rule& above, const Rule& below) {
        return linkBetween(entryFromRule(above), entryFromRule(below));
    };
    EXPECT_EQ(link(noteRule(36, triggerByte), noteRule(37, triggerByte)), RunLink::same);
    EXPECT_EQ(link(noteRule(36, byte(48)), noteRule(37, byte(48))), RunLink::same);
    EXPECT_EQ(link(noteRule(36, byte(48)), noteRule(37, byte(49))), RunLink::rising);
    EXPECT_EQ(link(noteRule(36, byte(48)), noteRule(37, byte(50))), RunLink::none);
    EXPECT_EQ(link(noteRule(36, triggerByte), noteRule(38, triggerByte)), RunLink::none);
    EXPECT_EQ(link(noteRule(36, triggerByte), noteRule(37, triggerByte, "other")), RunLink::none);
    EXPECT_EQ(link(rule(onNoteOn(), send(noteOn(0, 1, 2))), noteRule(37, triggerByte)), RunLink::none);
    EXPECT_EQ(link(noteRule(36, triggerByte), rule(onLoad(), send(noteOn(0, 1, 2)))), RunLink::none);
}

TEST(RuleRun, ComparesAndSendsOneFieldOfAnEntry) {
    RuleEntry entry;
    entry.trigger.note = entry.trigger.controllerValue = entry.trigger.program = exactly(5);
    entry.output.note = entry.output.controllerValue = entry.output.program = byte(7);
    for (const auto type : {TriggerEntryType::NoteOn, TriggerEntryType::NoteOff,
                            TriggerEntryType::ControlChange, TriggerEntryType::ProgramChange}) {
        entry.trigger.type = type;
        EXPECT_EQ(comparedValue(entry), 5);
    }
    for (const auto type : {OutputEntryType::NoteOn, OutputEntryType::NoteOff, OutputEntryType::ControlChange,
                            OutputEntryType::ProgramChange}) {
        entry.output.type = type;
        EXPECT_EQ(sentValue(entry), 7);
    }
    entry.trigger.program = any;
    entry.output.program = triggerByte;
    EXPECT_EQ(comparedValue(entry), std::nullopt);
    EXPECT_EQ(sentValue(entry), std::nullopt);
    entry.trigger.type = TriggerEntryType::OnLoad;
    entry.output.type = OutputEntryType::PitchWheel;
    EXPECT_EQ(comparedValue(entry), std::nullopt);
    EXPECT_EQ(sentValue(entry), std::nullopt);
}

TEST(RuleRun, UnfoldedIsTheListAgain) {
    for (unsigned seed = 0; seed < 2'000; ++seed) {
        const auto list = RandomRules(seed).list(40);
        EXPECT_EQ(unfolded(list, runsOf(list)), list) << "seed " << seed;
    }
    Rules list;
    for (std::uint8_t note = 0; note < 128; ++note) {
        list.push_back(noteRule(note, byte(static_cast<std::uint8_t>(note / 2))));
        list.push_back(noteRule(note, byte(note), "rising"));
    }
    EXPECT_EQ(unfolded(list, runsOf(list)), list);
}

}  // namespace
}  // namespace quillo
