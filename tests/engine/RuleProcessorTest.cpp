// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleProcessor.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>

#include "platform/FatalError.hpp"
#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Emissions = std::vector<Emission>;
using Transport = HostTransportTriggerVariantsV2;
constexpr auto lastTime = std::numeric_limits<SampleTime>::max();

/// A processor at one sample a millisecond, so that delays read as samples.
class RuleProcessorTest : public testing::Test {
protected:
    RuleProcessorTest() { processor.sampleRate = 1000; }

    OSStatus onLoadPass(SampleTime start, SampleTime end) { return processor.onLoad(output, start, end); }
    OSStatus instantFlush(SampleTime start) { return processor.flushInstantMessages(output, start); }
    OSStatus delayedFlush(SampleTime end) { return processor.flushDelayedMessages(output, end); }
    OSStatus transport(Transport trigger, SampleTime start, SampleTime end) {
        return processor.processHostTransport(output, trigger, start, end);
    }
    OSStatus midi(SampleTime time, const Bytes& bytes, SampleTime end = 512) {
        std::array<std::uint8_t, 3> data{};
        std::ranges::copy(bytes, data.begin());
        return processor.processMIDIEvent(output, time, data, bytes.size(), end);
    }

    RuleProcessor processor;
    OutputRecorder recorder;
    WithoutDeadline<std::reference_wrapper<OutputRecorder>> target{recorder};
    OutputFunction output{target};
};

TEST_F(RuleProcessorTest, ItsQueueHasItsLabel) {
    EXPECT_EQ(processor.dispatchQueue.label(), "rule-processore-queue");
}

TEST_F(RuleProcessorTest, TheSampleRateIs44100UntilItIsSet) {
    RuleProcessor fresh;
    EXPECT_EQ(fresh.sampleRate, 44100U);
    fresh.setRules({rule(onNoteOn(), send(noteOn(0, 1, 1), 1))});
    EXPECT_EQ(fresh.processMIDIEvent(output, 0, {0x90, 60, 1}, 3, 512), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{44, {{0x90, 1, 1}}}, {0, {{0x90, 60, 1}}}}));
}

TEST_F(RuleProcessorTest, MessagesWaitFromBeingDelayedOrSentByHandUntilTheyLeave) {
    EXPECT_FALSE(processor.hasWaitingMessages());
    processor.send(noteOn(0, 1, 1));
    EXPECT_TRUE(processor.hasWaitingMessages());
    EXPECT_EQ(instantFlush(0), noErr);
    EXPECT_FALSE(processor.hasWaitingMessages());
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 1, 1), 600))});
    EXPECT_EQ(midi(0, {0x90, 60, 1}), noErr);
    EXPECT_TRUE(processor.hasWaitingMessages());
    EXPECT_EQ(delayedFlush(601), noErr);
    EXPECT_FALSE(processor.hasWaitingMessages());
}

TEST_F(RuleProcessorTest, HearsTheHostTransportWhenARuleWaitsForAnyOfItsEvents) {
    EXPECT_FALSE(processor.hearsHostTransport());
    processor.setRules({rule(onMIDIStart(), send(noteOn(0, 1, 1))), rule(onLoad(), send(noteOn(0, 1, 1)))});
    EXPECT_FALSE(processor.hearsHostTransport());
    for (const auto trigger : {Transport::Start, Transport::Continue, Transport::Stop}) {
        processor.setRules(
            {rule(onNoteOn(), send(noteOn(0, 1, 1))), rule(onHost(trigger), send(noteOn(0, 1, 1)))});
        EXPECT_TRUE(processor.hearsHostTransport());
    }
}

TEST_F(RuleProcessorTest, HearsNoHostTransportBehindARuleThatConsumesIt) {
    processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatNonMatching), send(noteOn(0, 1, 1))),
                        rule(onHost(Transport::Start), send(noteOn(0, 1, 1)))});
    EXPECT_FALSE(processor.hearsHostTransport());
}

