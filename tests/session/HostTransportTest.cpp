// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/HostTransport.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

using State = HostTransport::State;
using Trigger = HostTransportTriggerVariantsV2;
using Change = std::optional<Trigger>;

constexpr State moving{.isMoving = true};
constexpr State standing{};
constexpr Change none;

/// What a transport makes of a report that is the only one of its time.
template <class... Position>
Change changeOf(HostTransport& transport, State state, Position... position) {
    transport.report(state, position...);
    return transport.takeChange();
}

/// One that moves, from this position on, and has passed so many frames.
HostTransport movingFrom(double position, std::uint32_t frames, HostTransport transport = HostTransport()) {
    changeOf(transport, moving, position);
    transport.advance(frames);
    return transport;
}

TEST(HostTransport, StandsStillAtTheBeginningUntilItIsReportedOtherwise) {
    HostTransport transport;
    EXPECT_FALSE(transport.isMoving());
    EXPECT_EQ(transport.position(), 0.0);
    EXPECT_EQ(transport.takeChange(), none);
    EXPECT_EQ(changeOf(transport, standing, 0.0), none);
}

TEST(HostTransport, StartsAtTheBeginningOrBeforeItAndContinuesBehindIt) {
    for (const auto& [position, change] :
         {std::pair(0.0, Trigger::Start), {-100.0, Trigger::Start}, {0.5, Trigger::Continue}}) {
        HostTransport transport;
        EXPECT_EQ(changeOf(transport, moving, position), change) << position;
    }
}

TEST(HostTransport, AChangeIsTakenOnce) {
    HostTransport transport;
    EXPECT_EQ(changeOf(transport, moving, 0.0), Trigger::Start);
    EXPECT_EQ(transport.takeChange(), none);
    EXPECT_EQ(changeOf(transport, moving, 0.0), none);
}

TEST(HostTransport, StopsWherever) {
    auto transport = movingFrom(1000.0, 512);
    EXPECT_EQ(changeOf(transport, standing, 77.0), Trigger::Stop);
    EXPECT_EQ(transport.position(), 77.0);
}

TEST(HostTransport, MovesOnWithTheFramesBetweenTwoReports) {
    const auto transport = movingFrom(1000.0, 512);
    EXPECT_TRUE(transport.isMoving());
    EXPECT_EQ(transport.position(), 1512.0);
}

TEST(HostTransport, StaysWhereItIsWhileItStandsStill) {
    HostTransport transport;
    changeOf(transport, standing, 1000.0);
    transport.advance(512);
    EXPECT_EQ(transport.position(), 1000.0);
}

TEST(HostTransport, APositionAsExpectedIsNoChange) {
    auto transport = movingFrom(-752.0, 752);
    EXPECT_EQ(changeOf(transport, moving, 0.0), none);
}

TEST(HostTransport, EachJumpWhileItMovesIsOneChange) {
    auto transport = movingFrom(0.0, 100);
    EXPECT_EQ(changeOf(transport, moving, 50.0), Trigger::Continue);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 150.0), none);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 0.0), Trigger::Start);
}

TEST(HostTransport, AJumpWhileItStandsStillIsNoChange) {
    HostTransport transport;
    EXPECT_EQ(changeOf(transport, standing, 500.0), none);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, standing, 9.0), none);
}

TEST(HostTransport, AJumpAsItStartsIsOneChangeWithTheStart) {
    HostTransport transport;
    changeOf(transport, standing, 500.0);
    EXPECT_EQ(changeOf(transport, moving, 9000.0), Trigger::Continue);
    EXPECT_EQ(transport.takeChange(), none);
}

TEST(HostTransport, SeveralJumpsAtOneTimeAreOneChange) {
    auto transport = movingFrom(0.0, 200);
    transport.report(moving, 5000.0);
    transport.report(moving, 9000.0);
    EXPECT_EQ(transport.takeChange(), Trigger::Continue);
    EXPECT_EQ(transport.position(), 9000.0);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 9100.0), none);
}

TEST(HostTransport, AJumpThatIsTakenBackAtTheSameTimeIsIgnored) {
    auto transport = movingFrom(0.0, 200);
    transport.report(moving, 5000.0);
    transport.report(moving, 200.0);
    EXPECT_EQ(transport.takeChange(), none);
}

TEST(HostTransport, AStopThatIsTakenBackAtTheSameTimeIsIgnored) {
    auto transport = movingFrom(0.0, 200);
    transport.report(standing);
    transport.report(moving);
    EXPECT_EQ(transport.takeChange(), none);
}

TEST(HostTransport, StoppingAndStartingElsewhereAtOneTimeIsAJump) {
    auto transport = movingFrom(1000.0, 100);
    transport.report(standing, 1100.0);
    transport.report(moving, 50000.0);
    EXPECT_EQ(transport.takeChange(), Trigger::Continue);
}

TEST(HostTransport, AReportThatContinuesIsNoJumpWhereverItLies) {
    auto transport = movingFrom(1000.0, 100);
    transport.reportContinued(moving, 2200.0);
    EXPECT_EQ(transport.takeChange(), none);
    EXPECT_EQ(transport.position(), 2200.0);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 2300.0), none);
}

