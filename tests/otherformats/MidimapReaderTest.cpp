// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "otherformats/OtherFormat.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

OtherRules readMap(const std::string& lines,
                   const std::string& beginning = "midimap v1\nforward-unmatched\n") {
    return readOtherFormat(beginning + lines);
}

RuleOutputV2 sent(StatusV2 status, RuleOutputChannelV2 onChannel, GenericByteV2 byte1, GenericByteV2 byte2) {
    return send(protocol(status, onChannel, byte1, byte2));
}

Rule named(RuleTriggerV2 trigger, RuleOutputV2 output, const std::string& name = "midimap") {
    return rule(std::move(trigger), std::move(output), name);
}

std::string mapProblem(const std::string& text) {
    try {
        static_cast<void>(readOtherFormat(text));
    } catch (const OtherFormatError& error) {
        return error.what();
    }
    return "";
}

TEST(MidimapReader, KnowsItsFilesByTheirFirstLineOfMeaning) {
    EXPECT_TRUE(isOtherFormat("# mine\n\n midimap v1 \n"));
    EXPECT_TRUE(isOtherFormat("MIDIMAP \t v1\n"));
    EXPECT_TRUE(isOtherFormat("\xEF\xBB\xBFmidimap v1\n"));
    EXPECT_FALSE(isOtherFormat("midimap v2\n"));
    EXPECT_FALSE(isOtherFormat("{\"rules\":[]}"));
    EXPECT_FALSE(isOtherFormat(""));
    EXPECT_TRUE(isOtherFormat(std::string((std::size_t{1} << 20U) - 10, '\n') + "midimap v1\n"));
    EXPECT_FALSE(isOtherFormat(std::string((std::size_t{1} << 20U) - 9, '\n') + "midimap v1\n"));
}

TEST(MidimapReader, ReadsANoteThatBecomesAnother) {
    EXPECT_THAT(readMap("NoteOn 60 ANY | SAME 62 SAME\n").rules,
                ElementsAre(named(onNoteOn(exactly(60), any, eatMatching),
                                  sent(StatusV2::noteOn, triggerChannel, byte(62), triggerByte))));
}

TEST(MidimapReader, TakesNoteForBothNoteOnAndNoteOff) {
    EXPECT_THAT(readMap("Note C3 ANY | SAME G#3 SAME\n").rules,
                ElementsAre(named(onNoteOff(exactly(48), any, eatMatching),
                                  sent(StatusV2::noteOff, triggerChannel, byte(56), triggerByte)),
                            named(onNoteOn(exactly(48), any, eatMatching),
                                  sent(StatusV2::noteOn, triggerChannel, byte(56), triggerByte))));
}

TEST(MidimapReader, ReadsNotesByTheirNames) {
    const auto numberOf = [](const std::string& note) {
        const auto rules = readMap("NoteOn ANY ANY | SAME " + note + " SAME\n").rules;
        return rules.front().output;
    };
    for (const auto& [name, number] : std::vector<std::pair<std::string, int>>{
             {"C-1", 0}, {"c4", 60}, {"Bb8", 118}, {"G#0", 20}, {"b3", 59}, {"G9", 127}}) {
        EXPECT_EQ(numberOf(name), sent(StatusV2::noteOn, triggerChannel,
                                       byte(static_cast<std::uint8_t>(number)), triggerByte))
            << name;
    }
}

TEST(MidimapReader, CountsChannelsFromZero) {
    EXPECT_THAT(readMap("NOTEC2 ANY ANY | CHN9 SAME SAME\n").rules,
                ElementsAre(named(onNoteOff(any, exactly(2), eatMatching),
                                  sent(StatusV2::noteOff, channel(9), triggerByte, triggerByte)),
                            named(onNoteOn(any, exactly(2), eatMatching),
                                  sent(StatusV2::noteOn, channel(9), triggerByte, triggerByte))));
}