TEST_F(RuleProcessorTest, ReturnsTheRulesItWasGiven) {
    const std::vector rules{rule(onLoad(), send(noteOn(0, 1, 1)), "first"),
                            rule(onMIDIStart(), send(systemExclusive({1, 2})), "second")};
    processor.setRules(rules);
    EXPECT_EQ(processor.rules(), rules);
    processor.setRules({});
    EXPECT_EQ(processor.rules(), std::vector<Rule>{});
}

TEST_F(RuleProcessorTest, RulesThatCannotBeCompiledLeaveTheInstalledOnes) {
    const std::vector good{rule(onNoteOn(), send(noteOn(1, 1, 1)))};
    processor.setRules(good);
    EXPECT_THROW(processor.setRules({good[0], rule(onLoad(), send(noteOn(0, 1, 1), -5))}), FatalError);
    EXPECT_EQ(processor.rules(), good);
    EXPECT_EQ(midi(0, {0x90, 60, 1}), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{0, {{0x91, 1, 1}}}, {0, {{0x90, 60, 1}}}}));
}

TEST_F(RuleProcessorTest, WithoutRulesEveryEventIsForwardedUnchangedAtItsOwnTime) {
    for (const auto& bytes :
         {Bytes{0x90, 60, 100}, Bytes{0xC3, 5}, Bytes{0xF8}, Bytes{0xE1, 1, 2}, Bytes{0xF6}}) {
        EXPECT_EQ(midi(17, bytes), noErr);
        EXPECT_EQ(recorder.take(), (Emissions{{17, {bytes}}}));
    }
    EXPECT_EQ(transport(Transport::Start, 0, 512), noErr);
    EXPECT_EQ(recorder.take(), Emissions{});
}

TEST_F(RuleProcessorTest, AnEventWithoutBytesIsForwardedAsOne) {
    EXPECT_EQ(midi(3, {}), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{3, {{}}}}));
}

TEST_F(RuleProcessorTest, ALengthAboveThreeForwardsThreeBytes) {
    EXPECT_EQ(processor.processMIDIEvent(output, 0, {0x90, 60, 100}, 200, 512), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{0, {{0x90, 60, 100}}}}));
}

TEST_F(RuleProcessorTest, BytesBeyondTheLengthTakePartInMatching) {
    processor.setRules(
        {rule(onProgramChange(), send(protocol(StatusV2::CC, triggerChannel, triggerByte, triggerByte)))});
    EXPECT_EQ(processor.processMIDIEvent(output, 0, {0xC2, 5, 99}, 2, 512), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{0, {{0xB2, 5, 99}}}, {0, {{0xC2, 5}}}}));
}

TEST_F(RuleProcessorTest, ANoteOnRuleThatEatsMatchingSwallowsEveryNoteOnAndForwardsNoteOffs) {
    processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(controlChange(0, 1, 2)))});
    EXPECT_EQ(midi(1, {0x90, 60, 100}), noErr);
    EXPECT_EQ(midi(2, {0x95, 61, 0}), noErr);
    EXPECT_EQ(midi(3, {0x80, 60, 0}), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{1, {{0xB0, 1, 2}}}, {2, {{0xB0, 1, 2}}}, {3, {{0x80, 60, 0}}}}));
}

TEST_F(RuleProcessorTest, TwoPassThroughRulesEmitInOrderAndThenTheMessageIsForwarded) {
    processor.setRules({rule(onNoteOn(), send(noteOn(1, 1, 1))), rule(onNoteOn(), send(noteOn(2, 2, 2)))});
    EXPECT_EQ(midi(9, {0x90, 60, 100}), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{9, {{0x91, 1, 1}}}, {9, {{0x92, 2, 2}}}, {9, {{0x90, 60, 100}}}}));
}

