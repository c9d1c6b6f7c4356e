// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/BlockRenderer.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "support/TestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Timed = std::vector<std::pair<std::uint32_t, Bytes>>;
using Room = BlockRenderer::Room;

constexpr auto moving = AUHostTransportStateMoving;

class BlockRendererTest : public testing::Test {
protected:
    BlockRendererTest() {
        unit->logInput = [this](const EventLogEntry& entry) { heard.push_back(text(entry)); };
    }

    Timed sent() {
        Timed result;
        for (const auto& message : renderer.outgoing().inTimeOrder()) {
            result.emplace_back(message.offset, copyOf(message.bytes));
        }
        return result;
    }

    /// What leaves in a block of so many frames with these messages.
    Timed block(std::uint32_t frames, const Timed& messages = {}) {
        renderer.begin(frames);
        for (const auto& [offset, bytes] : messages) {
            renderer.receive(offset, bytes);
        }
        EXPECT_EQ(renderer.end(), noErr);
        return sent();
    }

    std::shared_ptr<MIDIQuilloAUAudioUnit> unit = makeUnit();
    BlockRenderer renderer{*unit};
    std::vector<std::string> heard;
};

TEST_F(BlockRendererTest, OffsetsBecomeSampleTimesOfATimelineThatOnlyGrows) {
    EXPECT_EQ(block(64, {{10, {0x90, 60, 1}}}), (Timed{{10, {0x90, 60, 1}}}));
    EXPECT_EQ(block(32, {{0, {0x90, 61, 2}}, {31, {0x90, 62, 3}}}),
              (Timed{{0, {0x90, 61, 2}}, {31, {0x90, 62, 3}}}));
    EXPECT_EQ(heard, (std::vector<std::string>{"[10] 90 3c 01", "[64] 90 3d 02", "[95] 90 3e 03"}));
    EXPECT_EQ(renderer.now(), 96);
}

TEST_F(BlockRendererTest, ADelayedOutputLeavesInTheBlockThatHoldsItsTime) {
    unit->processor->sampleRate = 1000;
    unit->processor->setRules({rule(onNoteOn(), send(noteOn(0, 61, 5), 20))});
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
    unit->processor->setRules({rule(onLoad(), send(controlChange(0, 7, 5)))});
    EXPECT_EQ(block(0), (Timed{{0, {0xB0, 7, 5}}}));
    EXPECT_EQ(block(0, {{0, {0xC0, 1}}}), (Timed{{0, {0xC0, 1}}}));
    EXPECT_EQ(renderer.now(), 0);
    EXPECT_EQ(block(16), Timed{});
}

TEST_F(BlockRendererTest, InABlockWithoutFramesWhatARuleSendsLeavesBeforeTheMessageThatItIsFor) {
    unit->processor->sampleRate = 1000;
    unit->processor->setRules(
        {rule(onNoteOn(), send(controlChange(0, 7, 5))), rule(onNoteOn(), send(controlChange(0, 7, 6), 1))});
    EXPECT_EQ(block(0, {{0, {0x90, 60, 1}}}), (Timed{{0, {0xB0, 7, 5}}, {0, {0x90, 60, 1}}}));
    EXPECT_EQ(block(0), Timed{});
    EXPECT_EQ(block(16), (Timed{{1, {0xB0, 7, 6}}}));
}

TEST_F(BlockRendererTest, OutputsThatTheUnitSendsOutOfOrderLeaveInTheOrderOfTime) {
    unit->processor->sampleRate = 1000;
    unit->processor->setRules({rule(onNoteOn(exactly(60)), send(controlChange(0, 7, 1), 8))});
    EXPECT_EQ(block(16, {{2, {0x90, 60, 1}}, {5, {0x90, 61, 1}}}),
              (Timed{{2, {0x90, 60, 1}}, {5, {0x90, 61, 1}}, {10, {0xB0, 7, 1}}}));
}