TEST(MidimapReader, MakesARunOfTheValuesUnderAMask) {
    const auto rules = readMap("CC 64 0x40/0x40 | SAME SAME 127\n").rules;
    ASSERT_EQ(rules.size(), 64U);
    EXPECT_EQ(rules.front(), named(onControlChange(64, exactly(64), any, eatMatching),
                                   sent(StatusV2::CC, triggerChannel, byte(64), byte(127))));
    EXPECT_EQ(rules.back(), named(onControlChange(64, exactly(127), any, eatMatching),
                                  sent(StatusV2::CC, triggerChannel, byte(64), byte(127))));
}

TEST(MidimapReader, MakesARuleForEachControllerWhereAnyIsWaitedFor) {
    const auto rules = readMap("CC ANY ANY | CHN3 SAME SAME\n").rules;
    ASSERT_EQ(rules.size(), 128U);
    EXPECT_EQ(rules[7], named(onControlChange(7, any, any, eatMatching),
                              sent(StatusV2::CC, channel(3), byte(7), triggerByte)));
}

TEST(MidimapReader, WritesAnotherKindOfMessage) {
    EXPECT_THAT(readMap("0x90/0xff 60 ANY | 0xb1 64 SAME\n").rules,
                ElementsAre(named(onNoteOn(exactly(60), exactly(0), eatMatching),
                                  sent(StatusV2::CC, channel(1), byte(64), triggerByte))));
    EXPECT_THAT(readMap("0xc0/0xf0 5 | SAME 6\n").rules,
                ElementsAre(named(onProgramChange(exactly(5), any, eatMatching),
                                  send(protocol(StatusV2::programChange, triggerChannel, byte(6))))));
}

TEST(MidimapReader, MakesARuleForEachValueThatBecomesPitchOrPressure) {
    const auto pitch = readMap("CC 1 ANY | 0xE0/0x0f 0 SAME\n").rules;
    ASSERT_EQ(pitch.size(), 128U);
    EXPECT_EQ(pitch[5], named(onControlChange(1, exactly(5), any, eatMatching),
                              sent(StatusV2::pitchWheel, triggerChannel, byte(0), byte(5))));
    const auto pressure = readMap("0xc0/0xf0 ANY | 0xd2 SAME\n").rules;
    ASSERT_EQ(pressure.size(), 128U);
    EXPECT_EQ(pressure[127], named(onProgramChange(exactly(127), any, eatMatching),
                                   send(protocol(StatusV2::channelPressure, channel(2), byte(127)))));
    EXPECT_THAT(readMap("NoteOn 60 ANY | 0xE0/0x0f 0 SAME\n").rules, IsEmpty());
}

TEST(MidimapReader, SendsAValueWhoseMaskLeavesNothingOfADataByte) {
    EXPECT_EQ(readMap("NoteOn ANY ANY | SAME 60/0x80 SAME\n").rules,
              readMap("NoteOn ANY ANY | SAME 60 SAME\n").rules);
}

TEST(MidimapReader, MatchesMessagesOfAsManyBytesOnly) {
    EXPECT_EQ(
        takenText(readMap("NoteOn 60 | SAME 62\n")),
        "line 3: left out: no message matches it\n0 lines taken, 0 of them in part; 1 left out. 0 rules.\n");
    EXPECT_THAT(readMap("ANY 5 | CHN2 SAME\n").rules,
                ElementsAre(named(onProgramChange(exactly(5), any, eatMatching),
                                  send(protocol(StatusV2::programChange, channel(2), byte(5))))));
    EXPECT_THAT(lostText(readMap("0xfa | 0xc0\n")),
                HasSubstr("left out: it makes a message that is not complete"));
}

TEST(MidimapReader, NamesRulesAfterTheCommentAboveThem) {
    const auto rules =
        readMap("# The pads\nNoteOn 36 ANY | SAME 48 SAME\nNoteOn 37 ANY | SAME 49 SAME\n").rules;
    EXPECT_EQ(rules[0].name, "The pads");
    EXPECT_EQ(rules[1].name, "The pads");
}

