// SPDX-License-Identifier: GPL-3.0-or-later
/// Where each finder draws its line: what it says, and what is almost a mistake and none.
#include "analysis/Finders.hpp"

#include <gmock/gmock.h>

#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;
using Rules = std::vector<Rule>;
using Transport = HostTransportTriggerVariantsV2;

/// What the finder says of the list's last rule.
std::string said(Finder& finder, const Rules& rules) {
    const AdvisedRules list(rules);
    const auto advice = finder(list, rules.size() - 1);
    return advice ? advice->matter : "";
}

RuleOutputV2 sent(StatusV2 status, RuleOutputChannelV2 onChannel, GenericByteV2 byte1, GenericByteV2 byte2,
                  std::int64_t delay = 0) {
    return send(protocol(status, onChannel, byte1, byte2), delay);
}

RuleOutputV2 bank(std::uint8_t onChannel, std::int64_t delay = 0) {
    return send(controlChange(onChannel, 32, 1), delay);
}

RuleOutputV2 program(std::uint8_t onChannel, std::int64_t delay = 0) {
    return send(programChange(channel(onChannel), 0, byte(1)), delay);
}

const auto reset = systemExclusive({0x7E, 0x7F, 0x09, 0x01});

TEST(Finders, AFixedVelocityAnswersAReleaseOfVelocityZero) {
    const auto fixed = sent(StatusV2::noteOn, channel(1), triggerByte, byte(90));
    EXPECT_THAT(said(findRestartsNotes, {rule(onNoteOn(), fixed)}),
                HasSubstr("answers each Note On with velocity 90: a keyboard that sends key releases"));
    EXPECT_EQ(said(findRestartsNotes, {rule(onNoteOff(), fixed)}), "");
    EXPECT_EQ(said(findRestartsNotes, {rule(onControlChange(1), fixed)}), "");
    EXPECT_EQ(said(findRestartsNotes, {rule(onLoad(), fixed)}), "");
    const auto copied = sent(StatusV2::noteOn, channel(1), triggerByte, triggerByte);
    EXPECT_EQ(said(findRestartsNotes, {rule(onNoteOn(), copied)}), "");
}

TEST(Finders, ANoteOnOfVelocityZeroStartsNothing) {
    EXPECT_EQ(said(findSilentNoteOn, {rule(onLoad(), send(noteOn(0, 60, 0)))}),
              "sends Note On with velocity 0, which starts no note but ends one");
    EXPECT_EQ(said(findSilentNoteOn, {rule(onLoad(), send(noteOn(0, 60, 1)))}), "");
}

TEST(Finders, ANoteIsDoubledOnItsOwnChannelAtTheSameTime) {
    const auto again = [](RuleTriggerV2 trigger, RuleOutputChannelV2 onChannel, GenericByteV2 note,
                          std::int64_t delay = 0) {
        return said(findDoublesNotes, {rule(std::move(trigger), sent(StatusV2::noteOn, std::move(onChannel),
                                                                     std::move(note), triggerByte, delay))});
    };
    EXPECT_THAT(again(onNoteOn(), triggerChannel, triggerByte), HasSubstr("it is started twice"));
    EXPECT_THAT(again(onNoteOn(exactly(60), exactly(2)), channel(2), byte(60)), HasSubstr("started twice"));
    EXPECT_EQ(again(onNoteOn(), triggerChannel, triggerByte, 1), "");
    EXPECT_EQ(again(onNoteOn(any, any, eatMatching), triggerChannel, triggerByte), "");
    EXPECT_EQ(again(onNoteOn(exactly(60)), triggerChannel, byte(61)), "");
    EXPECT_EQ(again(onNoteOn(any, exactly(2)), channel(3), triggerByte), "");
}

TEST(Finders, ADoubledNoteMustPassTheRulesBelow) {
    const auto again = rule(onNoteOn(), sent(StatusV2::noteOn, triggerChannel, triggerByte, triggerByte));
    const Rules rules{again, rule(onNoteOn(any, any, eatMatching), volume)};
    EXPECT_FALSE(findDoublesNotes(AdvisedRules(rules), 0));
}

TEST(Finders, TwoRulesThatDoTheSameSendItTwice) {
    const auto first = rule(onControlChange(1), program(0), "A");
    EXPECT_EQ(
        said(findSendsTwice, {first, rule(onLoad(), volume), rule(onControlChange(1), program(0), "B")}),
        "does the same as rule 1 \"A\": all that it sends goes out twice");
    EXPECT_EQ(said(findSendsTwice, {first, rule(onControlChange(1), program(0, 10))}), "");
    EXPECT_EQ(said(findSendsTwice, {first, rule(onControlChange(1, exactly(3)), program(0))}), "");
    EXPECT_EQ(said(findSendsTwice,
                   {rule(onLoad(), send(systemExclusive({1}))), rule(onLoad(), send(systemExclusive({2})))}),
              "");
}

