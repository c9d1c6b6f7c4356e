// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/BlockRenderer.hpp"

#include <gtest/gtest.h>

#include <utility>

#include "support/TestOutput.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Room = HostOutput::Room;
using Trigger = HostTransportTriggerVariantsV2;

constexpr HostTransport::State transportMoves{.isMoving = true};
constexpr HostTransport::State transportStands{};

class BlockRendererTest : public testing::Test {
protected:
    BlockRendererTest() {
        logInput = WithoutDeadline([this](const EventLogEntry& entry) { heard.push_back(text(entry)); });
        logOutput = WithoutDeadline([this](const EventLogEntry& entry) { told.push_back(text(entry)); });
    }

    void begin(std::uint32_t frames) { renderer.begin(frames, output); }

    /// What leaves in a block of so many frames with these messages.
    Timed block(std::uint32_t frames, const Timed& messages = {}) {
        begin(frames);
        for (const auto& [offset, bytes] : messages) {
            renderer.receive(offset, bytes);
        }
        EXPECT_EQ(renderer.end(), noErr);
        return output.take();
    }

    RuleProcessor processor;
    LogCallback logInput;
    LogCallback logOutput;
    BlockRenderer renderer{processor, logInput, logOutput, HostTransport()};
    TestOutput output;
    std::vector<std::string> heard;
    std::vector<std::string> told;
};

TEST_F(BlockRendererTest, OffsetsBecomeSampleTimesOfATimelineThatOnlyGrows) {
    EXPECT_EQ(block(64, {{10, {0x90, 60, 1}}}), (Timed{{10, {0x90, 60, 1}}}));
    EXPECT_EQ(block(32, {{0, {0x90, 61, 2}}, {31, {0x90, 62, 3}}}),
              (Timed{{0, {0x90, 61, 2}}, {31, {0x90, 62, 3}}}));
    EXPECT_EQ(heard, (std::vector<std::string>{"[10] 90 3c 01", "[64] 90 3d 02", "[95] 90 3e 03"}));
    EXPECT_EQ(renderer.now(), 96);
}

TEST_F(BlockRendererTest, BothLogsHearOfABlocksEndBehindItsLastEntry) {
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 61, 5)))});
    std::string calls;
    const auto noteEntry = [&calls](const EventLogEntry&) { calls += 'e'; };
    logInput.listen(noteEntry, [&calls] { calls += '<'; });
    logOutput.listen(noteEntry, [&calls] { calls += '>'; });
    block(16, {{3, {0x90, 60, 1}}});
    block(16);
    renderer.beginPassing(16, output, BlockRenderer::Delivery::asItComes);
    EXPECT_EQ(renderer.end(), noErr);
    EXPECT_EQ(calls, "eee<><><>");
}

TEST_F(BlockRendererTest, ADelayedOutputLeavesInTheBlockThatHoldsItsTime) {
    processor.sampleRate = 1000;
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 61, 5), 20))});
    EXPECT_EQ(block(16, {{3, {0x90, 60, 1}}}), (Timed{{3, {0x90, 60, 1}}}));
    EXPECT_EQ(block(7), Timed{});
    EXPECT_EQ(block(1), (Timed{{0, {0x90, 61, 5}}}));
}

TEST_F(BlockRendererTest, AMessageBehindTheBlockIsMovedToItsLastFrame) {
    EXPECT_EQ(block(16, {{16, {0xC0, 1}}, {4000000000U, {0xC0, 2}}}),
              (Timed{{15, {0xC0, 1}}, {15, {0xC0, 2}}}));
}

TEST_F(BlockRendererTest, MessagesThatGoBackInTimeKeepTheirOrder) {
    EXPECT_EQ(block(16, {{9, {0xC0, 1}}, {2, {0xC0, 2}}}), (Timed{{9, {0xC0, 1}}, {9, {0xC0, 2}}}));
}

TEST_F(BlockRendererTest, WhatIsNoCompleteMessageIsLeftOut) {
    const Timed incomplete{{1, {}},
                           {1, {60, 100}},
                           {2, {0x90, 60}},
                           {2, {0xC0}},
                           {2, {0x90, 60, 0x90}},
                           {3, {0x90, 60, 1, 0x90}},
                           {3, {0xC0, 1, 2}},
                           {3, {0xF4}}};
    EXPECT_EQ(block(16, incomplete), Timed());
    EXPECT_EQ(heard, std::vector<std::string>());
    EXPECT_EQ(block(16, {{4, {0xFA}}, {4, {0xC0, 1}}}), (Timed{{4, {0xFA}}, {4, {0xC0, 1}}}));
}