TEST(MidimapReader, DropsWhatNothingMatchesUnlessItIsForwarded) {
    EXPECT_THAT(
        readMap("NoteOn 60 ANY | SAME 62 SAME\n", "midimap v1\n").rules,
        ElementsAre(named(onNoteOn(exactly(60), any, eatMatching),
                          sent(StatusV2::noteOn, triggerChannel, byte(62), triggerByte)),
                    named(onNoteOn(exactly(60), any, eatNonMatching),
                          sent(StatusV2::noteOn, triggerChannel, byte(62), triggerByte), "Drop the rest")));
}

TEST(MidimapReader, SaysUnderTheLastLineLeftOutThatNothingDropsTheRest) {
    EXPECT_EQ(
        takenText(readMap("Pitch 1 ANY | SAME SAME SAME\nPitch 2 ANY | SAME SAME SAME\n", "midimap v1\n")),
        "line 2: left out: no rule can wait for pitch bend\n"
        "line 3: left out: no rule can wait for pitch bend; "
        "no rule is left that could drop what no line matches\n"
        "0 lines taken, 0 of them in part; 2 left out. 0 rules.\n");
    EXPECT_EQ(takenText(readMap("", "midimap v1\n")),
              "0 lines taken, 0 of them in part; 0 left out. 0 rules.\n");
}

