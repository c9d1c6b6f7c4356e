// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>

#include <string>

#include "otherformats/OtherFormat.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto pass = PassThroughV2::PassThrough;
const std::string beginning = "[Project]\nVersion=1\n";
const std::string stops = "Actv01Stop01OutO00";

OtherRules read(const std::string& translators, Unmatched unmatched = Unmatched::pass) {
    return readOtherFormat(beginning + "[Preset.0]\nName=Stage\nActive=1\n" + translators, unmatched);
}

/// One translator, on lines 6 to 9.
OtherRules readOne(const std::string& incoming, const std::string& outgoing,
                   const std::string& options = stops) {
    return read("Name0=Mine\nIncoming0=" + incoming + "\nOutgoing0=" + outgoing + "\nOptions0=" + options +
                "\n");
}

RuleOutputV2 sentController(GenericByteV2 byte1, GenericByteV2 byte2) {
    return send(protocol(StatusV2::CC, channel(0), byte1, byte2));
}

std::string problemWith(const std::string& text) {
    try {
        static_cast<void>(readOtherFormat(text));
    } catch (const OtherFormatError& error) {
        return error.what();
    }
    return "";
}

TEST(BmtpReader, KnowsProjectsByTheirFirstSection) {
    EXPECT_TRUE(isOtherFormat("\r\n[Project]\r\nVersion=1\r\n"));
    EXPECT_FALSE(isOtherFormat("[Preset.0]\n"));
}

TEST(BmtpReader, ReadsAMessageWithAVariable) {
    const auto taken = readOne("MID1B040pp", "MID1B007pp");
    EXPECT_THAT(taken.rules, ElementsAre(rule(onControlChange(0x40, any, exactly(0), eatMatching),
                                              sentController(byte(7), triggerByte), "Mine")));
    EXPECT_EQ(takenText(taken),
              "line 7: taken as rule 1\n1 line taken, 0 of them in part; 0 left out. 1 rule.\n");
}

TEST(BmtpReader, CountsTheRulesOfAllMessagesThatALineWouldTake) {
    const auto taken = readOne("MID1B0ppqq", "MID1B1qqppB2qqpp");
    EXPECT_THAT(taken.rules, IsEmpty());
    EXPECT_THAT(takenText(taken), HasSubstr("it would take 32768 rules"));
}

TEST(BmtpReader, ReadsLinesThatEndAsOnWindows) {
    EXPECT_EQ(
        readOtherFormat("[Project]\r\nVersion=1\r\n[Preset.0]\r\nIncoming0=MID1FA\r\nOutgoing0=MID1C005\r\n")
            .rules,
        (std::vector<Rule>{rule(onMIDIStart(eatMatching),
                                send(protocol(StatusV2::programChange, channel(0), byte(5))), "bmtp")}));
}

TEST(BmtpReader, MovesAVariableToAnotherPlaceByARunOfRules) {
    const auto rules = readOne("MID190ppqq", "MID1B007pp").rules;
    ASSERT_EQ(rules.size(), 128U);
    EXPECT_EQ(rules[60], rule(onNoteOn(exactly(60), exactly(0), eatMatching),
                              sentController(byte(7), byte(60)), "Mine"));
}

TEST(BmtpReader, SendsSeveralMessagesByAsManyRules) {
    const auto on = [](PassThroughV2 policy) { return onNoteOn(exactly(36), exactly(0), policy); };
    EXPECT_THAT(
        readOne("MID1 90 24 pp", "MID1 B0 07 01 C0 05 F0 7E F7").rules,
        ElementsAre(rule(on(pass), sentController(byte(7), byte(1)), "Mine"),
                    rule(on(pass), send(protocol(StatusV2::programChange, channel(0), byte(5))), "Mine"),
                    rule(on(eatMatching), send(systemExclusive({0x7E})), "Mine")));
}

TEST(BmtpReader, SendsABankAndItsProgramByOneRule) {
    EXPECT_THAT(
        readOne("MID1FA", "MID1B10003C105").rules,
        ElementsAre(rule(onMIDIStart(eatMatching), send(programChange(channel(1), 3, byte(5))), "Mine")));
    EXPECT_EQ(readOne("MID1FA", "MID1B10003C005").rules.size(), 2U);
    EXPECT_EQ(readOne("MID1FA", "MID1B12003C105").rules.size(), 2U);
    EXPECT_EQ(readOne("MID1B040pp", "MID1B100ppC105").rules.size(), 2U);
}

