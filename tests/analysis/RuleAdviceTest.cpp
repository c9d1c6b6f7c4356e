// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleAdvice.hpp"

#include <gmock/gmock.h>

#include "support/RandomRules.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Transport = HostTransportTriggerVariantsV2;
using Kind = Advice::Kind;

/// All advice on the rules, as it is printed.
std::string textOn(const std::vector<Rule>& rules) {
    std::string text;
    for (const auto& advice : adviseOn(rules)) {
        text += adviceText(rules, advice);
    }
    return text;
}

std::vector<Kind> kindsFor(const std::vector<Rule>& rules) {
    std::vector<Kind> kinds;
    for (const auto& advice : adviseOn(rules)) {
        kinds.push_back(advice.kind);
    }
    return kinds;
}

TEST(RuleAdvice, IsEmptyWhereNothingIsWrong) {
    EXPECT_THAT(adviseOn({}), IsEmpty());
    EXPECT_THAT(adviseOn({rule(onLoad(), send(systemExclusive({0x7E, 0x7F, 9, 1}))),
                          rule(onNoteOn(any, any, eatMatching),
                               send(protocol(StatusV2::noteOn, channel(1), triggerByte, triggerByte))),
                          rule(onNoteOff(any, any, eatMatching),
                               send(protocol(StatusV2::noteOff, channel(1), triggerByte, triggerByte))),
                          rule(onControlChange(1, any, any, eatNonMatching), volume),
                          rule(onControlChange(1), send(programChange(triggerChannel, 1, byte(2))))}),
                IsEmpty());
}

TEST(RuleAdvice, ProvesThatARuleCanNeverFireAndSaysWhereItWould) {
    EXPECT_EQ(
        textOn({rule(onNoteOn(any, any, eatMatching), volume, "Eat"), rule(onNoteOn(), volume, "Late")}),
        "2. \"Late\" can never fire: rule 1 \"Eat\" (Consume matching) swallows every event that it waits "
        "for.\n"
        "   Set rule 1 to Pass through, or move this rule above it.\n");
}

TEST(RuleAdvice, OffersNoMoveThatKeepsAnotherRuleFromFiring) {
    const auto twin = rule(onNoteOn(any, any, eatMatching), volume);
    EXPECT_THAT(textOn({twin, twin}), HasSubstr("   Set rule 1 to Pass through.\n"));
    const auto narrow = rule(onNoteOn(exactly(60), any, eatMatching), volume);
    EXPECT_THAT(textOn({twin, narrow}),
                HasSubstr("   Set rule 1 to Pass through, or move this rule above it.\n"));
    const auto gate = rule(onNoteOn(any, any, eatNonMatching), volume);
    const auto narrowGate = rule(onNoteOn(exactly(60), any, eatNonMatching), volume);
    EXPECT_THAT(textOn({gate, twin, narrowGate}),
                HasSubstr("   Set rule 2 to Pass through, or move this rule above it.\n"));
    EXPECT_THAT(textOn({gate, narrow, rule(onNoteOn(exactly(61)), volume), twin, narrowGate}),
                HasSubstr("   Set rules 2 and 4 to Pass through.\n"));
}

TEST(RuleAdvice, OffersNoMoveAboveAGate) {
    EXPECT_THAT(textOn({rule(onNoteOn(any, any, eatNonMatching), volume),
                        rule(onNoteOff(any, any, eatNonMatching), volume)}),
                HasSubstr("   Set rule 1 to Pass through.\n"));
}

TEST(RuleAdvice, NamesEveryRuleThatMustLetTheEventPass) {
    const auto twin = rule(onNoteOn(any, any, eatMatching), volume);
    EXPECT_THAT(textOn({twin, twin, rule(onNoteOn(), volume)}),
                HasSubstr("   Set rules 1 and 2 to Pass through, or move this rule above rule 1.\n"));
    EXPECT_THAT(textOn({rule(onNoteOn(any, any, eatNonMatching), volume),
                        rule(onNoteOff(any, any, eatNonMatching), volume), rule(onControlChange(1), volume)}),
                HasSubstr("   Set rules 1 and 2 to Pass through.\n"));
}

TEST(RuleAdvice, NamesConsecutiveRulesByTheFirstAndTheLast) {
    const auto eater = rule(onNoteOn(any, any, eatMatching), volume);
    EXPECT_THAT(textOn(std::vector<Rule>(20, eater)),
                HasSubstr("    Set rules 1 to 16 and others to Pass through.\n"));
    const auto other = rule(onControlChange(7), volume);
    EXPECT_THAT(textOn({eater, eater, eater, other, eater, other, eater, eater, rule(onNoteOn(), volume)}),
                HasSubstr("Set rules 1 to 3, 5, 7 and 8 to Pass through, or move"));
}

