// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/HostTransport.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

constexpr auto moving = AUHostTransportStateMoving;
constexpr auto changed = AUHostTransportStateChanged;

TEST(HostTransport, StandsStillAtTheBeginningUntilItIsToldOtherwise) {
    const HostTransport transport;
    EXPECT_EQ(transport.flags(), 0U);
    EXPECT_EQ(transport.position(), 0.0);
}

TEST(HostTransport, MovesOnWithTheFramesBetweenTwoTellings) {
    HostTransport transport;
    transport.tell(moving, 1000.0);
    transport.advance(512);
    EXPECT_EQ(transport.flags(), moving);
    EXPECT_EQ(transport.position(), 1512.0);
}

TEST(HostTransport, StaysWhereItIsWhileItStandsStill) {
    HostTransport transport;
    transport.tell(0, 1000.0);
    transport.advance(512);
    EXPECT_EQ(transport.position(), 1000.0);
}

TEST(HostTransport, APositionAsExpectedIsNoChange) {
    HostTransport transport;
    transport.tell(moving, -752.0);
    transport.advance(752);
    transport.tell(moving, 0.0);
    EXPECT_EQ(transport.flags(), moving);
}

TEST(HostTransport, EachJumpWhileItMovesIsOneChange) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.tell(moving, 50.0);
    EXPECT_EQ(transport.flags(), moving | changed);
    transport.advance(100);
    transport.tell(moving, 150.0);
    EXPECT_EQ(transport.flags(), moving | changed);
    transport.advance(100);
    transport.tell(moving, 50.0);
    EXPECT_EQ(transport.flags(), moving);
}

TEST(HostTransport, AJumpWhileItStandsStillOrAsItStartsIsNone) {
    HostTransport transport;
    transport.tell(0, 500.0);
    EXPECT_EQ(transport.flags(), 0U);
    transport.tell(moving, 9000.0);
    EXPECT_EQ(transport.flags(), moving);
}

TEST(HostTransport, StoppingLeavesNoFlagBehind) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.tell(moving, 500.0);
    ASSERT_EQ(transport.flags(), moving | changed);
    transport.tell(0, 500.0);
    EXPECT_EQ(transport.flags(), 0U);
}

TEST(HostTransport, SeveralJumpsBetweenTwoCyclesAreOneChange) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.advance(200);
    transport.tell(moving, 5000.0);
    transport.tell(moving, 9000.0);
    EXPECT_EQ(transport.flags(), moving | changed);
    EXPECT_EQ(transport.position(), 9000.0);
    transport.advance(100);
    transport.tell(moving, 9100.0);
    EXPECT_EQ(transport.flags(), moving | changed);
}

TEST(HostTransport, AJumpThatIsTakenBackBeforeTheNextCycleIsNone) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.advance(200);
    transport.tell(moving, 5000.0);
    transport.tell(moving, 200.0);
    EXPECT_EQ(transport.flags(), moving);
}

TEST(HostTransport, StoppingAndStartingElsewhereBetweenTwoCyclesIsAJump) {
    HostTransport transport;
    transport.tell(moving, 1000.0);
    transport.advance(100);
    transport.tell(0, 1100.0);
    transport.tell(moving, 50000.0);
    EXPECT_EQ(transport.flags(), moving | changed);
}

TEST(HostTransport, APositionThatFollowsIsNoJumpWhereverItLies) {
    HostTransport transport;
    transport.tell(moving, 1000.0);
    transport.advance(100);
    transport.follow(moving, 2200.0);
    EXPECT_EQ(transport.flags(), moving);
    EXPECT_EQ(transport.position(), 2200.0);
    transport.advance(100);
    transport.tell(moving, 2300.0);
    EXPECT_EQ(transport.flags(), moving);
}

TEST(HostTransport, APositionThatFollowsAJumpBeforeTheNextCycleLeavesItAJump) {
    HostTransport transport;
    transport.tell(moving, 1000.0);
    transport.advance(100);
    transport.tell(moving, 5000.0);
    transport.follow(moving, 5000.0);
    EXPECT_EQ(transport.flags(), moving | changed);
}

TEST(HostTransport, AJumpHoldsWhenFlagsWithoutAPositionFollow) {
    HostTransport transport;
    transport.tell(moving, 1000.0);
    transport.advance(100);
    transport.tell(0, 50000.0);
    transport.tell(moving);
    EXPECT_EQ(transport.flags(), moving | changed);
    EXPECT_EQ(transport.position(), 50000.0);
}

TEST(HostTransport, ThatWaitsForTheNextCycleIsShownAsItWasTold) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.wait(1);
    EXPECT_EQ(transport.position(), 0.0);
    transport.tell(moving, 1.0);
    EXPECT_EQ(transport.position(), 0.0);
    transport.advance(100);
    EXPECT_EQ(transport.position(), 101.0);
}

