// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/RenderCycle.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "hosts/auv3/HostEventChain.hpp"
#include "hosts/auv3/HostEventDouble.hpp"
#include "support/OutputRecorder.hpp"
#include "support/TestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;

/// One call of the unit.
struct Call {
    double time;
    AUAudioFrameCount frames;
    std::vector<int> notes;  ///< the second bytes of its events

    bool operator==(const Call&) const = default;
};

class RenderCycleTest : public testing::Test {
protected:
    void add(std::size_t count) {
        for (std::size_t number = 0; number < count; ++number) {
            events.addMIDI(0, {0x90, static_cast<std::uint8_t>(number % 128), 1});
        }
    }

    std::vector<Call> calls;
    std::vector<OSStatus> statuses;  ///< of the calls, until they run out
    HostEventChain<HostEvent> events;
    RenderCycle cycle{WithoutDeadline(
        [this](const AudioTimeStamp& timestamp, AUAudioFrameCount frames, const AURenderEvent* event) {
            calls.push_back({timestamp.mSampleTime, frames, {}});
            for (; event != nullptr; event = event->next) {
                calls.back().notes.push_back(static_cast<const AUMIDIEvent*>(event)->data[1]);
            }
            return calls.size() <= statuses.size() ? statuses[calls.size() - 1] : noErr;
        })};
};

TEST_F(RenderCycleTest, ACycleWithoutEventsIsOneCall) {
    EXPECT_EQ(cycle.render<HostEvent>(12.5, 64, nullptr), noErr);
    EXPECT_THAT(calls, ElementsAre(Call{12.5, 64, {}}));
}

TEST_F(RenderCycleTest, ACycleWithEventsIsOneCall) {
    add(3);
    EXPECT_EQ(cycle.render(0.0, 512, events.head()), noErr);
    EXPECT_THAT(calls, ElementsAre(Call{0.0, 512, {0, 1, 2}}));
}

TEST_F(RenderCycleTest, NothingOfACycleIsLeftForTheNext) {
    add(2);
    statuses = {-3};
    EXPECT_EQ(cycle.render(0.0, 512, events.head()), -3);
    EXPECT_EQ(cycle.render<HostEvent>(512.0, 512, nullptr), noErr);
    EXPECT_THAT(calls, ElementsAre(Call{0.0, 512, {0, 1}}, Call{512.0, 512, {}}));
}

TEST_F(RenderCycleTest, AsManyEventsAsThereIsRoomForAreOneCall) {
    add(RenderCycle::capacity);
    EXPECT_EQ(cycle.render(0.0, 512, events.head()), noErr);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].notes.size(), RenderCycle::capacity);
}

TEST_F(RenderCycleTest, MoreEventsAreHandedOverInOrderInSeveralCallsOfTheSameCycle) {
    add(RenderCycle::capacity + 2);
    EXPECT_EQ(cycle.render(96.0, 512, events.head()), noErr);
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].notes.size(), RenderCycle::capacity);
    constexpr int next = RenderCycle::capacity % 128;
    EXPECT_EQ(calls[1], (Call{96.0, 512, {next, next + 1}}));
}

TEST_F(RenderCycleTest, TheFirstFailureEndsTheCycle) {
    add(2 * RenderCycle::capacity + 1);
    statuses = {noErr, -9};
    EXPECT_EQ(cycle.render(0.0, 512, events.head()), -9);
    EXPECT_EQ(calls.size(), 2U);
}

TEST(RenderCycle, AnOverfullCycleSendsWhatOneCallWouldSend) {
    TestHost host;
    host.unit->processor->setRules(
        {rule(onNoteOn(exactly(1), any, PassThroughV2::EatMatching), send(noteOn(0, 9, 9), 10), "")});
    host.offerTransport();
    host.flags = AUHostTransportStateMoving;
    RenderCycle cycle(host.unit->internalRenderBlock());
    HostEventChain<HostEvent> events;
    for (std::size_t number = 0; number < RenderCycle::capacity; ++number) {
        events.addMIDI(0, {0xB0, 1, 1});
    }
    events.addMIDI(0, {0x90, 1, 1});
    EXPECT_EQ(cycle.render(0.0, 512, events.head()), noErr);
    const auto lines = host.take();
    EXPECT_EQ(std::ranges::count(lines, "in [0] AU Host Start"), 1);
    EXPECT_EQ(std::ranges::count(lines, "midi 0: b0 01 01"), RenderCycle::capacity);
    EXPECT_EQ(std::ranges::count(lines, "midi 441: 90 09 09"), 1);
    EXPECT_EQ(std::ranges::count_if(lines, [](const auto& line) { return line.starts_with("midi"); }),
              RenderCycle::capacity + 1);
}

TEST(RenderCycle, ItMayOutliveTheUnitAndThenDoesNothing) {
    auto unit = test::makeUnit();
    RenderCycle cycle(unit->internalRenderBlock());
    unit.reset();
    HostEventChain<HostEvent> events;
    events.addMIDI(0, {0x90, 1, 1});
    EXPECT_EQ(cycle.render(0.0, 512, events.head()), noErr);
}

}  // namespace
}  // namespace quillo