TEST(HostTransport, AReportThatContinuesAJumpOfTheSameTimeLeavesItAJump) {
    auto transport = movingFrom(1000.0, 100);
    transport.report(moving, 5000.0);
    transport.reportContinued(moving, 5000.0);
    EXPECT_EQ(transport.takeChange(), Trigger::Continue);
}

TEST(HostTransport, AJumpHoldsWhenAReportWithoutAPositionFollows) {
    auto transport = movingFrom(1000.0, 100);
    transport.report(standing, 50000.0);
    transport.report(moving);
    EXPECT_EQ(transport.takeChange(), Trigger::Continue);
    EXPECT_EQ(transport.position(), 50000.0);
}

TEST(HostTransport, APositionThatAHostRoundsIsNoJump) {
    auto transport = movingFrom(0.0, 100, HostTransport(1.0));
    EXPECT_EQ(changeOf(transport, moving, 101.0), none);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 200.0), none);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 302.5), Trigger::Continue);
}

TEST(HostTransport, WithoutAPositionGoesOnFromTheOneThatIsKnown) {
    auto transport = movingFrom(100.0, 50);
    EXPECT_EQ(changeOf(transport, {.isMoving = true, .isRecording = true}), Trigger::Continue);
    EXPECT_EQ(changeOf(transport, standing), Trigger::Stop);
    transport.advance(50);
    EXPECT_EQ(transport.position(), 150.0);
}

TEST(HostTransport, RecordingAndCyclingThatBeginOrEndAreChanges) {
    HostTransport transport;
    EXPECT_EQ(changeOf(transport, {.isRecording = true}), Trigger::Stop);
    EXPECT_EQ(changeOf(transport, {.isMoving = true, .isRecording = true}), Trigger::Start);
    EXPECT_EQ(changeOf(transport, {.isMoving = true, .isCycling = true}), Trigger::Start);
    EXPECT_EQ(changeOf(transport, moving), Trigger::Start);
}

TEST(HostTransport, APositionAfterFramesThatWereNotRenderedIsNoJumpButTheNextMayBe) {
    auto transport = movingFrom(0.0, 100);
    transport.losePosition();
    transport.report(moving);
    EXPECT_EQ(changeOf(transport, moving, 9000.0), none);
    EXPECT_EQ(transport.position(), 9000.0);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 50.0), Trigger::Continue);
}

TEST(HostTransport, APositionThatWasLostIsNoJumpHoweverLateItIsReported) {
    auto transport = movingFrom(0.0, 100);
    transport.losePosition();
    EXPECT_EQ(changeOf(transport, moving), none);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 9000.0), none);
}

TEST(HostTransport, AJumpThatWasNotTakenBeforeThePositionIsLostStaysOne) {
    auto transport = movingFrom(0.0, 100);
    transport.report(moving, 9000.0);
    transport.advance(100);
    transport.losePosition();
    EXPECT_EQ(changeOf(transport, moving, 9100.0), Trigger::Continue);
    transport.losePosition();
    EXPECT_EQ(changeOf(transport, moving, 50.0), none);
}

TEST(HostTransport, WhatIsReportedFirstAfterItWasForgottenIsNoChange) {
    HostTransport transport;
    transport.forget();
    EXPECT_EQ(transport.takeChange(), none);
    EXPECT_EQ(changeOf(transport, moving, 5000.0), none);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 0.0), Trigger::Start);
    EXPECT_EQ(changeOf(transport, standing), Trigger::Stop);
}

TEST(HostTransport, WhereZeroStandsForLessComingFromBeforeTheBeginningIsNoJump) {
    auto transport = movingFrom(0.0, 100, HostTransport(0.0, HostTransport::Positions::noneBelowZero));
    EXPECT_EQ(changeOf(transport, moving, 0.0), none);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 48.0), none);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 148.0), none);
}

TEST(HostTransport, WhereZeroStandsForLessOtherJumpsAreJumpsAllTheSame) {
    auto transport = movingFrom(0.0, 100, HostTransport(0.0, HostTransport::Positions::noneBelowZero));
    EXPECT_EQ(changeOf(transport, moving, 101.0), Trigger::Continue);
    transport.advance(100);
    EXPECT_EQ(changeOf(transport, moving, 0.0), Trigger::Start);
}

TEST(HostTransport, WherePositionsBelowZeroAreReportedStandingAtZeroWhileItMovesIsAJump) {
    auto transport = movingFrom(0.0, 100);
    EXPECT_EQ(changeOf(transport, moving, 0.0), Trigger::Start);
}

TEST(HostTransport, WhatWasMissedIsNoChangeHoweverLateItIsReported) {
    auto transport = movingFrom(0.0, 100);
    transport.forget();
    EXPECT_EQ(transport.takeChange(), none);
    transport.report(HostTransport::State{});
    EXPECT_EQ(transport.takeChange(), none);
    transport.report(moving);
    EXPECT_EQ(transport.takeChange(), Trigger::Continue);
}

TEST(HostTransport, AtHalfTheSpeedHalfTheFramesPass) {
    HostTransport transport;
    transport.report(moving, 0.0, 0.5);
    ASSERT_EQ(transport.takeChange(), Trigger::Start);
    transport.advance(512);
    EXPECT_EQ(transport.position(), 256.0);
    transport.report(moving, 256.0, 0.5);
    EXPECT_EQ(transport.takeChange(), none);
}

}  // namespace
}  // namespace quillo