TEST(MidimapReader, LeavesOutLinesThatWouldMakeThePresetTooLargeToBeReadAgain) {
    constexpr std::size_t mostOfAPreset = 64UL << 20U;
    std::string lines;
    for (int line = 0; line < 100; ++line) {
        lines += "NoteOn ANY ANY | 0x90/0x01 0/0x7e SAME\n";
    }
    const auto taken = readMap(lines + "NoteOn 60 ANY | SAME 62 SAME\n");
    EXPECT_LT(PluginData{taken.rules}.write().size(), mostOfAPreset);
    EXPECT_GT(taken.rules.size(), 50'000U);
    EXPECT_EQ(taken.rules.back().output, sent(StatusV2::noteOn, triggerChannel, byte(62), triggerByte));
    EXPECT_THAT(takenText(taken),
                HasSubstr("line 102: left out: with its rules the preset would be too large to be "
                          "read again\nline 103: taken as rule "));
}

TEST(MidimapReader, LeavesOutALineWhoseNameWouldMakeThePresetTooLargeToBeReadAgain) {
    const auto taken = readMap("# " + std::string(100'000, 'x') + "\nANY ANY ANY | SAME 0/0x7e SAME\n");
    EXPECT_THAT(taken.rules, IsEmpty());
    EXPECT_EQ(lostText(taken),
              "line 4: left out: with its rules the preset would be too large to be read again\n");
}

std::vector<PassThroughV2> policiesOf(const OtherRules& taken) {
    std::vector<PassThroughV2> policies;
    for (const auto& rule : taken.rules) {
        policies.push_back(rule.trigger.getIf<RuleTriggerV2::MessageBased>()->trigger.passTrough);
    }
    return policies;
}

TEST(MidimapReader, LetsTheLastOfAllMatchingRulesConsume) {
    const auto all = [](const std::string& lines) {
        return readMap(lines, "midimap v1\nforward-unmatched\nmatch-all\n");
    };
    const auto whole = all("NoteOn 60 ANY | SAME 62 SAME\nNoteOn ANY ANY | CHN1 SAME SAME\n");
    EXPECT_THAT(policiesOf(whole), ElementsAre(PassThroughV2::PassThrough, eatMatching));
    EXPECT_EQ(lostText(whole), "");
    EXPECT_THAT(policiesOf(all("NoteOn 60 ANY | SAME 62 SAME\nNoteOn 61 ANY | CHN1 SAME SAME\n")),
                ElementsAre(eatMatching, eatMatching));
    const auto part = all("NoteOn ANY ANY | CHN1 SAME SAME\nNoteOn 60 ANY | SAME 62 SAME\n");
    EXPECT_THAT(policiesOf(part), ElementsAre(PassThroughV2::PassThrough, eatMatching));
    const auto dropped =
        readMap("NoteOn ANY ANY | CHN1 SAME SAME\nNoteOn 60 ANY | SAME 62 SAME\n", "midimap v1\nmatch-all\n");
    EXPECT_THAT(policiesOf(dropped), ElementsAre(PassThroughV2::PassThrough, eatMatching, eatNonMatching));
    EXPECT_EQ(lostText(dropped), "");
    EXPECT_THAT(lostText(part), HasSubstr("line 4: taken in part as rule 1: of what only some lines below"));
}

TEST(MidimapReader, SaysWhatNoRuleCanDo) {
    const auto lost = [](const std::string& line) { return lostText(readMap(line + "\n")); };
    EXPECT_EQ(
        lost("NoteOn 60 100 | SAME 62 SAME"),
        "line 3: left out: it looks at the velocity of a note, or calculates with it, which no rule does\n");
    EXPECT_EQ(lost("Pitch ANY ANY | CHN2 SAME SAME"), "line 3: left out: no rule can wait for pitch bend\n");
    EXPECT_THAT(
        lost("ANY ANY ANY | CHN2 SAME SAME"),
        HasSubstr("line 3: taken in part as rules 1 to 130: no rule can wait for key pressure; no rule "
                  "can wait for pitch bend; no rule can wait for system messages"));
    EXPECT_THAT(lost("NoteOn ANY ANY | 0xa0 SAME SAME"), HasSubstr("it sends what no rule sends"));
    EXPECT_THAT(lost("NoteOn ANY ANY | 0xc0 SAME SAME"), HasSubstr("a message that is not complete"));
    EXPECT_THAT(lost("NoteOn ANY ANY | SAME 200 SAME"), HasSubstr("it makes numbers above 127"));
    EXPECT_EQ(lost("CC 7 ANY | SAME SAME 0x80/0xff"), "line 3: left out: it makes numbers above 127\n");
    EXPECT_EQ(lost("NoteOn ANY ANY | SAME 0x80/0xff SAME"), "line 3: left out: it makes numbers above 127\n");
    EXPECT_THAT(lost("NoteOn ANY ANY | SAME SAME 0x80/0xff"),
                HasSubstr("left out: it looks at the velocity"));
    EXPECT_THAT(lost("0xb0/0xf0 ANY ANY | 0xb0/1 0/0x55 0/0x55"), HasSubstr("it would take 262144 rules"));
    EXPECT_EQ(lost("NoteOn 60 ANY | SAME 62 SAME"), "");
}

TEST(MidimapReader, CountsWhatItTook) {
    const auto taken = readMap("NoteOn 60 ANY | SAME 62 SAME\nPitch ANY ANY | CHN2 SAME SAME\n"
                               "0x90/0x90 62 ANY | CHN2 SAME SAME\n");
    EXPECT_THAT(takenText(taken), testing::StartsWith("line 3: taken as rule 1\nline 4: left out: no rule"));
    EXPECT_THAT(takenText(taken),
                testing::EndsWith("2 lines taken, 1 of them in part; 1 left out. 3 rules.\n"));
}

TEST(MidimapReader, NamesTheLineOfWhatIsDamaged) {
    EXPECT_THAT(mapProblem("midimap v1\n\nhello\n"), HasSubstr("line 3: \"hello\" is neither a rule"));
    EXPECT_THAT(mapProblem("midimap v1\nNoteOn 60 | SAME\n"), HasSubstr("line 2: on each side of |"));
    EXPECT_THAT(mapProblem("midimap v1\n1 2 3 4 | 1 2 3 4\n"), HasSubstr("line 2: on each side of |"));
    for (const std::string field :
         {"256", "x", "12/", "0x", "-1", "H2", "C10", "C2147483646", "NOTEC16", "1/300"}) {
        EXPECT_THAT(mapProblem("midimap v1\n" + field + " 60 | SAME SAME\n"), HasSubstr("is not a field"))
            << field;
    }
    EXPECT_THAT(mapProblem("hello"), HasSubstr("neither a midimap.lv2 configuration"));
}

}  // namespace
}  // namespace quillo