TEST_F(BlockRendererTest, SystemExclusiveIsNotSeenByTheRules) {
    EXPECT_EQ(block(16, {{1, {0xF0, 1, 2, 0xF7}}, {1, {0xC0, 1}}}), (Timed{{1, {0xC0, 1}}}));
    EXPECT_EQ(heard, (std::vector<std::string>{"[1] c0 01"}));
}

TEST_F(BlockRendererTest, ABlockWithoutFramesIsNoHarm) {
    processor.setRules({rule(onLoad(), send(controlChange(0, 7, 5)))});
    EXPECT_EQ(block(0), (Timed{{0, {0xB0, 7, 5}}}));
    EXPECT_EQ(block(0, {{0, {0xC0, 1}}}), (Timed{{0, {0xC0, 1}}}));
    EXPECT_EQ(renderer.now(), 0);
    EXPECT_EQ(block(16), Timed{});
}

TEST_F(BlockRendererTest, InABlockWithoutFramesWhatARuleSendsLeavesBeforeTheMessageThatItIsFor) {
    processor.sampleRate = 1000;
    processor.setRules(
        {rule(onNoteOn(), send(controlChange(0, 7, 5))), rule(onNoteOn(), send(controlChange(0, 7, 6), 1))});
    EXPECT_EQ(block(0, {{0, {0x90, 60, 1}}}), (Timed{{0, {0xB0, 7, 5}}, {0, {0x90, 60, 1}}}));
    EXPECT_EQ(block(0), Timed{});
    EXPECT_EQ(block(16), (Timed{{1, {0xB0, 7, 6}}}));
}

TEST_F(BlockRendererTest, OutputsThatTheRulesSendOutOfOrderLeaveInTheOrderOfTime) {
    processor.sampleRate = 1000;
    processor.setRules({rule(onNoteOn(exactly(60)), send(controlChange(0, 7, 1), 8))});
    EXPECT_EQ(block(16, {{2, {0x90, 60, 1}}, {5, {0x90, 61, 1}}}),
              (Timed{{2, {0x90, 60, 1}}, {5, {0x90, 61, 1}}, {10, {0xB0, 7, 1}}}));
}

TEST_F(BlockRendererTest, TheTransportChangesWithinTheBlockAtItsOwnTime) {
    processor.setRules({rule(onHost(Trigger::Start), send(controlChange(0, 7, 9)))});
    begin(64);
    renderer.receive(3, Bytes{0xC1, 1});
    renderer.reportTransport(20, transportMoves, 0.0);
    renderer.receive(20, Bytes{0xC1, 2});
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(output.take(), (Timed{{3, {0xC1, 1}}, {20, {0xB0, 7, 9}}, {20, {0xC1, 2}}}));
    EXPECT_EQ(heard, (std::vector<std::string>{"[3] c1 01", "[20] AU Host Start", "[20] c1 02"}));
}

TEST_F(BlockRendererTest, ATransportThatFollowsMessagesOfItsFrameChangesBehindThem) {
    processor.setRules({rule(onHost(Trigger::Continue), send(controlChange(0, 7, 9)))});
    begin(64);
    renderer.receive(20, Bytes{0xC1, 1});
    renderer.reportTransport(20, transportMoves, 100.0);
    renderer.receive(20, Bytes{0xC1, 2});
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(output.take(), (Timed{{20, {0xC1, 1}}, {20, {0xB0, 7, 9}}, {20, {0xC1, 2}}}));
    EXPECT_EQ(renderer.transport().position(), 144.0);
}

