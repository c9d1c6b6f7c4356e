// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Cycle.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <optional>
#include <variant>

#include "engine/RuleProcessor.hpp"
#include "support/OutputRecorder.hpp"
#include "support/RandomRules.hpp"
#include "support/TestRules.hpp"
#include "support/WatchedThread.hpp"

namespace quillo {
namespace {

using namespace test;
using Emissions = std::vector<Emission>;
using Transport = HostTransportTriggerVariantsV2;

/// A processor at one sample a millisecond, and what it sends.
struct Engine {
    Engine() { processor.sampleRate = 1000; }

    RuleProcessor processor;
    OutputRecorder recorder;
    WithoutDeadline<std::reference_wrapper<OutputRecorder>> target{recorder};
    OutputFunction output{target};
};

class CycleTest : public testing::Test, protected Engine {};

TEST_F(CycleTest, SendsWhatIsDueByItselfInTheOrderOfTheSteps) {
    processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 4, 4), 100)),
                        rule(onLoad(), send(noteOn(0, 1, 1), 5))});
    EXPECT_EQ(processor.processMIDIEvent(output, 0, {0x90, 1, 1}, 3, 50), noErr);
    processor.send(noteOn(0, 2, 2));
    EXPECT_EQ(Cycle(processor, output, 50, 101).status(), noErr);
    EXPECT_EQ(recorder.take(),
              (Emissions{{55, {{0x90, 1, 1}}}, {50, {{0x90, 2, 2}}}, {100, {{0x90, 4, 4}}}}));
    EXPECT_EQ(Cycle(processor, output, 101, 200).status(), noErr);
    EXPECT_EQ(recorder.take(), Emissions{});
}

TEST_F(CycleTest, FiresRulesForTheTransportAtItsTimeAndForwardsNothing) {
    processor.setRules({rule(onHost(Transport::Continue), send(noteOn(0, 1, 1), 3))});
    Cycle cycle(processor, output, 100, 200);
    EXPECT_EQ(cycle.transport(150, Transport::Continue), noErr);
    EXPECT_EQ(cycle.transport(160, Transport::Stop), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{153, {{0x90, 1, 1}}}}));
}

TEST_F(CycleTest, ForwardsMessagesOfEveryLengthAfterWhatTheirRulesSend) {
    processor.setRules({rule(onNoteOn(exactly(60)), send(noteOn(1, 1, 1)))});
    Cycle cycle(processor, output, 0, 100);
    for (const auto& bytes : {Bytes{0x90, 60, 100}, Bytes{0xC3, 5}, Bytes{0xF8}, Bytes{}}) {
        EXPECT_EQ(cycle.midi(7, bytes), noErr);
    }
    EXPECT_EQ(
        recorder.take(),
        (Emissions{{7, {{0x91, 1, 1}}}, {7, {{0x90, 60, 100}}}, {7, {{0xC3, 5}}}, {7, {{0xF8}}}, {7, {{}}}}));
}

TEST_F(CycleTest, RulesSeeZerosBehindAShortMessageAndWhatAHostLeavesThere) {
    processor.setRules({rule(onControlChange(5, exactly(0)), send(noteOn(1, 1, 1)))});
    Cycle cycle(processor, output, 0, 100);
    EXPECT_EQ(cycle.midi(1, Bytes{0xB0, 5}), noErr);
    EXPECT_EQ(cycle.midi(2, {0xB0, 5, 9}, 2), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{1, {{0x91, 1, 1}}}, {1, {{0xB0, 5}}}, {2, {{0xB0, 5}}}}));
}

TEST_F(CycleTest, IsEndedByTheFirstStatusOfItsEvents) {
    recorder.acceptedBeforeFailure = 1;  // the call for what was sent by hand
    recorder.failure = -7;
    Cycle cycle(processor, output, 0, 100);
    EXPECT_EQ(cycle.midi(1, Bytes{0xF8}), -7);
    EXPECT_EQ(cycle.midi(2, Bytes{0xF8}), -7);
    EXPECT_EQ(cycle.transport(3, Transport::Start), -7);
    EXPECT_EQ(cycle.status(), -7);
    EXPECT_EQ(recorder.calls, 2U);
}