TEST_F(RuleProcessorTest, AFirstRuleThatEatsNonMatchingStopsTheOthersAndTheMessage) {
    processor.setRules(
        {rule(onNoteOn(exactly(61), any, PassThroughV2::EatNonMatching), send(noteOn(1, 1, 1))),
         rule(onNoteOn(), send(noteOn(2, 2, 2)))});
    EXPECT_EQ(midi(0, {0x90, 60, 100}), noErr);
    EXPECT_EQ(recorder.take(), Emissions{});
    EXPECT_EQ(midi(0, {0x90, 61, 100}), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{0, {{0x91, 1, 1}}}, {0, {{0x92, 2, 2}}}, {0, {{0x90, 61, 100}}}}));
}

TEST_F(RuleProcessorTest, MIDITransportMessagesFireTheirRules) {
    processor.setRules({rule(onMIDIStart(), send(noteOn(0, 1, 1))),
                        rule(onMIDIContinue(), send(noteOn(0, 2, 2))),
                        rule(onMIDIStop(), send(noteOn(0, 3, 3)))});
    EXPECT_EQ(midi(0, {0xFA}), noErr);
    EXPECT_EQ(midi(1, {0xFB}), noErr);
    EXPECT_EQ(midi(2, {0xFC}), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{0, {{0x90, 1, 1}}},
                                          {0, {{0xFA}}},
                                          {1, {{0x90, 2, 2}}},
                                          {1, {{0xFB}}},
                                          {2, {{0x90, 3, 3}}},
                                          {2, {{0xFC}}}}));
}

TEST_F(RuleProcessorTest, AHostEventFiresItsRulesAtTheCyclesStartAndIsNotForwarded) {
    processor.setRules({rule(onHost(Transport::Start), send(noteOn(0, 1, 1))),
                        rule(onHost(Transport::Continue), send(noteOn(0, 2, 2))),
                        rule(onHost(Transport::Stop), send(noteOn(0, 3, 3))),
                        rule(onNoteOn(), send(noteOn(0, 4, 4)))});
    EXPECT_EQ(transport(Transport::Start, 100, 200), noErr);
    EXPECT_EQ(transport(Transport::Continue, 200, 300), noErr);
    EXPECT_EQ(transport(Transport::Stop, 300, 400), noErr);
    EXPECT_EQ(recorder.take(),
              (Emissions{{100, {{0x90, 1, 1}}}, {200, {{0x90, 2, 2}}}, {300, {{0x90, 3, 3}}}}));
}

TEST_F(RuleProcessorTest, AHostRuleThatEatsMatchingEndsTheChain) {
    processor.setRules({rule(onHost(Transport::Start, PassThroughV2::EatMatching), send(noteOn(0, 1, 1))),
                        rule(onHost(Transport::Start), send(noteOn(0, 2, 2)))});
    EXPECT_EQ(transport(Transport::Start, 0, 512), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{0, {{0x90, 1, 1}}}}));
}

TEST_F(RuleProcessorTest, AnOutputWithoutDelayLeavesAtItsTriggersTime) {
    processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(1, 1, 1)))});
    EXPECT_EQ(midi(511, {0x90, 60, 100}, 512), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{511, {{0x91, 1, 1}}}}));
}

TEST_F(RuleProcessorTest, AnOutputDueWithinTheCycleLeavesInItWithItsExactTime) {
    processor.setRules({rule(onNoteOn(), send(noteOn(1, 1, 1), 11))});
    EXPECT_EQ(midi(500, {0x90, 60, 100}, 512), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{511, {{0x91, 1, 1}}}, {500, {{0x90, 60, 100}}}}));
    EXPECT_EQ(processor.pendingDelayedMessages(), 0U);
}

TEST_F(RuleProcessorTest, AnOutputDueExactlyAtTheCyclesEndLeavesInTheNextCycle) {
    processor.setRules({rule(onNoteOn(), send(noteOn(1, 1, 1), 12))});
    EXPECT_EQ(midi(500, {0x90, 60, 100}, 512), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{500, {{0x90, 60, 100}}}}));
    EXPECT_EQ(processor.pendingDelayedMessages(), 1U);
    EXPECT_EQ(delayedFlush(512), noErr);
    EXPECT_EQ(recorder.take(), Emissions{});
    EXPECT_EQ(delayedFlush(513), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{512, {{0x91, 1, 1}}}}));
    EXPECT_EQ(processor.pendingDelayedMessages(), 0U);
}