TEST_F(BlockRendererTest, ATransportThatFollowsMessagesOfTheLastFrameChangesThere) {
    processor.setRules({rule(onHost(Trigger::Start), send(controlChange(0, 7, 9)))});
    begin(64);
    renderer.receive(63, Bytes{0xC1, 1});
    renderer.reportTransport(63, transportMoves, -1.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(output.take(), (Timed{{63, {0xC1, 1}}, {63, {0xB0, 7, 9}}}));
    EXPECT_EQ(block(64), Timed{});
}

TEST_F(BlockRendererTest, AStartAtTheBeginningThatFollowsMessagesOfItsFrameIsAStart) {
    begin(64);
    renderer.receive(20, Bytes{0xC1, 1});
    renderer.reportTransport(20, transportMoves, 0.0);
    renderer.reportTransport(21, transportMoves, 1.0);
    ASSERT_EQ(renderer.end(), noErr);
    begin(64);
    renderer.reportTransport(0, transportMoves, 44.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[20] c1 01", "[20] AU Host Start"}));
}

TEST_F(BlockRendererTest, AStartWithoutAPositionThatFollowsMessagesOfItsFrameIsAStart) {
    begin(64);
    renderer.receive(20, Bytes{0xC1, 1});
    renderer.reportTransport(20, transportMoves);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[20] c1 01", "[20] AU Host Start"}));
    EXPECT_EQ(renderer.transport().position(), 44.0);
}

TEST_F(BlockRendererTest, AStartAtTheBeginningThatFollowsMessagesOfTheLastFrameIsAStart) {
    begin(64);
    renderer.receive(63, Bytes{0xC1, 1});
    renderer.reportTransport(63, transportMoves, 0.0);
    ASSERT_EQ(renderer.end(), noErr);
    begin(64);
    renderer.reportTransport(0, transportMoves, 1.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[63] c1 01", "[63] AU Host Start"}));
    EXPECT_EQ(renderer.transport().position(), 65.0);
}

TEST_F(BlockRendererTest, AStartAtTheBeginningThatFollowsMessagesOfABlockWithoutFramesIsAStart) {
    begin(0);
    renderer.receive(0, Bytes{0xC1, 1});
    renderer.reportTransport(0, transportMoves, 0.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] c1 01", "[0] AU Host Start"}));
    EXPECT_EQ(renderer.transport().position(), 0.0);
}

TEST_F(BlockRendererTest, AJumpThatFollowsMessagesOfItsFrameIsHeardOnce) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 1000.0);
    renderer.receive(20, Bytes{0xC1, 1});
    renderer.reportTransport(20, transportMoves, 5000.0);
    renderer.receive(30, Bytes{0xC1, 2});
    renderer.reportTransport(30, transportMoves, 5010.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue", "[20] c1 01", "[20] AU Host Continue",
                                               "[30] c1 02"}));
}

TEST_F(BlockRendererTest, JumpsAtOneFrameAreHeardOnce) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 1000.0);
    renderer.reportTransport(20, transportMoves, 5000.0);
    renderer.reportTransport(20, transportMoves, 9000.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue", "[20] AU Host Continue"}));
}

TEST_F(BlockRendererTest, ATransportThatStopsAndStartsElsewhereAtOneFrameIsHeardToGoOn) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 1000.0);
    renderer.reportTransport(20, transportStands, 1020.0);
    renderer.reportTransport(20, transportMoves, 50000.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue", "[20] AU Host Continue"}));
}

TEST_F(BlockRendererTest, ATransportBehindManyEventsOfItsFrameDoesNotJump) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 1000.0);
    for (std::size_t i = 0; i < 10000; ++i) {
        renderer.receive(20, Bytes{0xF0, 0xF7});
    }
    renderer.reportTransport(20, transportMoves, 1020.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue"}));
    EXPECT_EQ(renderer.transport().position(), 1064.0);
}

TEST_F(BlockRendererTest, ATransportWithoutAPositionGoesOnFromTheOneThatIsKnown) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 1000.0);
    renderer.reportTransport(40, transportStands);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue", "[40] AU Host Stop"}));
    EXPECT_EQ(renderer.transport().position(), 1040.0);
}

TEST_F(BlockRendererTest, ATransportThatIsReportedToHaveContinuedDoesNotJump) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 1000.0);
    renderer.reportTransportContinued(20, transportMoves, 5000.0, 2.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue"}));
    EXPECT_EQ(renderer.transport().position(), 5088.0);
}

TEST_F(BlockRendererTest, ATransportThatWasLostIsFoundWithoutAJump) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 0.0);
    ASSERT_EQ(renderer.end(), noErr);
    renderer.losePosition();
    begin(64);
    renderer.reportTransport(0, transportMoves, 5000.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Start"}));
}

TEST_F(BlockRendererTest, ATransportThatWasForgottenIsTakenAsItIsFound) {
    renderer.forgetTransport();
    for (const auto& state : {transportMoves, transportMoves, transportStands}) {
        begin(64);
        renderer.reportTransport(0, state);
        ASSERT_EQ(renderer.end(), noErr);
    }
    EXPECT_EQ(heard, (std::vector<std::string>{"[128] AU Host Stop"}));
}

TEST_F(BlockRendererTest, StopAndStartInOneBlockAreTwoChanges) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 0.0);
    ASSERT_EQ(renderer.end(), noErr);
    begin(64);
    renderer.reportTransport(10, transportStands, 74.0);
    renderer.reportTransport(30, transportMoves, 74.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard,
              (std::vector<std::string>{"[0] AU Host Start", "[74] AU Host Stop", "[94] AU Host Continue"}));
}