TEST(BmtpReader, SwitchesOffWhatIsNotActive) {
    const auto taken = readOne("MID1B040pp", "MID1B007pp", "Actv00Stop00OutO00");
    EXPECT_THAT(taken.rules, IsEmpty());
    ASSERT_EQ(taken.shelf.size(), 1U);
    EXPECT_EQ(taken.shelf[0].rule.name, "Mine");
    EXPECT_THAT(takenText(taken), HasSubstr("line 7: taken as 1 rule, switched off\n"));
    EXPECT_EQ(
        readOtherFormat(beginning + "[Preset.0]\nActive=0\nIncoming0=MID1B040pp\nOutgoing0=MID1B007pp\n")
            .shelf.size(),
        1U);
}

TEST(BmtpReader, LetsLaterTranslatorsHaveTheMessageUnlessOneStops) {
    const auto two = [](const std::string& options) {
        const auto taken = read("Incoming0=MID1B040pp\nOutgoing0=MID1B007pp\nOptions0=" + options +
                                "\nIncoming1=MID1B040qq\nOutgoing1=MID1B00Aqq\n");
        return taken.rules[0].trigger.getIf<RuleTriggerV2::MessageBased>()->trigger.passTrough;
    };
    EXPECT_EQ(two("Actv01Stop00OutO00"), pass);
    EXPECT_EQ(two("Actv01Stop01OutO00"), eatMatching);
}

TEST(BmtpReader, TakesALineWholeOfWhichSeveralBelowTakeAllTogether) {
    const auto taken = read("Incoming0=MID190ppqq\nOutgoing0=MID191ppqq\n"
                            "Incoming1=MID190ppqq\nOutgoing1=MID1B001pp\n");
    EXPECT_EQ(takenText(taken), "line 6: taken as rule 1\nline 8: taken as rules 2 to 129\n"
                                "2 lines taken, 0 of them in part; 0 left out. 129 rules.\n");
    const auto part = read("Incoming0=MID190ppqq\nOutgoing0=MID191ppqq\n"
                           "Incoming1=MID1903Cqq\nOutgoing1=MID1B00101\n"
                           "Incoming2=MID1903Dqq\nOutgoing2=MID1B00101\n");
    EXPECT_THAT(lostText(part), testing::StartsWith("line 6: taken in part as rule 1: of what only some"));
}

TEST(BmtpReader, AsksOnlyItsOwnRulesWhereALineStops) {
    const auto taken = read("Incoming0=MID190ppqq\nOutgoing0=MID191ppqqB00101\nOptions0=" + stops +
                            "\nIncoming1=MID1903Cqq\nOutgoing1=MID1B00101\n");
    EXPECT_EQ(lostText(taken), "");
    const auto policyOf = [&](std::size_t rule) {
        return taken.rules[rule].trigger.getIf<RuleTriggerV2::MessageBased>()->trigger.passTrough;
    };
    EXPECT_EQ(policyOf(0), pass);
    EXPECT_EQ(policyOf(1), eatMatching);
}

TEST(BmtpReader, ReadsKeysWithBlanksAroundTheEqualsSign) {
    EXPECT_EQ(read("Incoming0 = MID1B040pp\nOutgoing0\t= MID1B007pp\n").rules,
              read("Incoming0=MID1B040pp\nOutgoing0=MID1B007pp\n").rules);
}

TEST(BmtpReader, NamesALineWhoseKeyStandsAboveAlready) {
    const auto taken = read("Incoming0=MID1B040pp\nOutgoing0=MID1B007pp\nIncoming0=MID1B041pp\n");
    EXPECT_EQ(taken.rules, read("Incoming0=MID1B040pp\nOutgoing0=MID1B007pp\n").rules);
    EXPECT_EQ(lostText(taken), "line 8: left out: \"Incoming0\" stands in line 6 already\n");
    EXPECT_EQ(lostText(read("Incoming0=MID1B040pp\nOutgoing0=MID1B007pp\n[Unread]\na=1\na=2\n")), "");
}

