// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/FatalError.hpp"
#include "support/TestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Lines = std::vector<std::string>;
using Transport = HostTransportTriggerVariantsV2;

class RenderTest : public testing::Test {
protected:
    void install(std::vector<Rule> rules) { unit.processor->setRules(std::move(rules)); }

    void setTransport(AUHostTransportStateFlags flags, double position) {
        host.flags = flags;
        host.position = position;
        host.offerTransport();
    }

    TestHost host;
    MIDIQuilloAUAudioUnit& unit = *host.unit;
};

TEST_F(RenderTest, AnIdleCycleReturnsNoErrAndLogsNothing) {
    setTransport(0, 0.0);
    EXPECT_EQ(host.render(0, 512), noErr);
    EXPECT_EQ(host.take(), Lines{});
}

TEST_F(RenderTest, ACycleOfNoFramesIsACycle) {
    unit.processor->send(noteOn(0, 1, 2));
    EXPECT_EQ(host.render(9, 0), noErr);
    EXPECT_EQ(host.take(), (Lines{"midi 9: 90 01 02", "out [9] 90 01 02"}));
}

TEST_F(RenderTest, AnEventIsLoggedBeforeTheRulesSeeItAndAfterwardsForwarded) {
    install({rule(onNoteOn(), send(noteOn(1, 1, 1)))});
    EXPECT_EQ(host.render(0, 512, {{10, {0x90, 60, 100}}}), noErr);
    EXPECT_EQ(host.take(), (Lines{"in [10] 90 3c 64", "midi 10: 91 01 01", "out [10] 91 01 01",
                                  "midi 10: 90 3c 64", "out [10] 90 3c 64"}));
}

TEST_F(RenderTest, ASwallowedEventIsLoggedToo) {
    install({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(1, 1, 1), 1000))});
    EXPECT_EQ(host.render(0, 512, {{10, {0x90, 60, 100}}}), noErr);
    EXPECT_EQ(host.take(), Lines{"in [10] 90 3c 64"});
}

TEST_F(RenderTest, AMessageOfTwoBytesIsLoggedAndForwardedAsTwo) {
    EXPECT_EQ(host.render(0, 512, {{10, {0xC2, 5}}}), noErr);
    EXPECT_EQ(host.take(), (Lines{"in [10] c2 05", "midi 10: c2 05", "out [10] c2 05"}));
}

TEST_F(RenderTest, AMessageWithoutBytesIsLoggedAndForwardedWithoutBytes) {
    EXPECT_EQ(host.render(0, 512, {{10, {}}}), noErr);
    EXPECT_EQ(host.take(), (Lines{"in [10] ", "midi 10: ", "out [10] "}));
}

TEST_F(RenderTest, EventsOfOtherKindsAreNeitherLoggedNorProcessed) {
    const Bytes sysEx{0xF0, 1, 0xF7};
    RenderEventList events(4);
    AURenderEvent parameter;
    parameter.eventType = AURenderEventType::parameter;
    AURenderEvent ramp;
    ramp.eventType = AURenderEventType::parameterRamp;
    AUMIDISysExEvent exclusive;
    exclusive.eventType = AURenderEventType::midiSysEx;
    exclusive.data = sysEx;
    ASSERT_TRUE(events.tryPush(parameter));
    ASSERT_TRUE(events.tryPush(exclusive));
    ASSERT_TRUE(events.tryPush(ramp));
    ASSERT_TRUE(events.tryPushMIDI(7, Bytes{0xF8}));
    EXPECT_EQ(host.render(0, 512, events), noErr);
    EXPECT_EQ(host.take(), (Lines{"in [7] f8", "midi 7: f8", "out [7] f8"}));
}

TEST_F(RenderTest, TheStepsOfACycleComeInTheirOrder) {
    install({rule(onLoad(), send(noteOn(0, 1, 1))), rule(onHost(Transport::Start), send(noteOn(0, 2, 2))),
             rule(onNoteOn(), send(noteOn(0, 3, 3)))});
    unit.processor->send(noteOn(0, 4, 4));
    setTransport(AUHostTransportStateMoving, 0.0);
    EXPECT_EQ(host.render(100, 512, {{150, {0x90, 60, 100}}}), noErr);
    EXPECT_EQ(host.take(), (Lines{"midi 100: 90 01 01", "out [100] 90 01 01", "midi 100: 90 04 04",
                                  "out [100] 90 04 04", "in [100] AU Host Start", "midi 100: 90 02 02",
                                  "out [100] 90 02 02", "in [150] 90 3c 64", "midi 150: 90 03 03",
                                  "out [150] 90 03 03", "midi 150: 90 3c 64", "out [150] 90 3c 64"}));
}