TEST_F(BlockRendererTest, AMessageWithoutRoomIsRefusedAndEndsTheCycle) {
    int asked = 0;
    output.room = [&](std::span<const std::uint8_t>, const HostOutput::Waiting&) {
        return ++asked < 2 ? Room::enough : Room::full;
    };
    begin(64);
    for (const auto offset : {1U, 2U, 3U}) {
        renderer.receive(offset, Bytes{0xC0, 1});
    }
    renderer.reportTransport(4, transportMoves, 0.0);
    EXPECT_EQ(renderer.end(), kQuilloErr_OutputFull);
    EXPECT_EQ(output.take(), (Timed{{1, {0xC0, 1}}}));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(heard, (std::vector<std::string>{"[1] c0 01", "[2] c0 01"}));
    EXPECT_EQ(told, (std::vector<std::string>{"[1] c0 01"}));
    EXPECT_EQ(renderer.refused().refused(), 1U);
}

/// A rule that silences everything at a stop must not miss it.
TEST_F(BlockRendererTest, AChangeOfTheTransportInABlockThatWasRefusedIsHeardInTheNext) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 0.0);
    ASSERT_EQ(renderer.end(), noErr);
    const auto roomy =
        std::exchange(output.room, [](HostOutput::Bytes, const HostOutput::Waiting&) { return Room::full; });
    begin(64);
    renderer.receive(1, Bytes{0xC0, 1});
    renderer.reportTransport(2, transportStands, 66.0);
    EXPECT_EQ(renderer.end(), kQuilloErr_OutputFull);
    output.room = roomy;
    EXPECT_EQ(block(64), Timed{});
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Start", "[65] c0 01", "[128] AU Host Stop"}));
}

TEST_F(BlockRendererTest, AJumpInABlockThatWasRefusedIsHeardInTheNextAndOnce) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 0.0);
    ASSERT_EQ(renderer.end(), noErr);
    const auto roomy =
        std::exchange(output.room, [](HostOutput::Bytes, const HostOutput::Waiting&) { return Room::full; });
    begin(64);
    renderer.receive(1, Bytes{0xC0, 1});
    renderer.reportTransport(2, transportMoves, 5000.0);
    EXPECT_EQ(renderer.end(), kQuilloErr_OutputFull);
    output.room = roomy;
    for (const auto position : {5062.0, 5126.0}) {
        begin(64);
        renderer.reportTransport(0, transportMoves, position);
        ASSERT_EQ(renderer.end(), noErr);
    }
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Start", "[65] c0 01", "[128] AU Host Continue"}));
}