TEST(BmtpReader, NamesAKeyOfATranslatorThatHasNoNumber) {
    for (const std::string key : {"Incoming99999999999", "Outgoing", "Options1x"}) {
        EXPECT_EQ(lostText(read(key + "=MID1B041pp\n")),
                  "line 6: left out: \"" + key + "\" does not end with the number of a translator\n");
    }
    EXPECT_EQ(takenText(read("Folder=1\n")), "0 lines taken, 0 of them in part; 0 left out. 0 rules.\n");
}

TEST(BmtpReader, KeepsTheOrderOfTheNumbers) {
    const auto rules = read("Name10=B\nIncoming10=MID1B001pp\nOutgoing10=MID1B002pp\n"
                            "Name9=A\nIncoming9=MID1B003pp\nOutgoing9=MID1B004pp\n")
                           .rules;
    EXPECT_EQ(rules[0].name + rules[1].name, "AB");
}

TEST(BmtpReader, DropsTheRestWhereThatIsAskedFor) {
    const auto taken = read("Incoming0=MID1B040pp\nOutgoing0=MID1B007pp\n", Unmatched::drop);
    EXPECT_EQ(taken.rules.back().name, "Drop the rest");
    EXPECT_THAT(
        takenText(read("Incoming0=MID1B040pp\nOutgoing0=MID1B007pp\nOptions0=Actv00\n", Unmatched::drop)),
        HasSubstr("line 6: taken in part as 1 rule, switched off: no rule is left that could drop"));
}

TEST(BmtpReader, SaysWhyATranslatorIsLeftOut) {
    const auto lost = [](const std::string& incoming, const std::string& outgoing = "MID1B007pp") {
        return lostText(readOne(incoming, outgoing));
    };
    EXPECT_EQ(lost("KST1000"),
              "line 7: left out: \"KST1000\" is not a plain MIDI message, which begins with MID1\n");
    EXPECT_THAT(lost("MID3<xml>"), HasSubstr("not a plain MIDI message"));
    EXPECT_THAT(lost("MID1B0"), HasSubstr("a message that is not complete"));
    EXPECT_THAT(lost("MID1B040p"), HasSubstr("\"p\" is neither a byte"));
    EXPECT_THAT(lost("MID140pp00"), HasSubstr("does not begin with a status byte"));
    EXPECT_THAT(lost("MID1ppB000"), HasSubstr("does not begin with a status byte"));
    EXPECT_THAT(lost("MID1B0pppp"), HasSubstr("it waits for two equal bytes, pp"));
    EXPECT_THAT(lost("MID1B040pp", "MID1B007qq"), HasSubstr("it sends qq, which does not come in"));
    EXPECT_THAT(lost("MID1B040pp", "MID1B007"), HasSubstr("it sends a message that is not complete"));
    EXPECT_THAT(lost("MID1B040pp", "MID1F07E"), HasSubstr("it sends a message that is not complete"));
    EXPECT_THAT(lost("MID1B040pp", "MID1F0ppF7"), HasSubstr("it puts a variable into system exclusive"));
    EXPECT_THAT(lost("MID1F07EF7"), HasSubstr("it waits for system exclusive"));
    EXPECT_THAT(lost("MID1E000pp"), HasSubstr("no rule can wait for pitch bend"));
    EXPECT_THAT(lost("MID19024pp", "MID1B0pp00"), HasSubstr("it looks at the velocity"));
    EXPECT_THAT(lostText(read("Incoming0=MID1B040pp\nOutgoing0=MID1B007pp\nRules0=pp=pp+1\n")),
                HasSubstr("line 6: left out: it has \"Rules\", which no rule can have"));
}

TEST(BmtpReader, NamesTheLineOfWhatIsDamaged) {
    EXPECT_THAT(problemWith("[Project]\nVersion=2\n"), HasSubstr("line 2: projects of version \"2\""));
    EXPECT_THAT(problemWith("[Project]\n"), HasSubstr("line 1: the project has no version"));
    EXPECT_THAT(problemWith("[Project]\nVersion=1\n\nhello\n"), HasSubstr("line 4: \"hello\" is neither"));
}

}  // namespace
}  // namespace quillo