TEST_F(RuleProcessorTest, DelayedOutputsLeaveInTheOrderOfTheirTimes) {
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 3, 3), 1030)),
                        rule(onNoteOn(), send(noteOn(0, 1, 1), 1010)),
                        rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 2, 2), 1020))});
    EXPECT_EQ(midi(0, {0x90, 60, 100}), noErr);
    EXPECT_EQ(delayedFlush(1025), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{1010, {{0x90, 1, 1}}}, {1020, {{0x90, 2, 2}}}}));
    EXPECT_EQ(delayedFlush(2000), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{1030, {{0x90, 3, 3}}}}));
}

TEST_F(RuleProcessorTest, SaysWhenTheFirstDelayedOutputIsDue) {
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 2, 2), 1020)),
                        rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 1, 1), 1010))});
    EXPECT_EQ(processor.nextDelayedMessage(), std::nullopt);
    EXPECT_EQ(midi(5, {0x90, 60, 100}), noErr);
    EXPECT_EQ(processor.nextDelayedMessage(), 1015);
    EXPECT_EQ(delayedFlush(1016), noErr);
    EXPECT_EQ(processor.nextDelayedMessage(), 1025);
    EXPECT_EQ(delayedFlush(1026), noErr);
    EXPECT_EQ(processor.nextDelayedMessage(), std::nullopt);
}

TEST_F(RuleProcessorTest, AnOutputThatWasQueuedLateKeepsItsTime) {
    processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 1, 1), 600))});
    EXPECT_EQ(midi(0, {0x90, 60, 100}, 512), noErr);
    EXPECT_EQ(delayedFlush(100000), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{600, {{0x90, 1, 1}}}}));
}

TEST_F(RuleProcessorTest, ADelayedBankSelectAndItsProgramLeaveTogether) {
    processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching),
                             send(programChange(triggerChannel, 1, byte(2)), 1000))});
    EXPECT_EQ(midi(5, {0x94, 60, 100}), noErr);
    EXPECT_EQ(delayedFlush(2000), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{1005, {{0xB4, 0, 1}, {0xC4, 2}}}}));
}

TEST_F(RuleProcessorTest, TimesBeforeZeroAreTimesLikeAnyOther) {
    processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 1, 1), 10))});
    EXPECT_EQ(midi(-20, {0x90, 60, 100}, -10), noErr);
    EXPECT_EQ(recorder.take(), Emissions{});
    EXPECT_EQ(delayedFlush(0), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{-10, {{0x90, 1, 1}}}}));
}

TEST_F(RuleProcessorTest, MorePendingOutputsThanTheQueueHoldsLoseTheEarliest) {
    processor.setRules(
        {rule(onNoteOn(any, any, PassThroughV2::EatMatching),
              send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, triggerByte), 100000))});
    for (SampleTime time = 0; time <= 10000; ++time) {
        EXPECT_EQ(midi(time, {0x90, 60, 100}, 20000), noErr);
    }
    EXPECT_EQ(processor.pendingDelayedMessages(), 10000U);
    EXPECT_EQ(delayedFlush(lastTime), noErr);
    const auto emissions = recorder.take();
    ASSERT_EQ(emissions.size(), 10000U);
    EXPECT_EQ(emissions.front().time, 100001);
    EXPECT_EQ(emissions.back().time, 110000);
}