TEST(RuleAdvice, NamesNoMoreThanSixteenRulesAtOnce) {
    std::vector<Rule> rules;
    for (auto count = 0; count < 20; ++count) {
        rules.push_back(rule(onNoteOn(any, any, eatMatching), volume));
        rules.push_back(rule(onControlChange(7), volume));
    }
    EXPECT_THAT(
        textOn(rules),
        HasSubstr("Set rules 1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31 and others to Pass "
                  "through.\n"));
}

TEST(RuleAdvice, NamesAllRulesThatKeepOneFromFiring) {
    std::vector<Rule> rules{rule(onMIDIStop(), volume)};
    for (std::uint8_t onChannel = 0; onChannel < 16; ++onChannel) {
        rules.push_back(rule(onNoteOn(any, exactly(onChannel), eatMatching), volume));
    }
    rules.push_back(rule(onNoteOn(), volume, "Late"));
    EXPECT_THAT(
        textOn(rules),
        HasSubstr(
            "18. \"Late\" can never fire: rules 2 to 17 between them swallow every event that it waits for.\n"
            "    Set rule 2 to Pass through, or move this rule above it.\n"));
}

TEST(RuleAdvice, KnowsThatThereAreSixteenChannels) {
    EXPECT_EQ(textOn({rule(onNoteOn(any, exactly(16)), volume, "Far")}),
              "1. \"Far\" can never fire: it waits on a channel that no message has.\n"
              "   Give it a channel from 1 to 16, or any.\n");
}

TEST(RuleAdvice, PointsAtNumbersThatNoMessageCarries) {
    EXPECT_EQ(textOn({rule(onNoteOn(exactly(128)), volume, "High")}),
              "1. \"High\" waits for the number 128, which no MIDI message carries.\n"
              "   Give it a number from 0 to 127.\n");
    for (const auto& trigger : {onNoteOff(exactly(200)), onControlChange(128),
                                onControlChange(7, exactly(255)), onProgramChange(exactly(128))}) {
        EXPECT_THAT(kindsFor({rule(trigger, volume)}), ElementsAre(Kind::impossibleNumber));
    }
    EXPECT_THAT(kindsFor({rule(onControlChange(127, exactly(127)), volume)}), IsEmpty());
}

TEST(RuleAdvice, WarnsOfAHostRuleThatSwallowsAllMIDI) {
    EXPECT_EQ(
        textOn({rule(onHost(Transport::Stop, eatNonMatching), volume, "Reset"),
                rule(onNoteOn(), volume, "Echo")}),
        "1. \"Reset\" swallows every MIDI message that comes to it: its policy is Consume non-matching, and "
        "a "
        "rule for the host's transport matches no MIDI.\n"
        "   Set it to Pass through.\n"
        "2. \"Echo\" can never fire: rule 1 \"Reset\" (Consume non-matching) swallows every event that it "
        "waits for.\n"
        "   Set rule 1 to Pass through.\n");
    EXPECT_THAT(kindsFor({rule(onHost(Transport::Stop, eatMatching), volume)}), IsEmpty());
}

TEST(RuleAdvice, WarnsOfASystemMessageThatAloneIsLetThrough) {
    for (const auto& [trigger, name] : {std::pair{onMIDIStart(eatNonMatching), "Start"},
                                        {onMIDIStop(eatNonMatching), "Stop"},
                                        {onMIDIContinue(eatNonMatching), "Continue"}}) {
        EXPECT_THAT(textOn({rule(trigger, volume, "Go")}),
                    StartsWith("1. \"Go\" swallows every MIDI message but MIDI " + std::string(name) +
                               ": its policy is Consume non-matching.\n   Set it to Pass through.\n"));
    }
    EXPECT_THAT(kindsFor({rule(onMIDIStop(eatMatching), volume)}), ElementsAre(Kind::notInVST3));
    EXPECT_THAT(kindsFor({rule(onControlChange(1, any, any, eatNonMatching), volume)}), IsEmpty());
}

TEST(RuleAdvice, FindsNotesThatHang) {
    const std::string wayOut =
        "   Let a rule send the note-off on the same channel, or All Notes Off (controller "
        "123). What rings out by itself, such as a drum, needs none.\n";
    EXPECT_EQ(textOn({rule(onLoad(), send(noteOn(0, 60, 100)), "Drone")}),
              "1. \"Drone\" starts a note that no rule ends: 60 (C3) on channel 1.\n" + wayOut);
    EXPECT_EQ(textOn({rule(onNoteOn(), send(protocol(StatusV2::noteOn, channel(1), triggerByte, triggerByte)),
                           "Double")}),
              "1. \"Double\" starts a note that no rule ends: 60 (C3) on channel 2; only a keyboard that "
              "sends key releases as Note On with velocity 0 would end it.\n" +
                  wayOut);
    const auto copy = send(protocol(StatusV2::noteOn, channel(1), triggerByte, triggerByte));
    EXPECT_THAT(textOn({rule(onNoteOn(), copy, "Double"), rule(onNoteOff(), copy)}),
                HasSubstr("on channel 2; only a key release with velocity 0 would end it.\n"));
}