TEST(Finders, ABankIsTooLateBehindItsProgramOnly) {
    EXPECT_THAT(said(findBankTooLate, {rule(onLoad(), program(2), "Strings"), rule(onLoad(), bank(2))}),
                HasSubstr("(controller 32) after rule 1 \"Strings\" has sent the program"));
    EXPECT_EQ(said(findBankTooLate, {rule(onLoad(), program(2, 10)), rule(onLoad(), bank(2))}), "");
    EXPECT_EQ(said(findBankTooLate, {rule(onLoad(), program(1)), rule(onLoad(), bank(2))}), "");
    EXPECT_EQ(said(findBankTooLate, {rule(onControlChange(1), program(2)), rule(onLoad(), bank(2))}), "");
    const Rules between{rule(onLoad(), program(2)), rule(onLoad(), program(2, 20)),
                        rule(onLoad(), bank(2, 10))};
    EXPECT_EQ(said(findBankTooLate, between), "");
}

TEST(Finders, ABankWithItsOwnProgramIsNotTooLateForTheProgramBeforeIt) {
    EXPECT_EQ(said(findBankTooLate, {rule(onLoad(), program(2)), rule(onLoad(), program(2, 2000))}), "");
    EXPECT_THAT(said(findBankTooLate,
                     {rule(onLoad(), program(2)), rule(onLoad(), program(1)), rule(onLoad(), bank(2))}),
                HasSubstr("has sent the program"));
}

TEST(Finders, ARuleThatDropsTheRestHasItsWorkWithoutFiring) {
    const auto on = rule(onNoteOn(exactly(36), any, eatMatching), volume, "On");
    const auto off = rule(onNoteOff(exactly(36), any, eatMatching), volume, "Off");
    const auto rest = rule(onNoteOff(exactly(36), any, eatNonMatching), volume, "Rest");
    EXPECT_EQ(said(findNeverFires, {on, off, rest}), "");
    EXPECT_THAT(said(findNeverFires, {on, off, rule(onNoteOff(exactly(36)), volume)}),
                HasSubstr("can never fire: rule 2"));
    EXPECT_THAT(said(findNeverFires, {rest, off, rest}), HasSubstr("can never fire: rule 2"));
    EXPECT_THAT(said(findNeverFires, {rule(onNoteOn(any, any, eatNonMatching), volume), rest}),
                HasSubstr("can never fire: rule 1"));
    EXPECT_THAT(said(findNeverFires, {rule(onNoteOn(any, exactly(16), eatNonMatching), volume)}),
                HasSubstr("waits on a channel that no message has"));
}

TEST(Finders, ARuleThatNoEventReachesTogetherWithAnotherFollowsItNot) {
    EXPECT_EQ(said(findBankTooLate, {rule(onControlChange(20, exactly(1), any, eatMatching), program(2)),
                                     rule(onControlChange(20), bank(2))}),
              "");
    EXPECT_EQ(said(findBankTooLate, {rule(onControlChange(20, exactly(1)), program(2)),
                                     rule(onControlChange(20, exactly(2)), bank(2))}),
              "");
}

TEST(Finders, AResetUndoesTheProgramsBeforeIt) {
    EXPECT_THAT(said(findProgramUndone, {rule(onLoad(), send(reset, 50), "GM"), rule(onLoad(), program(0))}),
                HasSubstr("sends a program before the reset of rule 1 \"GM\", which undoes it"));
    EXPECT_EQ(said(findProgramUndone, {rule(onLoad(), send(reset)), rule(onLoad(), program(0))}), "");
    EXPECT_EQ(said(findProgramUndone, {rule(onLoad(), send(reset, 50)), rule(onLoad(), program(0, 60))}), "");
    EXPECT_EQ(
        said(findProgramUndone, {rule(onHost(Transport::Stop), send(reset, 50)), rule(onLoad(), program(0))}),
        "");
    EXPECT_EQ(said(findProgramUndone, {rule(onLoad(), send(systemExclusive({0x7E, 0x7F, 0x06, 0x01}), 50)),
                                       rule(onLoad(), program(0))}),
              "");
}

TEST(Finders, ASettingAtTheStartIsWantedInTheMiddleToo) {
    EXPECT_THAT(said(findStartOnly, {rule(onHost(Transport::Start), program(0))}),
                HasSubstr("the host reports Continue, which no rule waits for"));
    EXPECT_THAT(said(findStartOnly, {rule(onMIDIStart(), program(0))}), HasSubstr("MIDI Continue comes"));
    EXPECT_EQ(said(findStartOnly, {rule(onHost(Transport::Start), send(noteOn(9, 49, 100)))}), "");
    EXPECT_EQ(said(findStartOnly,
                   {rule(onHost(Transport::Continue), volume), rule(onHost(Transport::Start), volume)}),
              "");
    EXPECT_THAT(said(findStartOnly, {rule(onMIDIContinue(), volume), rule(onHost(Transport::Start), volume)}),
                HasSubstr("the host reports"));
    EXPECT_EQ(said(findStartOnly, {rule(onHost(Transport::Stop), volume)}), "");
}