TEST_F(RuleProcessorTest, OnLoadRulesFireInTheFirstCycleOnlyEvenIfTheRulesChange) {
    const std::vector rules{rule(onLoad(), send(noteOn(0, 1, 1))), rule(onLoad(), send(noteOn(0, 2, 2), 5)),
                            rule(onLoad(), send(noteOn(0, 3, 3), 600))};
    processor.setRules(rules);
    EXPECT_EQ(onLoadPass(1000, 1512), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{1000, {{0x90, 1, 1}}}, {1005, {{0x90, 2, 2}}}}));
    EXPECT_EQ(delayedFlush(2024), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{1600, {{0x90, 3, 3}}}}));
    processor.setRules(rules);
    EXPECT_EQ(onLoadPass(1512, 2024), noErr);
    EXPECT_EQ(recorder.take(), Emissions{});
}

TEST_F(RuleProcessorTest, AFirstCycleWithoutOnLoadRulesCountsToo) {
    EXPECT_EQ(onLoadPass(0, 512), noErr);
    processor.setRules({rule(onLoad(), send(noteOn(0, 1, 1)))});
    EXPECT_EQ(onLoadPass(512, 1024), noErr);
    EXPECT_EQ(recorder.calls, 0U);
}

TEST_F(RuleProcessorTest, OnLoadRulesAfterAFailedOneNeverFire) {
    processor.setRules({rule(onLoad(), send(noteOn(0, 1, 1))), rule(onLoad(), send(noteOn(0, 2, 2)))});
    recorder.acceptedBeforeFailure = 0;
    EXPECT_EQ(onLoadPass(0, 512), -1);
    EXPECT_EQ(onLoadPass(512, 1024), noErr);
    EXPECT_EQ(recorder.calls, 1U);
}

TEST_F(RuleProcessorTest, MessagesSentByHandLeaveTogetherAtTheNextCyclesStartInTheOrderSent) {
    processor.send(noteOn(0, 1, 1));
    processor.send(programChange(channel(2), 3, byte(4)));
    processor.send(systemExclusive(Bytes(1000, 0x11)));
    EXPECT_EQ(processor.pendingInstantMessages(), 4U);
    EXPECT_EQ(instantFlush(77), noErr);
    Bytes sysEx(1002, 0x11);
    sysEx.front() = 0xF0;
    sysEx.back() = 0xF7;
    EXPECT_EQ(recorder.take(), (Emissions{{77, {{0x90, 1, 1}, {0xB2, 0, 3}, {0xC2, 4}, sysEx}}}));
    EXPECT_EQ(recorder.calls, 1U);
    EXPECT_EQ(processor.pendingInstantMessages(), 0U);
}

TEST_F(RuleProcessorTest, TheInstantFlushCallsTheOutputOnceEvenWithNothingToSend) {
    EXPECT_EQ(instantFlush(0), noErr);
    EXPECT_EQ(recorder.calls, 1U);
}

TEST_F(RuleProcessorTest, MessagesSentByHandAreForgottenEvenIfTheOutputFails) {
    processor.send(noteOn(0, 1, 1));
    recorder.acceptedBeforeFailure = 0;
    EXPECT_EQ(instantFlush(0), -1);
    EXPECT_EQ(processor.pendingInstantMessages(), 0U);
    EXPECT_EQ(instantFlush(512), noErr);
    EXPECT_EQ(recorder.take(), Emissions{});
}

TEST_F(RuleProcessorTest, ManyMessagesSentByHandAllWait) {
    Emission expected{5, {}};
    for (std::uint8_t note = 0; note < 100; ++note) {
        processor.send(noteOn(0, note, 1));
        expected.messages.push_back({0x90, note, 1});
    }
    EXPECT_EQ(instantFlush(5), noErr);
    EXPECT_EQ(recorder.take(), Emissions{expected});
}

TEST_F(RuleProcessorTest, SendingAnOutputThatRefersToATriggerIsFatal) {
    EXPECT_THROW(processor.send(protocol(StatusV2::noteOn, triggerChannel, byte(1), byte(1))), FatalError);
    EXPECT_THROW(processor.send(programChange(channel(0), 0, triggerByte)), FatalError);
    EXPECT_EQ(processor.pendingInstantMessages(), 0U);
}

