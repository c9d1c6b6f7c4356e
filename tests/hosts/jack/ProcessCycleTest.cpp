// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ProcessCycle.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "hosts/jack/FakePorts.hpp"
#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

class ProcessCycleTest : public testing::Test {
protected:
    ProcessCycleTest() {
        processor.sampleRate = 1000;
        logInput = WithoutDeadline([this](const EventLogEntry& entry) { heard.push_back(text(entry)); });
    }

    /// Lets it render, and the cycles pass that it takes until then.
    void release() {
        cycle.release();
        run({});
        run({});
    }

    /// What is in the output port after a cycle with these events.
    Timed run(Timed events, const ServerTransport& transport = {}) {
        cycle.run(frames, transport, FakeInput(std::move(events)), out);
        return out.written;
    }

    static constexpr std::uint32_t frames = 16;
    RuleProcessor processor;
    LogCallback logInput;
    LogCallback logOutput;
    BlockRenderer renderer{processor, logInput, logOutput, HostTransport()};
    ProcessCycle cycle{renderer};
    FakeOutput out;
    std::vector<std::string> heard;
};

TEST_F(ProcessCycleTest, MessagesPassAtTheirFrames) {
    release();
    EXPECT_EQ(run({{0, {0x90, 60, 1}}, {15, {0x80, 60, 0}}}),
              (Timed{{0, {0x90, 60, 1}}, {15, {0x80, 60, 0}}}));
    EXPECT_EQ(run({}), Timed{});
}

TEST_F(ProcessCycleTest, ADelayedMessageLeavesInTheCycleThatHoldsItsTime) {
    processor.setRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 61, 5), 30))});
    release();
    EXPECT_EQ(run({{2, {0x90, 60, 1}}, {15, {0x90, 60, 1}}}), Timed{});
    EXPECT_EQ(run({}), Timed{});
    EXPECT_EQ(run({}), (Timed{{0, {0x90, 61, 5}}, {13, {0x90, 61, 5}}}));
}

TEST_F(ProcessCycleTest, MessagesSentOutOfOrderAreWrittenInTheOrderOfTime) {
    processor.setRules({rule(onNoteOn(exactly(60)), send(controlChange(0, 7, 1), 8))});
    release();
    EXPECT_EQ(run({{2, {0x90, 60, 1}}, {5, {0x90, 61, 1}}, {10, {0x90, 62, 1}}, {11, {0x90, 63, 1}}}),
              (Timed{{2, {0x90, 60, 1}},
                     {5, {0x90, 61, 1}},
                     {10, {0xB0, 7, 1}},
                     {10, {0x90, 62, 1}},
                     {11, {0x90, 63, 1}}}));
}

TEST_F(ProcessCycleTest, AMessageWithoutRoomIsRefusedAndCounted) {
    release();
    out.mostMessages = 2;
    EXPECT_EQ(run({{1, {0xC0, 1}}, {2, {0xC0, 2}}, {3, {0xC0, 3}}}), (Timed{{1, {0xC0, 1}}, {2, {0xC0, 2}}}));
    EXPECT_EQ(renderer.refused().refused(), 1U);
    EXPECT_EQ(run({{1, {0xC0, 4}}}), (Timed{{1, {0xC0, 4}}}));
    EXPECT_EQ(renderer.refused().refused(), 1U);
}

TEST_F(ProcessCycleTest, SystemExclusiveThatIsTooLongForThePortIsLeftOutAndTheRestOfTheCycleLeaves) {
    processor.setRules({rule(onNoteOff(), send(systemExclusive({1, 2, 3})))});
    release();
    out.longest = 4;
    EXPECT_EQ(run({{1, {0x80, 60, 0}}, {2, {0x80, 61, 0}}}), (Timed{{1, {0x80, 60, 0}}, {2, {0x80, 61, 0}}}));
    EXPECT_EQ(renderer.refused().leftOut(), 2U);
    EXPECT_EQ(renderer.refused().refused(), 0U);
}

TEST_F(ProcessCycleTest, AnIncompleteMessageIsLeftOut) {
    processor.setRules({rule(onNoteOn(), send(controlChange(0, 7, 1)))});
    release();
    EXPECT_EQ(run({{1, {0x90, 60}}, {2, {0xC0}}, {3, {0xC0, 1}}}), (Timed{{3, {0xC0, 1}}}));
    EXPECT_EQ(heard, (std::vector<std::string>{"[3] c0 01"}));
}