TEST_F(RenderTest, WhatWasSentByHandAndThenWhatWasDelayedLeavesBeforeTheTransportAndTheEventsOfTheCycle) {
    ASSERT_EQ(unit.allocateRenderResources(), std::nullopt);
    install({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 1, 1), 1000))});
    EXPECT_EQ(host.render(0, 512, {{0, {0x90, 60, 100}}}), noErr);
    static_cast<void>(host.take());
    unit.processor->send(noteOn(0, 2, 2));
    setTransport(AUHostTransportStateMoving, 1.0);
    EXPECT_EQ(host.render(44100, 512, {{44100, {0xF8}}}), noErr);
    EXPECT_EQ(host.take(), (Lines{"midi 44100: 90 02 02", "out [44100] 90 02 02", "midi 44100: 90 01 01",
                                  "out [44100] 90 01 01", "in [44100] AU Host Continue", "in [44100] f8",
                                  "midi 44100: f8", "out [44100] f8"}));
}

TEST_F(RenderTest, AFractionOfTheSampleTimeIsTruncated) {
    unit.processor->send(noteOn(0, 1, 1));
    EXPECT_EQ(host.render(10.9, 512), noErr);
    EXPECT_EQ(host.take(), (Lines{"midi 10: 90 01 01", "out [10] 90 01 01"}));
    unit.processor->send(noteOn(0, 1, 1));
    EXPECT_EQ(host.render(-10.9, 512), noErr);
    EXPECT_EQ(host.take(), (Lines{"midi -10: 90 01 01", "out [-10] 90 01 01"}));
}

TEST_F(RenderTest, ASampleTimeBeyond64BitsIsFatal) {
    for (const double time : {std::nan(""), std::numeric_limits<double>::infinity(), 9223372036854775808.0,
                              -9223372036854777856.0, 1e300}) {
        EXPECT_EQ(host.render(time, 512, {{0, {0xF8}}}), kQuilloErr_FatalError);
        EXPECT_THROW(unit.processor->fatalErrors.raise(), FatalError);
    }
    EXPECT_EQ(host.take(), Lines{});
}

TEST_F(RenderTest, TheEarliestSampleTimeIsTaken) {
    EXPECT_EQ(host.render(-9223372036854775808.0, 512), noErr);
}

TEST_F(RenderTest, ACycleThatEndsBeyondTheTimelineIsFatal) {
    constexpr double lastDouble = 9223372036854774784.0;  // 2^63 - 1024
    EXPECT_EQ(host.render(lastDouble, 1023), noErr);
    EXPECT_EQ(host.render(lastDouble, 1024), kQuilloErr_FatalError);
    EXPECT_THROW(unit.processor->fatalErrors.raise(), FatalError);
}

TEST_F(RenderTest, TheTransportsFlagsDecideTheTrigger) {
    const auto cycle = [this](AUHostTransportStateFlags flags, double position) {
        setTransport(flags, position);
        EXPECT_EQ(host.render(512, 512), noErr);
        return host.take();
    };
    EXPECT_EQ(cycle(2, 0.0), Lines{"in [512] AU Host Start"});
    EXPECT_EQ(cycle(2, 512.0), Lines{});
    EXPECT_EQ(cycle(0, 512.0), Lines{"in [512] AU Host Stop"});
    EXPECT_EQ(cycle(2, 4096.0), Lines{"in [512] AU Host Continue"});
    EXPECT_EQ(cycle(6, 4608.0), Lines{"in [512] AU Host Continue"});
    EXPECT_EQ(cycle(7, -1.0), Lines{"in [512] AU Host Start"});
    EXPECT_EQ(cycle(1, 100.0), Lines{"in [512] AU Host Stop"});
    EXPECT_EQ(cycle(8, 100.0), Lines{"in [512] AU Host Stop"});
    EXPECT_EQ(cycle(2, 0.5), Lines{"in [512] AU Host Continue"});
}