TEST(RuleAdvice, FindsNotesThatStartLaterThanTheyEnd) {
    const auto late = rule(
        onNoteOn(), send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, triggerByte), 300), "Echo");
    EXPECT_EQ(
        textOn({late}),
        "1. \"Echo\" starts a note 300 ms late, but its end is not late: a key released sooner leaves it "
        "sounding.\n"
        "   Let a rule send the note-off after 300 ms as well.\n");
    EXPECT_THAT(
        textOn({late, rule(onNoteOff(),
                           send(protocol(StatusV2::noteOff, triggerChannel, triggerByte, byte(0)), 299))}),
        HasSubstr("starts a note 300 ms late, but its end only 299 ms: a key released sooner"));
    EXPECT_THAT(
        adviseOn({late, rule(onNoteOff(),
                             send(protocol(StatusV2::noteOff, triggerChannel, triggerByte, byte(0)), 300))}),
        IsEmpty());
}

TEST(RuleAdvice, FindsRulesThatSwallowTheEndOfNotesThatPass) {
    EXPECT_EQ(textOn({rule(onNoteOn(any, any, eatNonMatching), volume, "only notes")}),
              "1. \"only notes\" swallows the end of notes that pass: 60 (C3) on channel 1 sounds on.\n"
              "   Set it to Pass through, or let a rule above it send the note-off.\n");
    EXPECT_THAT(kindsFor({rule(onNoteOff(any, any, eatMatching), volume)}),
                ElementsAre(Kind::swallowsNoteEnds));
    EXPECT_THAT(kindsFor({rule(onNoteOff(exactly(1), any, eatMatching), volume),
                          rule(onNoteOff(any, any, eatMatching), volume)}),
                ElementsAre(Kind::swallowsNoteEnds, Kind::swallowsNoteEnds));
}

TEST(RuleAdvice, FindsSystemExclusiveThatIsTooLongForVST3) {
    EXPECT_THAT(adviseOn({rule(onLoad(), send(systemExclusive(std::vector<std::uint8_t>(65527))))}),
                IsEmpty());
    EXPECT_EQ(textOn({rule(onLoad(), send(systemExclusive(std::vector<std::uint8_t>(65528))), "Dump")}),
              "1. \"Dump\" sends 65530 bytes of system exclusive; a VST3 host can take 65529.\n"
              "   Split it into several messages, or use another plug-in format.\n");
}

TEST(RuleAdvice, SaysNothingOfTheNotesOfARuleThatNeverFires) {
    EXPECT_THAT(
        kindsFor({rule(onNoteOn(any, any, eatMatching), volume), rule(onNoteOn(), send(noteOn(0, 60, 100)))}),
        ElementsAre(Kind::neverFires));
}

TEST(RuleAdvice, FindsTheFrameOfSystemExclusiveTypedIn) {
    const auto textOnBody = [](const std::vector<std::uint8_t>& body) {
        return textOn({rule(onLoad(), send(systemExclusive(body)), "Reset")});
    };
    EXPECT_EQ(textOnBody({0xF0, 0x7E, 0x09, 0xF7}), "1. \"Reset\" sends F0 and F7 twice: the frame of system "
                                                    "exclusive is added to what is typed in (f0 f0 "
                                                    "7e 09 f7 f7).\n"
                                                    "   Type only what stands between them: 7e 09.\n");
    EXPECT_THAT(textOnBody({0xF0, 0x7E}), HasSubstr("sends F0 twice"));
    EXPECT_THAT(textOnBody({0x7E, 0xF7}), HasSubstr("sends F7 twice"));
    EXPECT_THAT(textOnBody({0xF0}), HasSubstr("Leave F0 out.\n"));
    EXPECT_THAT(textOnBody({0xF7}), HasSubstr("Leave F7 out.\n"));
    EXPECT_THAT(textOnBody({0xF0, 0xF7}), HasSubstr("Leave F0 and F7 out.\n"));
    EXPECT_THAT(textOnBody({}), IsEmpty());
    EXPECT_THAT(textOnBody({0x7F, 0}), IsEmpty());
}

TEST(RuleAdvice, FindsBytesThatDoNotBelongInSystemExclusive) {
    EXPECT_EQ(textOn({rule(onLoad(), send(systemExclusive({0xF0, 1, 0xF7, 0xF0, 2, 0xF7})), "Two")}),
              "1. \"Two\" has f7 among its system-exclusive bytes, where MIDI allows 00 to 7f.\n"
              "   Give each message a rule of its own, without F0 and F7, and leave out what is above 7f.\n");
    EXPECT_THAT(textOn({rule(onLoad(), send(systemExclusive({1, 0x80})))}), HasSubstr("has 80 among"));
}