TEST_F(CycleTest, IsEndedByTheFirstStatusOfItsOwnSteps) {
    processor.setRules({rule(onLoad(), send(noteOn(0, 1, 1)))});
    processor.send(noteOn(0, 2, 2));
    recorder.acceptedBeforeFailure = 0;
    {
        Cycle cycle(processor, output, 0, 100);
        EXPECT_EQ(cycle.status(), -1);
        EXPECT_EQ(cycle.midi(1, Bytes{0xF8}), -1);
    }
    EXPECT_EQ(recorder.calls, 1U);
    EXPECT_EQ(processor.pendingInstantMessages(), 1U);
}

TEST_F(CycleTest, IsEndedWhenWhatWasSentByHandIsRefused) {
    processor.setRules({rule(onLoad(), send(noteOn(0, 1, 1), 5))});
    EXPECT_EQ(Cycle(processor, output, 0, 5).status(), noErr);
    processor.send(noteOn(0, 2, 2));
    recorder.take();
    recorder.acceptedBeforeFailure = 0;
    {
        Cycle cycle(processor, output, 5, 100);
        EXPECT_EQ(cycle.status(), -1);
    }
    EXPECT_EQ(processor.pendingInstantMessages(), 0U);
    EXPECT_EQ(processor.pendingDelayedMessages(), 1U);
}

TEST_F(CycleTest, KeepsItsRulesUntilItEnds) {
    std::atomic<bool> installed = false;
    std::optional<WatchedThread> installer;
    {
        Cycle cycle(processor, output, 0, 100);
        installer.emplace([&] {
            processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(1, 1, 1)))});
            installed = true;
        });
        installer->awaitSleepOrEnd();
        EXPECT_FALSE(installed);
        EXPECT_EQ(cycle.midi(7, Bytes{0x90, 60, 100}), noErr);
        EXPECT_EQ(recorder.take(), (Emissions{{7, {{0x90, 60, 100}}}}));
    }
    installer->join();
    EXPECT_EQ(Cycle(processor, output, 100, 200).midi(107, Bytes{0x90, 60, 100}), noErr);
    EXPECT_EQ(recorder.take(), (Emissions{{107, {{0x91, 1, 1}}}}));
}

/// A message, or a change of the transport at the cycle's start.
using Event = std::variant<TriggerBytes, Transport>;

void renderInSteps(Engine& engine, const std::vector<Event>& events, SampleTime start, SampleTime end) {
    ASSERT_EQ(engine.processor.onLoad(engine.output, start, end), noErr);
    ASSERT_EQ(engine.processor.flushInstantMessages(engine.output, start), noErr);
    ASSERT_EQ(engine.processor.flushDelayedMessages(engine.output, end), noErr);
    for (const auto& event : events) {
        if (const auto* trigger = std::get_if<Transport>(&event)) {
            ASSERT_EQ(engine.processor.processHostTransport(engine.output, *trigger, start, end), noErr);
            continue;
        }
        const auto& bytes = std::get<TriggerBytes>(event);
        const std::array data{bytes.status, bytes.data1, bytes.data2};
        ASSERT_EQ(engine.processor.processMIDIEvent(engine.output, start + 1, data, data.size(), end), noErr);
    }
}

void renderInOneCycle(Engine& engine, const std::vector<Event>& events, SampleTime start, SampleTime end) {
    Cycle cycle(engine.processor, engine.output, start, end);
    for (const auto& event : events) {
        if (const auto* trigger = std::get_if<Transport>(&event)) {
            cycle.transport(start, *trigger);
        } else {
            const auto& bytes = std::get<TriggerBytes>(event);
            cycle.midi(start + 1, {bytes.status, bytes.data1, bytes.data2}, 3);
        }
    }
    ASSERT_EQ(cycle.status(), noErr);
}

TEST(Cycle, DoesWhatTheProcessorsStepsDoOneByOne) {
    constexpr SampleTime length = 64;
    for (unsigned seed = 0; seed < 500; ++seed) {
        RandomRules random(seed);
        Engine steps;
        Engine whole;
        const auto rules = random.list(20);
        steps.processor.setRules(rules);
        whole.processor.setRules(rules);
        for (SampleTime start = 0; start < 50 * length; start += length) {
            std::vector<Event> events{random.transport()};
            for (int count = 0; count < 5; ++count) {
                events.emplace_back(random.message());
            }
            renderInSteps(steps, events, start, start + length);
            renderInOneCycle(whole, events, start, start + length);
            ASSERT_EQ(steps.recorder.take(), whole.recorder.take()) << "seed " << seed;
        }
    }
}

}  // namespace
}  // namespace quillo