TEST_F(RenderTest, AnyBitOfTheFlagsCountsAsAChange) {
    setTransport(AUHostTransportStateFlags{1} << 63, 0.0);
    EXPECT_EQ(host.render(0, 512), noErr);
    EXPECT_EQ(host.take(), Lines{"in [0] AU Host Stop"});
}

TEST_F(RenderTest, AHostWithoutATransportBlockNeverFiresHostRules) {
    install({rule(onHost(Transport::Start), send(noteOn(0, 1, 1)))});
    EXPECT_EQ(host.render(0, 512), noErr);
    EXPECT_EQ(host.take(), Lines{});
}

TEST_F(RenderTest, TheAnswerOfTheTransportBlockIsIgnored) {
    unit.transportStateBlock = [](AUHostTransportStateFlags* flags, double*, double* start, double* end) {
        EXPECT_EQ(start, nullptr);
        EXPECT_EQ(end, nullptr);
        *flags = AUHostTransportStateMoving;
        return false;
    };
    EXPECT_EQ(host.render(0, 512), noErr);
    EXPECT_EQ(host.take(), Lines{"in [0] AU Host Start"});
}

TEST_F(RenderTest, TheTransportStateOutlivesDeallocationAndARestore) {
    setTransport(AUHostTransportStateMoving, 0.0);
    EXPECT_EQ(host.render(0, 512), noErr);
    static_cast<void>(host.take());
    unit.deallocateRenderResources();
    ASSERT_EQ(unit.allocateRenderResources(), std::nullopt);
    unit.setFullState(unit.fullState());
    EXPECT_EQ(host.render(512, 512), noErr);
    EXPECT_EQ(host.take(), Lines{});
}

TEST_F(RenderTest, WithoutAnOutputBlockInputIsLoggedAndNothingIsSent) {
    unit.MIDIOutputEventBlock = AUMIDIOutputEventBlock();
    EXPECT_EQ(host.render(0, 512, {{3, {0xF8}}}), noErr);
    EXPECT_EQ(host.take(), Lines{"in [3] f8"});
}

TEST_F(RenderTest, BlocksThatTheHostSetsOrTakesAwayWhileItRendersCountFromTheNextCycle) {
    const auto offered = [&](AUEventSampleTime, std::uint8_t, std::span<const std::uint8_t>) {
        host.lines.emplace_back("the other block");
        unit.MIDIOutputEventBlock = AUMIDIOutputEventBlock();
        return noErr;
    };
    unit.MIDIOutputEventBlock = WithoutDeadline(offered);
    EXPECT_EQ(host.render(0, 512, {{1, {0xF8}}, {2, {0xFA}}}), noErr);
    EXPECT_EQ(host.take(), (Lines{"in [1] f8", "the other block", "out [1] f8", "in [2] fa",
                                  "the other block", "out [2] fa"}));
    EXPECT_EQ(host.render(512, 512, {{513, {0xF8}}}), noErr);
    EXPECT_EQ(host.take(), Lines{"in [513] f8"});
    setTransport(AUHostTransportStateMoving, 0.0);
    EXPECT_EQ(host.render(1024, 512), noErr);
    EXPECT_EQ(host.take(), Lines{"in [1024] AU Host Start"});
}

TEST_F(RenderTest, WhenTheSecondOfThreeMessagesFailsTheFirstIsLoggedAndTheCycleEndsWithItsStatus) {
    for (const std::uint8_t note : Bytes{1, 2, 3}) {
        unit.processor->send(noteOn(0, note, 1));
    }
    host.acceptedBeforeFailure = 1;
    host.failure = -77;
    EXPECT_EQ(host.render(0, 512, {{5, {0xF8}}}), -77);
    EXPECT_EQ(host.take(), (Lines{"midi 0: 90 01 01", "out [0] 90 01 01", "refused 0: 90 02 01"}));
}

TEST_F(RenderTest, AFailedEventEndsTheCycle) {
    host.acceptedBeforeFailure = 0;
    EXPECT_EQ(host.render(0, 512, {{1, {0xF8}}, {2, {0xF8}}}), -1);
    EXPECT_EQ(host.take(), (Lines{"in [1] f8", "refused 1: f8"}));
}