TEST_F(BlockRendererTest, WhatIsLeftOutDoesNotPartTheReportsOfItsFrame) {
    begin(64);
    renderer.reportTransport(0, transportMoves, 0.0);
    renderer.reportTransport(20, transportStands, 20.0);
    renderer.receive(20, Bytes{0xF0, 1, 0xF7});
    renderer.receive(20, Bytes{0x90, 60});
    renderer.reportTransport(20, transportMoves, 20.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Start"}));
}

TEST_F(BlockRendererTest, AfterARefusalTheNextBlockIsRenderedAsEver) {
    const auto roomy = std::exchange(
        output.room, [](std::span<const std::uint8_t>, const HostOutput::Waiting&) { return Room::full; });
    begin(64);
    renderer.receive(1, Bytes{0xC0, 1});
    EXPECT_EQ(renderer.end(), kQuilloErr_OutputFull);
    output.room = roomy;
    EXPECT_EQ(block(64, {{2, {0xC0, 2}}}), (Timed{{2, {0xC0, 2}}}));
    EXPECT_EQ(renderer.now(), 128);
}

/// Else the note would sound on, each time.
TEST_F(BlockRendererTest, SystemExclusiveThatNeverHasRoomIsLeftOutAndTakesNothingWithIt) {
    processor.setRules({rule(onNoteOff(), send(systemExclusive({1, 2, 3})), "dump")});
    output.room = [](std::span<const std::uint8_t> bytes, const HostOutput::Waiting&) {
        return bytes.size() > 4 ? Room::never : Room::enough;
    };
    EXPECT_EQ(block(16, {{1, {0x80, 60, 0}}, {2, {0x90, 61, 1}}}),
              (Timed{{1, {0x80, 60, 0}}, {2, {0x90, 61, 1}}}));
    EXPECT_EQ(renderer.refused().leftOut(), 1U);
    EXPECT_EQ(told, (std::vector<std::string>{"[1] 80 3c 00", "[2] 90 3d 01"}));
    const auto refused = renderer.refused().takeNext();
    ASSERT_TRUE(refused.has_value());
    EXPECT_TRUE(refused->fitsNever);
    EXPECT_TRUE(refused->matches(Bytes{0xF0, 1, 2, 3, 0xF7}));
}

TEST_F(BlockRendererTest, SystemExclusiveThatIsLongerThanABlockNeverHasRoom) {
    processor.setRules({rule(onNoteOn(), send(systemExclusive(Bytes(MessageStore::mostBytes))))});
    EXPECT_EQ(block(16, {{1, {0x90, 60, 1}}}), (Timed{{1, {0x90, 60, 1}}}));
    EXPECT_EQ(renderer.refused().leftOut(), 1U);
}

TEST_F(BlockRendererTest, AShortMessageThatNeverHasRoomIsRefusedAsAnyOther) {
    output.room = [](std::span<const std::uint8_t>, const HostOutput::Waiting&) { return Room::never; };
    begin(64);
    renderer.receive(1, Bytes{0xC0, 1});
    EXPECT_EQ(renderer.end(), kQuilloErr_OutputFull);
    EXPECT_EQ(renderer.refused().refused(), 1U);
}

TEST_F(BlockRendererTest, WhatWaitsForALaterFrameHasItsRoom) {
    processor.sampleRate = 1000;
    processor.setRules({rule(onNoteOn(), send(controlChange(0, 7, 1), 8))});
    std::vector<std::size_t> waiting;
    output.room = [&](std::span<const std::uint8_t>, const HostOutput::Waiting& now) {
        waiting.push_back(now.messages);
        EXPECT_EQ(now.bytes, 8 * now.messages);
        return Room::enough;
    };
    EXPECT_EQ(block(16, {{2, {0x90, 60, 1}}, {10, {0xC0, 1}}}),
              (Timed{{2, {0x90, 60, 1}}, {10, {0xB0, 7, 1}}, {10, {0xC0, 1}}}));
    EXPECT_EQ(waiting, (std::vector<std::size_t>{0, 1, 0}));
}

TEST_F(BlockRendererTest, AMessageThatPassesIsSeenByNoRuleAndLeavesBehindWhatIsDue) {
    processor.sampleRate = 1000;
    processor.setRules({rule(onNoteOn(), send(controlChange(0, 7, 1), 8))});
    block(4, {{2, {0x90, 60, 1}}});
    heard.clear();
    begin(16);
    renderer.pass(6, Bytes{0x90, 60, 1});
    renderer.pass(6, Bytes{0xF0, 1, 0xF7});
    EXPECT_EQ(renderer.end(), noErr);
    EXPECT_EQ(output.take(), (Timed{{6, {0xB0, 7, 1}}, {6, {0x90, 60, 1}}, {6, {0xF0, 1, 0xF7}}}));
    EXPECT_TRUE(heard.empty());
}

TEST_F(BlockRendererTest, InABlockInWhichMessagesOnlyPassTimeStandsStillAndNoRuleLoads) {
    processor.setRules({rule(onLoad(), send(controlChange(0, 7, 5)))});
    renderer.beginPassing(16, output, BlockRenderer::Delivery::asItComes);
    renderer.pass(3, Bytes{0x90, 60, 1});
    EXPECT_EQ(renderer.end(), noErr);
    EXPECT_EQ(output.take(), (Timed{{3, {0x90, 60, 1}}}));
    EXPECT_EQ(renderer.now(), 0);
    EXPECT_EQ(block(16), (Timed{{0, {0xB0, 7, 5}}}));
}

TEST_F(BlockRendererTest, WhereTheOutputIsTheInputsBufferNothingIsWrittenBeforeTheEnd) {
    processor.setRules({rule(onNoteOn(), send(controlChange(0, 7, 1)))});
    renderer.begin(16, output, BlockRenderer::Delivery::atTheEnd);
    renderer.receive(2, Bytes{0x90, 60, 1});
    renderer.receive(9, Bytes{0x80, 60, 1});
    EXPECT_TRUE(output.sent.empty());
    EXPECT_EQ(renderer.end(), noErr);
    EXPECT_EQ(output.take(), (Timed{{2, {0xB0, 7, 1}}, {2, {0x90, 60, 1}}, {9, {0x80, 60, 1}}}));
}

}  // namespace
}  // namespace quillo