TEST(RuleAdvice, FindsOutputsThatAreNoCompleteMessage) {
    EXPECT_EQ(
        textOn({rule(onMIDIStop(eatMatching), send(protocol(StatusV2::CC, channel(0), byte(7))), "Half")}),
        "1. \"Half\" does not fire in a VST3 host: VST3 has no MIDI Stop.\n"
        "   In VST3, let it wait for the host's transport; other plug-in formats deliver MIDI Stop.\n"
        "1. \"Half\" sends an incomplete or damaged MIDI message (b0 07): hosts may drop or change it, and "
        "in a "
        "VST3 "
        "host it cannot be sent as it is.\n"
        "   Make the output again in the editor, which sends complete messages only.\n");
    EXPECT_THAT(
        kindsFor({rule(onLoad(), send(protocol(StatusV2::channelPressure, channel(0), byte(1), byte(2))))}),
        ElementsAre(Kind::incompleteOutput));
}

TEST(RuleAdvice, FindsNumbersThatMIDIDoesNotAllow) {
    EXPECT_EQ(textOn({rule(onLoad(), send(controlChange(0, 7, 200)), "Loud")}),
              "1. \"Loud\" sends 200 where MIDI allows 0 to 127 (b0 07 c8).\n"
              "   Give it a number from 0 to 127.\n");
    EXPECT_THAT(textOn({rule(onLoad(), send(programChange(channel(0), 128, byte(0))))}),
                HasSubstr("sends 128 where MIDI allows 0 to 127 (b0 00 80).\n"));
}

TEST(RuleAdvice, SaysNothingOfWhatARuleDoesWithAMessageThatThereIsNot) {
    EXPECT_THAT(kindsFor({rule(onNoteOn(exactly(200)), send(noteOn(0, 60, 100)))}),
                ElementsAre(Kind::impossibleNumber));
    EXPECT_THAT(kindsFor({rule(onNoteOn(exactly(200)),
                               send(protocol(StatusV2::CC, channel(0), triggerByte, byte(0))))}),
                ElementsAre(Kind::impossibleNumber));
    EXPECT_THAT(kindsFor({rule(onLoad(), send(noteOn(0, 60, 100))),
                          rule(onNoteOn(exactly(200)), send(noteOn(0, 60, 0)))}),
                ElementsAre(Kind::neverEndsNotes, Kind::impossibleNumber));
}

TEST(RuleAdvice, DoesNotBlameACopyForANumberThatNoMessageCarries) {
    EXPECT_THAT(
        kindsFor({rule(onControlChange(7, exactly(200)), volume),
                  rule(onControlChange(7), send(protocol(StatusV2::CC, channel(0), byte(7), triggerByte)))}),
        ElementsAre(Kind::impossibleNumber));
}

TEST(RuleAdvice, SaysWhatAVST3HostDoesNotDeliver) {
    for (const auto& [trigger, name] :
         {std::pair{onMIDIStart(), "Start"}, {onMIDIStop(), "Stop"}, {onMIDIContinue(), "Continue"}}) {
        EXPECT_THAT(textOn({rule(trigger, volume)}),
                    HasSubstr("does not fire in a VST3 host: VST3 has no MIDI " + std::string(name) + ".\n"));
    }
    EXPECT_EQ(
        textOn({rule(onProgramChange(), volume, "Sound")}),
        "1. \"Sound\" may not fire in a VST3 host: most VST3 hosts deliver no program changes to a plug-in.\n"
        "   In VST3, let it wait for a controller or a note; other plug-in formats deliver program "
        "changes.\n");
    EXPECT_THAT(adviseOn({rule(onHost(Transport::Stop), volume), rule(onNoteOff(), volume),
                          rule(onControlChange(1), volume)}),
                IsEmpty());
}

TEST(RuleAdvice, DoesNotSayOfADeadRuleThatAVST3HostKeepsItFromFiring) {
    EXPECT_THAT(kindsFor({rule(onControlChange(1, any, any, eatNonMatching), volume),
                          rule(onMIDIStart(), volume), rule(onProgramChange(), volume)}),
                ElementsAre(Kind::neverFires, Kind::neverFires));
}

TEST(RuleAdvice, ComesInTheOrderOfTheRules) {
    for (unsigned seed = 0; seed < 50; ++seed) {
        const auto advice = adviseOn(RandomRules(seed).list());
        EXPECT_TRUE(std::ranges::is_sorted(advice, {}, &Advice::rule)) << "seed " << seed;
    }
}

}  // namespace
}  // namespace quillo