TEST(Finders, APedalStaysDownWhoseReleaseIsNeverSent) {
    const auto released = rule(onControlChange(64, exactly(0), exactly(3), eatMatching), volume);
    EXPECT_THAT(said(findKeepsPedalDown, {released}), HasSubstr("stays down on channel 4"));
    const auto release = [](std::uint8_t onChannel, std::uint8_t value) {
        return rule(onControlChange(20), send(controlChange(onChannel, 64, value)));
    };
    EXPECT_EQ(said(findKeepsPedalDown, {release(3, 63), released}), "");
    EXPECT_NE(said(findKeepsPedalDown, {release(3, 64), released}), "");
    EXPECT_NE(said(findKeepsPedalDown, {release(2, 0), released}), "");
    EXPECT_EQ(said(findKeepsPedalDown, {rule(onLoad(), send(controlChange(3, 121, 0))), released}), "");
    EXPECT_EQ(said(findKeepsPedalDown, {rule(onControlChange(64, any, any, eatMatching), volume)}), "");
    EXPECT_EQ(said(findKeepsPedalDown, {rule(onControlChange(65, exactly(0), any, eatMatching), volume)}),
              "");
}

TEST(Finders, ABendStaysThatNoRuleBringsBack) {
    const auto bend = [](std::uint8_t onChannel, std::uint8_t high) {
        return rule(onLoad(), sent(StatusV2::pitchWheel, channel(onChannel), byte(0), byte(high)));
    };
    EXPECT_THAT(said(findKeepsBend, {bend(2, 65)}), HasSubstr("channel 3 stays out of tune"));
    EXPECT_EQ(said(findKeepsBend, {bend(2, 64)}), "");
    EXPECT_EQ(said(findKeepsBend, {bend(2, 64), bend(2, 65)}), "");
    EXPECT_NE(said(findKeepsBend, {bend(1, 64), bend(2, 65)}), "");
    EXPECT_EQ(said(findKeepsBend, {rule(onLoad(), send(controlChange(2, 121, 0))), bend(2, 65)}), "");
    EXPECT_EQ(said(findKeepsBend,
                   {rule(onControlChange(1), sent(StatusV2::pitchWheel, channel(2), byte(0), triggerByte))}),
              "");
}

TEST(Finders, HalvesOfOneValueGoTheSameWay) {
    const auto both = [](PassThroughV2 coarse, PassThroughV2 fine) {
        return said(findTearsFineValue, {rule(onControlChange(33, any, any, fine), volume),
                                         rule(onControlChange(1, any, any, coarse), volume)});
    };
    const auto pass = PassThroughV2::PassThrough;
    EXPECT_THAT(both(eatMatching, pass), HasSubstr("the coarse and the fine half of one value"));
    EXPECT_EQ(both(eatMatching, eatMatching), "");
    EXPECT_EQ(both(pass, pass), "");
    EXPECT_EQ(said(findTearsFineValue, {rule(onControlChange(1, any, any, eatMatching), volume)}), "");
    EXPECT_NE(said(findTearsFineValue, {rule(onControlChange(33, any, any, eatMatching), volume)}), "");
    EXPECT_EQ(said(findTearsFineValue, {rule(onControlChange(65, any, any, eatMatching), volume)}), "");
}

TEST(Finders, AParameterKeepsItsNumberAndItsValueTogether) {
    const auto eater = [](std::uint8_t controller) {
        return rule(onControlChange(controller, any, exactly(0), eatMatching), volume);
    };
    for (const std::uint8_t controller : Bytes{6, 38, 98, 99, 100, 101}) {
        EXPECT_THAT(said(findTearsParameter, {eater(controller)}), HasSubstr("an RPN or NRPN"))
            << +controller;
    }
    EXPECT_EQ(said(findTearsParameter, {eater(7)}), "");
    EXPECT_EQ(said(findTearsParameter, {eater(6), eater(100), eater(101)}), "");
    EXPECT_EQ(said(findTearsParameter, {rule(onControlChange(6), volume)}), "");
}

TEST(Finders, MPENotesStayOnTheirChannels) {
    const auto zone = rule(onLoad(), send(controlChange(0, 100, 6)));
    const auto moved = rule(onNoteOn(), sent(StatusV2::noteOn, channel(0), triggerByte, triggerByte));
    EXPECT_THAT(said(findTearsMPE, {zone, moved}), HasSubstr("the bends and pressures"));
    EXPECT_EQ(said(findTearsMPE, {moved}), "");
    EXPECT_NE(said(findTearsMPE, {rule(onControlChange(100, exactly(6)), volume), moved}), "");
    EXPECT_EQ(said(findTearsMPE,
                   {zone, rule(onNoteOn(), sent(StatusV2::noteOn, triggerChannel, byte(60), triggerByte))}),
              "");
    EXPECT_EQ(said(findTearsMPE, {zone, rule(onNoteOn(any, exactly(0)),
                                             sent(StatusV2::noteOn, channel(3), triggerByte, triggerByte))}),
              "");
}

}  // namespace
}  // namespace quillo