TEST(HostTransport, ThatWaitsForTheNextCycleAndIsToldToBeElsewhereIsShownThere) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.wait(1);
    transport.tell(moving, 48000.0);
    EXPECT_EQ(transport.position(), 48000.0);
    transport.tell(0, 500.0);
    EXPECT_EQ(transport.position(), 500.0);
}

TEST(HostTransport, APositionAsExpectedAfterWaitingIsNoChange) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.wait(1);
    transport.tell(moving, 101.0);
    EXPECT_EQ(transport.flags(), moving);
}

TEST(HostTransport, APositionThatAHostRoundsIsNoJump) {
    HostTransport transport(1.0);
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.tell(moving, 101.0);
    EXPECT_EQ(transport.flags(), moving);
    transport.advance(100);
    transport.tell(moving, 202.5);
    EXPECT_EQ(transport.flags(), moving | changed);
}

TEST(HostTransport, WithoutAPositionGoesOnFromTheOneThatIsKnown) {
    HostTransport transport;
    transport.tell(moving, 100.0);
    transport.advance(50);
    transport.tell(moving | AUHostTransportStateRecording);
    EXPECT_EQ(transport.flags(), moving | AUHostTransportStateRecording);
    transport.tell(0);
    transport.advance(50);
    EXPECT_EQ(transport.flags(), 0U);
    EXPECT_EQ(transport.position(), 150.0);
}

TEST(HostTransport, WithoutAPositionStoppingLeavesNoFlagBehind) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.tell(moving, 500.0);
    ASSERT_EQ(transport.flags(), moving | changed);
    transport.tell(0);
    EXPECT_EQ(transport.flags(), 0U);
}

TEST(HostTransport, APositionAfterFramesThatNobodyRenderedIsNoJumpButTheNextMayBe) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.lose();
    transport.tell(moving);
    transport.tell(moving, 9000.0);
    EXPECT_EQ(transport.flags(), moving);
    EXPECT_EQ(transport.position(), 9000.0);
    transport.advance(100);
    transport.tell(moving, 50.0);
    EXPECT_EQ(transport.flags(), moving | changed);
}

TEST(HostTransport, WhereZeroStandsForLessComingFromBeforeTheBeginningIsNoJump) {
    HostTransport transport(0.0, HostTransport::Positions::noneBelowZero);
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.tell(moving, 48.0);
    EXPECT_EQ(transport.flags(), moving);
    transport.advance(100);
    transport.tell(moving, 148.0);
    EXPECT_EQ(transport.flags(), moving);
}

TEST(HostTransport, WhereZeroStandsForLessOtherJumpsAreJumpsAllTheSame) {
    HostTransport transport(0.0, HostTransport::Positions::noneBelowZero);
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.tell(moving, 101.0);
    EXPECT_EQ(transport.flags(), moving | changed);
    transport.advance(100);
    transport.tell(moving, 0.0);
    EXPECT_EQ(transport.flags(), moving);
}

TEST(HostTransport, WherePositionsBelowZeroAreToldStandingAtZeroWhileItMovesIsAJump) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.tell(moving, 0.0);
    EXPECT_EQ(transport.flags(), moving | changed);
}

TEST(HostTransport, AtHalfTheSpeedHalfTheFramesPass) {
    HostTransport transport;
    transport.tell(moving, 0.0, 0.5);
    transport.advance(512);
    EXPECT_EQ(transport.position(), 256.0);
    transport.tell(moving, 256.0, 0.5);
    EXPECT_EQ(transport.flags(), moving);
}

TEST(HostTransport, RecordingAndCyclingArePassedOn) {
    HostTransport transport;
    transport.tell(moving | AUHostTransportStateRecording | AUHostTransportStateCycling, 10.0);
    EXPECT_EQ(transport.flags(), moving | AUHostTransportStateRecording | AUHostTransportStateCycling);
}

TEST(HostTransport, APositionThatWasLostIsNoJumpHoweverLateItIsTold) {
    HostTransport transport;
    transport.tell(moving, 0.0);
    transport.advance(100);
    transport.lose();
    transport.tell(moving);
    transport.advance(100);
    transport.tell(moving, 9000.0);
    EXPECT_EQ(transport.flags(), moving);
}

TEST(HostTransport, OfTwoPositionsAtOneTimeTheLastIsShownEvenWithinTheTolerance) {
    HostTransport transport(1.0);
    transport.tell(moving, 0.6);
    transport.tell(moving, 0.0);
    EXPECT_EQ(transport.position(), 0.0);
}

TEST(HostTransport, AStartWithoutAPositionIsShownWhereItWasTold) {
    HostTransport transport;
    transport.tell(0, 0.0);
    transport.advance(100);
    transport.tell(moving);
    transport.wait(1);
    transport.tell(moving);
    EXPECT_EQ(transport.position(), 0.0);
    transport.advance(100);
    EXPECT_EQ(transport.position(), 101.0);
}

}  // namespace
}  // namespace quillo