TEST_F(RenderTest, AFailedTransportEventEndsTheCycleAndIsNotRepeated) {
    install({rule(onHost(Transport::Start), send(noteOn(0, 1, 1)))});
    setTransport(AUHostTransportStateMoving, 0.0);
    host.acceptedBeforeFailure = 0;
    EXPECT_EQ(host.render(0, 512, {{1, {0xF8}}}), -1);
    EXPECT_EQ(host.render(512, 512), noErr);
    EXPECT_EQ(host.take(), (Lines{"in [0] AU Host Start", "refused 0: 90 01 01"}));
}

TEST_F(RenderTest, AFailedDelayedMessageEndsTheCycle) {
    install({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 1, 1), 100))});
    EXPECT_EQ(host.render(0, 1, {{0, {0x90, 60, 1}}}), noErr);
    static_cast<void>(host.take());
    host.acceptedBeforeFailure = 0;
    EXPECT_EQ(host.render(4410, 1, {{4410, {0xF8}}}), -1);
    EXPECT_EQ(host.take(), Lines{"refused 4410: 90 01 01"});
}

TEST_F(RenderTest, ABlockThatOutlivesItsUnitDoesNothing) {
    auto unitOfItsOwn = makeUnit();
    int calls = 0;
    unitOfItsOwn->logInput = [&calls](const EventLogEntry&) { ++calls; };
    const auto block = unitOfItsOwn->internalRenderBlock();
    RenderEventList events(1);
    ASSERT_TRUE(events.tryPushMIDI(0, Bytes{0xF8}));
    EXPECT_EQ(block(AudioTimeStamp{0}, 512, events.head()), noErr);
    EXPECT_EQ(calls, 1);
    const std::weak_ptr<MIDIQuilloAUAudioUnit> weak = unitOfItsOwn;
    unitOfItsOwn.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(block(AudioTimeStamp{512}, 512, events.head()), noErr);
    EXPECT_EQ(calls, 1);
}

TEST_F(RenderTest, BothLogsHearOfACyclesEndAlsoOfOneThatFails) {
    std::string calls;
    host.unit->logInput.listen([&calls](const EventLogEntry&) { calls += 'e'; }, [&calls] { calls += '<'; });
    host.unit->logOutput.listen([&calls](const EventLogEntry&) { calls += 'e'; }, [&calls] { calls += '>'; });
    EXPECT_EQ(host.render(0, 512, {{1, {0xF8}}}), noErr);
    host.acceptedBeforeFailure = 0;
    EXPECT_EQ(host.render(512, 512, {{513, {0xF8}}}), -1);
    EXPECT_EQ(calls, "ee<>e<>");
}

TEST_F(RenderTest, AUnitThatIsLetGoOfInItsOwnCycleStaysUntilTheCycleEnds) {
    auto unitOfItsOwn = makeUnit();
    const std::weak_ptr<MIDIQuilloAUAudioUnit> weak = unitOfItsOwn;
    std::vector<Bytes> received;
    unitOfItsOwn->MIDIOutputEventBlock =
        WithoutDeadline([&](AUEventSampleTime, std::uint8_t, std::span<const std::uint8_t> bytes) {
            unitOfItsOwn.reset();
            EXPECT_FALSE(weak.expired());
            received.push_back(copyOf(bytes));
            return noErr;
        });
    const auto block = unitOfItsOwn->internalRenderBlock();
    RenderEventList events(2);
    ASSERT_TRUE(events.tryPushMIDI(0, Bytes{0xF8}));
    ASSERT_TRUE(events.tryPushMIDI(1, Bytes{0xFA}));
    EXPECT_EQ(block(AudioTimeStamp{0}, 512, events.head()), noErr);
    EXPECT_EQ(received, (std::vector<Bytes>{{0xF8}, {0xFA}}));
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(block(AudioTimeStamp{512}, 512, events.head()), noErr);
}

TEST_F(RenderTest, TheSystemExclusiveOutputOfARuleIsSentAndLoggedWhole) {
    install({rule(onLoad(), send(systemExclusive({0x7E, 0x7F, 0x09, 0x01, 2, 3, 4, 5})))});
    EXPECT_EQ(host.render(0, 512), noErr);
    EXPECT_EQ(host.take(),
              (Lines{"midi 0: f0 7e 7f 09 01 02 03 04 05 f7", "out [0] f0 7e 7f 09 01 02 03 04 05 f7"}));
}

}  // namespace
}  // namespace quillo