TEST_F(ProcessCycleTest, ARefusedMessageIsNotLoggedAsSent) {
    logOutput =
        WithoutDeadline([this](const EventLogEntry& entry) { heard.push_back("out " + text(entry)); });
    release();
    out.mostMessages = 1;
    run({{1, {0xC0, 1}}, {2, {0xC0, 2}}});
    EXPECT_EQ(heard, (std::vector<std::string>{"[1] c0 01", "out [1] c0 01", "[2] c0 02"}));
}

TEST_F(ProcessCycleTest, WhatWaitsForALaterFrameHasItsRoomInThePort) {
    processor.setRules({rule(onNoteOn(exactly(60)), send(controlChange(0, 7, 1), 8))});
    release();
    out.mostMessages = 3;
    EXPECT_EQ(run({{2, {0x90, 60, 1}}, {5, {0x90, 61, 1}}, {6, {0x90, 62, 1}}, {7, {0x90, 63, 1}}}),
              (Timed{{2, {0x90, 60, 1}}, {5, {0x90, 61, 1}}, {10, {0xB0, 7, 1}}}));
    EXPECT_EQ(renderer.refused().refused(), 1U);
}

TEST_F(ProcessCycleTest, EventsThatWereLostOnTheirWayInAreCounted) {
    release();
    FakeInput in;
    in.lostEvents = 3;
    cycle.run(frames, {}, in, out);
    cycle.run(frames, {}, in, out);
    EXPECT_EQ(cycle.lost(), 6U);
}

TEST_F(ProcessCycleTest, TheTransportStartsContinuesAndStops) {
    release();
    heard.clear();
    run({}, {true, 0});
    run({}, {true, 16});
    run({}, {false, 32});
    run({}, {true, 32});
    EXPECT_EQ(heard,
              (std::vector<std::string>{"[0] AU Host Start", "[32] AU Host Stop", "[48] AU Host Continue"}));
}

TEST_F(ProcessCycleTest, ARelocationOfTheRollingTransportIsOneChange) {
    release();
    run({}, {true, 0});
    heard.clear();
    run({}, {true, 4096});
    run({}, {true, 4112});
    run({}, {true, 0});
    run({}, {true, 16});
    EXPECT_EQ(heard, (std::vector<std::string>{"[16] AU Host Continue", "[48] AU Host Start"}));
}

/// The server's word for that is that it starts from there, for one cycle or for as long as a client takes to
/// follow.
TEST_F(ProcessCycleTest, ARollingTransportThatIsRelocatedDoesNotStopInBetween) {
    release();
    run({}, {true, 0});
    heard.clear();
    run({}, {false, 4096, 16, true});
    run({}, {true, 4096, 32});
    run({}, {true, 4112, 48});
    EXPECT_EQ(heard, (std::vector<std::string>{"[32] AU Host Continue"}));
    for (std::uint32_t clock = 64; clock < 64 + 10 * 16; clock += 16) {
        run({}, {false, 0, clock, true});
    }
    run({}, {true, 0, 64 + 10 * 16});
    EXPECT_EQ(heard, (std::vector<std::string>{"[32] AU Host Continue", "[224] AU Host Start"}));
}

TEST_F(ProcessCycleTest, ARelocationAfterACycleThatFailedIsHeard) {
    release();
    run({}, {true, 4096, 0});
    processor.send(noteOn(0, 60, 1));
    out.mostMessages = 0;
    run({}, {true, 4112, 16});
    heard.clear();
    run({}, {true, 0, 32});
    EXPECT_EQ(heard, (std::vector<std::string>{"[32] AU Host Start"}));
}

TEST_F(ProcessCycleTest, ARelocationThatEndsInAStopIsAStop) {
    release();
    run({}, {true, 0});
    heard.clear();
    run({}, {false, 4096, 16, true});
    run({}, {false, 4096, 32});
    EXPECT_EQ(heard, (std::vector<std::string>{"[32] AU Host Stop"}));
}