TEST_F(BlockRendererTest, TheTransportChangesWithinTheBlockAtItsOwnTime) {
    unit->processor->setRules(
        {rule(onHost(HostTransportTriggerVariantsV2::Start), send(controlChange(0, 7, 9)))});
    renderer.begin(64);
    renderer.receive(3, Bytes{0xC1, 1});
    renderer.tellTransport(20, moving, 0.0);
    renderer.receive(20, Bytes{0xC1, 2});
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(sent(), (Timed{{3, {0xC1, 1}}, {20, {0xB0, 7, 9}}, {20, {0xC1, 2}}}));
    EXPECT_EQ(heard, (std::vector<std::string>{"[3] c1 01", "[20] AU Host Start", "[20] c1 02"}));
}

TEST_F(BlockRendererTest, ATransportThatFollowsMessagesOfItsFrameChangesOneFrameLater) {
    unit->processor->setRules(
        {rule(onHost(HostTransportTriggerVariantsV2::Continue), send(controlChange(0, 7, 9)))});
    renderer.begin(64);
    renderer.receive(20, Bytes{0xC1, 1});
    renderer.tellTransport(20, moving, 100.0);
    renderer.receive(21, Bytes{0xC1, 2});
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(sent(), (Timed{{20, {0xC1, 1}}, {21, {0xB0, 7, 9}}, {21, {0xC1, 2}}}));
    EXPECT_EQ(renderer.transport().position(), 144.0);
}

