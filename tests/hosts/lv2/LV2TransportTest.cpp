// SPDX-License-Identifier: GPL-3.0-or-later
// What the rules hear of the host's transport.
#include <gtest/gtest.h>

#include "hosts/lv2/LV2TestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

/// What a transport rule sends: which of them, and when it was sent.
using Heard = std::vector<std::pair<SampleTime, std::uint8_t>>;
constexpr std::uint8_t starts = 20;
constexpr std::uint8_t continues = 21;
constexpr std::uint8_t stops = 22;

class LV2Transport : public testing::Test {
protected:
    LV2Transport() {
        using Trigger = HostTransportTriggerVariantsV2;
        host.loadRules({rule(onHost(Trigger::Start), send(controlChange(0, starts, 1))),
                        rule(onHost(Trigger::Continue), send(controlChange(0, continues, 1))),
                        rule(onHost(Trigger::Stop), send(controlChange(0, stops, 1)))});
        host.activate();
    }

    Heard heard() {
        Heard result;
        for (const auto& message : host.take()) {
            result.emplace_back(message.time, message.bytes.at(1));
        }
        return result;
    }

    /// A block of 100 frames in which this is told at its start.
    void tell(std::optional<double> speed, std::optional<std::int64_t> frame) {
        host.run(100, LV2Sequence().addPosition(0, speed, frame));
    }

    LV2TestHost host;
};

TEST_F(LV2Transport, StartsAndStopsAtTheFrameOfTheObject) {
    host.run(100, LV2Sequence().addPosition(7, 1.0, 0).addPosition(50, 0.0, 43).addPosition(51, 1.0, 43));
    EXPECT_EQ(heard(), (Heard{{7, starts}, {50, stops}, {51, continues}}));
}

TEST_F(LV2Transport, ThatIsNotToldAnewGoesOn) {
    tell(1.0, 0);
    for (int block = 0; block < 5; ++block) {
        host.run(100);
    }
    tell(1.0, 600);
    EXPECT_EQ(heard(), (Heard{{0, starts}}));
}

TEST_F(LV2Transport, OffByOneFrameDoesNotJump) {
    tell(1.0, 0);
    tell(1.0, 101);
    tell(1.0, 200);
    EXPECT_EQ(heard(), (Heard{{0, starts}}));
}

TEST_F(LV2Transport, OffByTwoFramesJumps) {
    tell(1.0, 1000);
    tell(1.0, 1102);
    tell(std::nullopt, 0);
    EXPECT_EQ(heard(), (Heard{{0, continues}, {100, continues}, {200, starts}}));
}

TEST_F(LV2Transport, BelowZeroIsAtTheBeginning) {
    tell(1.0, -752);
    EXPECT_EQ(heard(), (Heard{{0, starts}}));
}

TEST_F(LV2Transport, WhoseSpeedAloneIsToldKeepsItsPosition) {
    tell(0.0, 5000);
    tell(1.0, std::nullopt);
    tell(std::nullopt, 5100);
    tell(0.0, std::nullopt);
    EXPECT_EQ(heard(), (Heard{{100, continues}, {300, stops}}));
}

TEST_F(LV2Transport, WhosePositionAloneIsToldKeepsItsSpeed) {
    tell(std::nullopt, 5000);
    EXPECT_EQ(heard(), Heard{});
    tell(1.0, std::nullopt);
    EXPECT_EQ(heard(), (Heard{{100, continues}}));
}

TEST_F(LV2Transport, MovesAtItsSpeed) {
    tell(2.0, 1000);
    tell(2.0, 1200);
    tell(-1.0, 1400);
    tell(-1.0, 1300);
    EXPECT_EQ(heard(), (Heard{{0, continues}}));
}

TEST_F(LV2Transport, WhoseSpeedChangesWithoutAPositionDoesNotJump) {
    tell(1.0, 1000);
    tell(2.0, std::nullopt);
    tell(std::nullopt, 1300);
    EXPECT_EQ(heard(), (Heard{{0, continues}}));
    tell(std::nullopt, 0);
    EXPECT_EQ(heard().size(), 1U);
}

TEST_F(LV2Transport, IsUnderstoodInEveryTypeOfNumber) {
    LV2ObjectBody starting(lv2Id(LV2_TIME__Position));
    starting.addNumber(LV2_TIME__speed, LV2_ATOM__Double, 1.0).addNumber(LV2_TIME__frame, LV2_ATOM__Int, 77);
    LV2ObjectBody stopping(lv2Id(LV2_TIME__Position));
    stopping.addNumber(LV2_TIME__frame, LV2_ATOM__Double, 177.0).addNumber(LV2_TIME__speed, LV2_ATOM__Int, 0);
    host.run(100, LV2Sequence().add(0, lv2Id(LV2_ATOM__Blank), starting.bytes()));
    host.run(100, LV2Sequence().add(0, lv2Id(LV2_ATOM__Object), stopping.bytes()));
    EXPECT_EQ(heard(), (Heard{{0, continues}, {100, stops}}));
}

TEST_F(LV2Transport, IsFoundAnewWithoutAJumpAfterThePluginWasInactive) {
    tell(1.0, 1000);
    host.deactivate();
    host.activate();
    tell(1.0, 50000);
    EXPECT_EQ(heard(), (Heard{{0, continues}}));
}

}  // namespace
}  // namespace quillo