TEST_F(ProcessCycleTest, AStandingTransportThatIsAboutToStartStandsUntilItRolls) {
    release();
    run({}, {false, 0, 0, true});
    run({}, {false, 0, 16, true});
    EXPECT_EQ(heard, std::vector<std::string>{});
    run({}, {true, 0, 32});
    EXPECT_EQ(heard, (std::vector<std::string>{"[32] AU Host Start"}));
}

/// The cycle ends with what there is no room for, before the relocation is heard.
TEST_F(ProcessCycleTest, ARelocationInACycleWithoutRoomIsHeardInTheNext) {
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 61, 5), 20))});
    release();
    run({{0, {0x90, 60, 1}}}, {true, 0, 1000});
    heard.clear();
    out.mostMessages = 0;
    run({}, {true, 4096, 1016});
    EXPECT_EQ(renderer.refused().refused(), 1U);
    EXPECT_EQ(heard, std::vector<std::string>{});
    run({}, {true, 4112, 1032});
    run({}, {true, 4128, 1048});
    EXPECT_EQ(heard, (std::vector<std::string>{"[32] AU Host Continue"}));
}

TEST_F(ProcessCycleTest, ATransportThatWentOnDuringMissedCyclesWasNotRelocated) {
    release();
    run({}, {true, 0, 1000});
    run({}, {true, 16 + 5 * 16, 1016 + 5 * 16});
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Start"}));
    run({}, {true, 50, 1032 + 5 * 16});
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Start", "[32] AU Host Continue"}));
}

TEST_F(ProcessCycleTest, ARelocationThatFollowsMissedCyclesIsAChange) {
    release();
    run({}, {true, 0, 1000});
    run({}, {true, 4096, 1016 + 5 * 16});
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Start", "[16] AU Host Continue"}));
}

TEST_F(ProcessCycleTest, MissedCyclesAreToldAlsoWhereTheServersClockBeginsAnew) {
    release();
    run({}, {true, 0, 0xFFFFFFF8});
    run({}, {true, 16 + 2 * 16, 8 + 2 * 16});
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Start"}));
}

TEST_F(ProcessCycleTest, ARelocationOfTheStandingTransportIsNone) {
    release();
    run({}, {false, 4096});
    run({}, {false, 0});
    EXPECT_EQ(heard, std::vector<std::string>{});
}

TEST_F(ProcessCycleTest, SystemExclusiveInPiecesDoesNotDisturbWhatIsAroundIt) {
    release();
    EXPECT_EQ(run({{1, {0xC0, 1}}, {2, {0xF0, 1, 2}}, {3, {0xF8}}, {4, {3, 4, 5}}}),
              (Timed{{1, {0xC0, 1}}, {3, {0xF8}}}));
    EXPECT_EQ(run({{1, {0x10, 0x20}}, {2, {0x30, 0xF7}}, {3, {0xC0, 2}}}), (Timed{{3, {0xC0, 2}}}));
    EXPECT_EQ(heard, (std::vector<std::string>{"[1] c0 01", "[3] f8", "[19] c0 02"}));
}

TEST_F(ProcessCycleTest, OfAPieceOfSystemExclusivePassesWhatIsNoneOfItsBytes) {
    release();
    EXPECT_EQ(run({{1, {0xF0, 1, 0xF8, 2, 0xFA, 0xF7}}}), (Timed{{1, {0xF8}}, {1, {0xFA}}}));
    EXPECT_EQ(run({{1, {0xF0, 1, 0xB0, 7, 5}}}), (Timed{{1, {0xB0, 7, 5}}}));
    EXPECT_EQ(run({{1, {5, 0xFE, 0xF8}}, {2, {0xF7, 0x90, 60}}, {3, {0xF4, 1}}}),
              (Timed{{1, {0xFE}}, {1, {0xF8}}}));
    EXPECT_EQ(run({{1, {}}, {2, {0x90, 60, 0xF8, 1}}}), Timed{});
}

TEST_F(ProcessCycleTest, NothingGoesInOrOutUntilItIsReleased) {
    processor.setRules({rule(onLoad(), send(controlChange(0, 7, 5)))});
    EXPECT_EQ(run({{0, {0xC0, 1}}}, {true, 0}), Timed{});
    EXPECT_EQ(run({{0, {0xC0, 1}}}, {true, 16}), Timed{});
    EXPECT_EQ(run({{0, {0xC0, 1}}}, {true, 32}), Timed{});
    EXPECT_EQ(renderer.now(), 0);
    EXPECT_EQ(cycle.cycles(), 3U);
    EXPECT_EQ(heard, std::vector<std::string>{});
}