TEST_F(BlockRendererTest, ATransportThatFollowsMessagesOfTheLastFrameChangesInTheNextBlock) {
    unit->processor->setRules(
        {rule(onHost(HostTransportTriggerVariantsV2::Start), send(controlChange(0, 7, 9)))});
    renderer.begin(64);
    renderer.receive(63, Bytes{0xC1, 1});
    renderer.tellTransport(63, moving, -1.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(sent(), (Timed{{63, {0xC1, 1}}}));
    EXPECT_EQ(block(64), (Timed{{0, {0xB0, 7, 9}}}));
}

TEST_F(BlockRendererTest, AStartAtTheBeginningThatFollowsMessagesOfItsFrameIsAStart) {
    renderer.begin(64);
    renderer.receive(20, Bytes{0xC1, 1});
    renderer.tellTransport(20, moving, 0.0);
    renderer.tellTransport(21, moving, 1.0);
    ASSERT_EQ(renderer.end(), noErr);
    renderer.begin(64);
    renderer.tellTransport(0, moving, 44.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[20] c1 01", "[21] AU Host Start"}));
}

TEST_F(BlockRendererTest, AStartWithoutAPositionThatFollowsMessagesOfItsFrameIsAStart) {
    renderer.begin(64);
    renderer.receive(20, Bytes{0xC1, 1});
    renderer.tellTransport(20, moving);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[20] c1 01", "[21] AU Host Start"}));
    EXPECT_EQ(renderer.transport().position(), 44.0);
}

TEST_F(BlockRendererTest, AStartAtTheBeginningThatFollowsMessagesOfTheLastFrameIsAStart) {
    renderer.begin(64);
    renderer.receive(63, Bytes{0xC1, 1});
    renderer.tellTransport(63, moving, 0.0);
    ASSERT_EQ(renderer.end(), noErr);
    renderer.begin(64);
    renderer.tellTransport(0, moving, 1.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[63] c1 01", "[64] AU Host Start"}));
    EXPECT_EQ(renderer.transport().position(), 65.0);
}

TEST_F(BlockRendererTest, AStartAtTheBeginningThatFollowsMessagesOfABlockWithoutFramesIsAStart) {
    renderer.begin(0);
    renderer.receive(0, Bytes{0xC1, 1});
    renderer.tellTransport(0, moving, 0.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] c1 01", "[0] AU Host Start"}));
    EXPECT_EQ(renderer.transport().position(), 0.0);
}

TEST_F(BlockRendererTest, AJumpThatFollowsMessagesOfItsFrameIsHeardOnce) {
    renderer.begin(64);
    renderer.tellTransport(0, moving, 1000.0);
    renderer.receive(20, Bytes{0xC1, 1});
    renderer.tellTransport(20, moving, 5000.0);
    renderer.receive(30, Bytes{0xC1, 2});
    renderer.tellTransport(30, moving, 5010.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue", "[20] c1 01", "[21] AU Host Continue",
                                               "[30] c1 02"}));
}

TEST_F(BlockRendererTest, JumpsAtOneFrameAreHeardOnce) {
    renderer.begin(64);
    renderer.tellTransport(0, moving, 1000.0);
    renderer.tellTransport(20, moving, 5000.0);
    renderer.tellTransport(20, moving, 9000.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue", "[20] AU Host Continue"}));
}

TEST_F(BlockRendererTest, ATransportThatStopsAndStartsElsewhereAtOneFrameIsHeardToGoOn) {
    renderer.begin(64);
    renderer.tellTransport(0, moving, 1000.0);
    renderer.tellTransport(20, 0, 1020.0);
    renderer.tellTransport(20, moving, 50000.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue", "[20] AU Host Continue"}));
}

TEST_F(BlockRendererTest, ATransportBehindMoreEventsOfItsFrameThanACycleHoldsDoesNotJump) {
    renderer.begin(64);
    renderer.tellTransport(0, moving, 1000.0);
    for (std::size_t i = 0; i < BlockRenderer::incomingCapacity + 5; ++i) {
        renderer.receive(20, Bytes{0xF0, 0xF7});
    }
    renderer.tellTransport(20, moving, 1020.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue"}));
    EXPECT_EQ(renderer.transport().position(), 1064.0);
}

TEST_F(BlockRendererTest, ATransportWithoutAPositionGoesOnFromTheOneThatIsKnown) {
    renderer.begin(64);
    renderer.tellTransport(0, moving, 1000.0);
    renderer.tellTransport(40, 0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Continue", "[40] AU Host Stop"}));
    EXPECT_EQ(renderer.transport().position(), 1040.0);
}

TEST_F(BlockRendererTest, ATransportThatWasLostIsFoundWithoutAJump) {
    renderer.begin(64);
    renderer.tellTransport(0, moving, 0.0);
    ASSERT_EQ(renderer.end(), noErr);
    renderer.loseTransport();
    renderer.begin(64);
    renderer.tellTransport(0, moving, 5000.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard, (std::vector<std::string>{"[0] AU Host Start"}));
}

TEST_F(BlockRendererTest, ATransportThatTheUnitForgotIsTakenAsItIsFound) {
    unit->forgetTransport();
    for (const auto flags : {moving, moving, AUHostTransportStateFlags{0}}) {
        renderer.begin(64);
        renderer.tellTransport(0, flags);
        ASSERT_EQ(renderer.end(), noErr);
    }
    EXPECT_EQ(heard, (std::vector<std::string>{"[128] AU Host Stop"}));
}

TEST_F(BlockRendererTest, StopAndStartInOneBlockAreTwoChanges) {
    renderer.begin(64);
    renderer.tellTransport(0, moving, 0.0);
    ASSERT_EQ(renderer.end(), noErr);
    renderer.begin(64);
    renderer.tellTransport(10, 0, 74.0);
    renderer.tellTransport(30, moving, 74.0);
    ASSERT_EQ(renderer.end(), noErr);
    EXPECT_EQ(heard,
              (std::vector<std::string>{"[0] AU Host Start", "[74] AU Host Stop", "[94] AU Host Continue"}));
}

TEST_F(BlockRendererTest, AMessageWithoutRoomIsRefusedAndEndsTheCycle) {
    std::vector<std::uint32_t> asked;
    renderer.setAsk(WithoutDeadline([&](std::uint32_t offset, std::span<const std::uint8_t>) {
        asked.push_back(offset);
        return asked.size() < 2 ? Room::enough : Room::full;
    }));
    renderer.begin(64);
    for (const auto offset : {1U, 2U, 3U}) {
        renderer.receive(offset, Bytes{0xC0, 1});
    }
    EXPECT_EQ(renderer.end(), kQuilloErr_OutputFull);
    EXPECT_EQ(sent(), (Timed{{1, {0xC0, 1}}}));
    EXPECT_EQ(asked, (std::vector<std::uint32_t>{1, 2}));
}

TEST_F(BlockRendererTest, AfterARefusalTheNextBlockIsRenderedAsEver) {
    renderer.setAsk([](std::uint32_t, std::span<const std::uint8_t>) { return Room::full; });
    renderer.begin(64);
    renderer.receive(1, Bytes{0xC0, 1});
    EXPECT_EQ(renderer.end(), kQuilloErr_OutputFull);
    renderer.setAsk({});
    EXPECT_EQ(block(64, {{2, {0xC0, 2}}}), (Timed{{2, {0xC0, 2}}}));
    EXPECT_EQ(renderer.now(), 128);
}

/// Else the note would sound on, each time.
TEST_F(BlockRendererTest, SystemExclusiveThatNeverHasRoomIsLeftOutAndTakesNothingWithIt) {
    unit->processor->setRules({rule(onNoteOff(), send(systemExclusive({1, 2, 3})), "dump")});
    renderer.setAsk([](std::uint32_t, std::span<const std::uint8_t> bytes) {
        return bytes.size() > 4 ? Room::never : Room::enough;
    });
    EXPECT_EQ(block(16, {{1, {0x80, 60, 0}}, {2, {0x90, 61, 1}}}),
              (Timed{{1, {0x80, 60, 0}}, {2, {0x90, 61, 1}}}));
    EXPECT_EQ(renderer.refused().count(), 1U);
    const auto refused = renderer.refused().takeNext();
    ASSERT_TRUE(refused.has_value());
    EXPECT_TRUE(refused->fitsNever);
    EXPECT_TRUE(refused->matches(Bytes{0xF0, 1, 2, 3, 0xF7}));
}

TEST_F(BlockRendererTest, SystemExclusiveThatIsLongerThanABlockNeverHasRoom) {
    unit->processor->setRules({rule(onNoteOn(), send(systemExclusive(Bytes(BlockRenderer::outgoingBytes))))});
    EXPECT_EQ(block(16, {{1, {0x90, 60, 1}}}), (Timed{{1, {0x90, 60, 1}}}));
    EXPECT_EQ(renderer.refused().count(), 1U);
}

TEST_F(BlockRendererTest, AShortMessageThatNeverHasRoomIsRefusedAsAnyOther) {
    renderer.setAsk([](std::uint32_t, std::span<const std::uint8_t>) { return Room::never; });
    renderer.begin(64);
    renderer.receive(1, Bytes{0xC0, 1});
    EXPECT_EQ(renderer.end(), kQuilloErr_OutputFull);
    EXPECT_EQ(renderer.refused().count(), 1U);
}

TEST_F(BlockRendererTest, MoreEventsThanACycleHoldsAllArriveAtTheirTimes) {
    Timed messages;
    for (std::size_t i = 0; i < 2 * BlockRenderer::incomingCapacity; ++i) {
        const auto offset = static_cast<std::uint32_t>(i / 1000);
        messages.push_back({offset, {0xC0, static_cast<std::uint8_t>(i % 128)}});
    }
    unit->logInput = LogCallback::Function();
    EXPECT_EQ(block(17, messages), messages);
    EXPECT_EQ(renderer.now(), 17);
}

TEST_F(BlockRendererTest, MoreEventsOnTheLastFrameThanACycleHoldsAllArrive) {
    const Timed messages(BlockRenderer::incomingCapacity + 5, {15, {0xC0, 1}});
    unit->logInput = LogCallback::Function();
    EXPECT_EQ(block(16, messages), messages);
}

TEST_F(BlockRendererTest, AUnitThatLosesItsRendererSendsNowhere) {
    auto block = unit->internalRenderBlock();
    {
        const BlockRenderer other(*unit);
    }
    RenderEventList events(1);
    ASSERT_TRUE(events.tryPushMIDI(0, Bytes{0xC0, 1}));
    EXPECT_EQ(block(AudioTimeStamp{0}, 16, events.head()), noErr);
    EXPECT_TRUE(sent().empty());
}

}  // namespace
}  // namespace quillo