TEST_F(RuleProcessorTest, NewRulesLeaveWhatWaitsInPlace) {
    processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching),
                             send(systemExclusive({1, 2, 3, 4, 5, 6, 7, 8}), 600))});
    EXPECT_EQ(midi(0, {0x90, 60, 100}), noErr);
    processor.send(noteOn(0, 9, 9));
    processor.setRules({});
    EXPECT_EQ(instantFlush(512), noErr);
    EXPECT_EQ(delayedFlush(1024), noErr);
    EXPECT_EQ(recorder.take(),
              (Emissions{{512, {{0x90, 9, 9}}}, {600, {{0xF0, 1, 2, 3, 4, 5, 6, 7, 8, 0xF7}}}}));
}

TEST_F(RuleProcessorTest, ANewSampleRateCountsForRulesThatAreInstalledFromThenOn) {
    const std::vector rules{rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 1, 1), 100))};
    processor.setRules(rules);
    processor.sampleRate = 48000;
    EXPECT_EQ(midi(0, {0x90, 60, 100}), noErr);
    processor.setRules(rules);
    EXPECT_EQ(midi(0, {0x90, 60, 100}, 10000), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{100, {{0x90, 1, 1}}}, {4800, {{0x90, 1, 1}}}}));
}

TEST_F(RuleProcessorTest, AFailedOutputEndsTheEventAndNothingIsForwarded) {
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 1, 1))), rule(onNoteOn(), send(noteOn(0, 2, 2)))});
    recorder.acceptedBeforeFailure = 1;
    recorder.failure = -50;
    EXPECT_EQ(midi(0, {0x90, 60, 100}), -50);
    EXPECT_EQ(recorder.take(), (Emissions{{0, {{0x90, 1, 1}}}}));
    EXPECT_EQ(recorder.calls, 2U);
}

TEST_F(RuleProcessorTest, TheStatusOfTheForwardedMessageIsReturned) {
    recorder.acceptedBeforeFailure = 0;
    recorder.failure = 7;
    EXPECT_EQ(midi(0, {0x90, 60, 100}), 7);
}

TEST_F(RuleProcessorTest, AHostEventEndsAtAFailedOutput) {
    processor.setRules({rule(onHost(Transport::Start), send(noteOn(0, 1, 1))),
                        rule(onHost(Transport::Start), send(noteOn(0, 2, 2)))});
    recorder.acceptedBeforeFailure = 0;
    EXPECT_EQ(transport(Transport::Start, 0, 512), -1);
    EXPECT_EQ(recorder.calls, 1U);
}

TEST_F(RuleProcessorTest, ADelayedMessageThatFailsIsLostAndTheOthersStay) {
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 1, 1), 1001)),
                        rule(onNoteOn(), send(noteOn(0, 2, 2), 1002)),
                        rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 3, 3), 1003))});
    EXPECT_EQ(midi(0, {0x90, 60, 100}), noErr);
    recorder.acceptedBeforeFailure = 1;
    EXPECT_EQ(delayedFlush(5000), -1);
    EXPECT_EQ(delayedFlush(5000), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{1001, {{0x90, 1, 1}}}, {1003, {{0x90, 3, 3}}}}));
}

TEST_F(RuleProcessorTest, ADelayBeyondTheTimelineIsFatalAndTheHostLearnsIt) {
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 1, 1), 1))});
    EXPECT_EQ(midi(lastTime, {0x90, 60, 100}, lastTime), kQuilloErr_FatalError);
    EXPECT_THROW(processor.fatalErrors.raise(), FatalError);
    EXPECT_EQ(recorder.calls, 0U);
}

TEST_F(RuleProcessorTest, AnOutputAtTheLastTimeOfTheTimelineIsQueued) {
    processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 1, 1), 1))});
    EXPECT_EQ(midi(lastTime - 1, {0x90, 60, 100}, lastTime), noErr);
    EXPECT_EQ(processor.pendingDelayedMessages(), 1U);
}

}  // namespace
}  // namespace quillo