TEST_F(ProcessCycleTest, TheServerHasTwoCyclesToPutConnectionsInForce) {
    processor.setRules({rule(onLoad(), send(controlChange(0, 7, 5)))});
    cycle.release();
    EXPECT_EQ(run({}), Timed{});
    EXPECT_EQ(run({}), Timed{});
    EXPECT_EQ(run({}), (Timed{{0, {0xB0, 7, 5}}}));
    EXPECT_EQ(run({}), Timed{});
}

TEST_F(ProcessCycleTest, FinishingItEndsTheNotesThatSoundAndHearsNothingMore) {
    processor.setRules({rule(onNoteOn(), send(noteOn(1, 61, 1), 20))});
    release();
    run({{0, {0x90, 60, 1}}, {1, {0xB0, 64, 127}}});
    cycle.finish();
    EXPECT_EQ(run({{0, {0x90, 70, 1}}}), (Timed{{0, {0x80, 60, 64}}, {0, {0xB0, 64, 0}}}));
    EXPECT_FALSE(cycle.isFinished());
    EXPECT_EQ(run({{0, {0x90, 70, 1}}}), Timed{});
    EXPECT_TRUE(cycle.isFinished());
    EXPECT_EQ(run({}), Timed{});
    EXPECT_EQ(run({}), Timed{});
}

TEST_F(ProcessCycleTest, HeldAfterItHasFinishedItCanBeginAnew) {
    release();
    cycle.finish();
    run({});
    run({});
    EXPECT_TRUE(cycle.isFinished());
    cycle.hold();
    EXPECT_FALSE(cycle.isFinished());
    release();
    EXPECT_EQ(run({{0, {0x90, 70, 1}}}), (Timed{{0, {0x90, 70, 1}}}));
}

TEST_F(ProcessCycleTest, ItIsNotFinishedWhileThereIsNoRoomForTheEndOfANote) {
    release();
    run({{0, {0x90, 60, 1}}, {0, {0x90, 61, 1}}});
    out.mostMessages = 0;
    cycle.finish();
    EXPECT_EQ(run({}), Timed{});
    EXPECT_EQ(run({}), Timed{});
    EXPECT_FALSE(cycle.isFinished());
    out.mostMessages = 1;
    EXPECT_EQ(run({}), (Timed{{0, {0x80, 60, 64}}}));
    EXPECT_EQ(run({}), (Timed{{0, {0x80, 61, 64}}}));
    EXPECT_EQ(run({}), Timed{});
    EXPECT_TRUE(cycle.isFinished());
}

TEST_F(ProcessCycleTest, TheMessageOfThePanicIsOneAndIsHeardByNoRule) {
    constexpr std::array<std::uint8_t, 2> message{0xBF, 80};
    cycle.setPanicMessage(message);
    release();
    EXPECT_EQ(run({{0, {0x90, 60, 1}}, {2, {0xBF, 81, 1}}, {3, {0xBF, 80, 127}}, {4, {0xC0, 1}}}),
              (Timed{{0, {0x90, 60, 1}}, {2, {0xBF, 81, 1}}, {4, {0xC0, 1}}}));
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] 90 3c 01", "[2] bf 51 01", "[4] c0 01"}));
    EXPECT_EQ(run({}).front(), (std::pair{0U, Bytes{0x80, 60, 64}}));
    EXPECT_EQ(renderer.requests().takeAnswer(), (PanicResult{1, 0, 0}));
    EXPECT_EQ(run({{0, {0xF8}}}), (Timed{{0, {0xF8}}}));
}

TEST_F(ProcessCycleTest, HeldAgainItStandsStillAndGoesOnWhereItWas) {
    processor.setRules({rule(onNoteOn(), send(controlChange(0, 7, 1), 20))});
    release();
    run({{0, {0x90, 60, 1}}});
    cycle.hold();
    EXPECT_EQ(run({{0, {0xC0, 1}}}), Timed{});
    EXPECT_EQ(run({}), Timed{});
    release();
    EXPECT_EQ(out.written, Timed{});
    EXPECT_EQ(run({}), (Timed{{4, {0xB0, 7, 1}}}));
}

}  // namespace
}  // namespace quillo
