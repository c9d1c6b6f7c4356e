// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/PlayHead.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace quillo {
namespace {

class PlayHead final : public juce::AudioPlayHead {
public:
    juce::Optional<PositionInfo> getPosition() const override { return position; }

    juce::Optional<PositionInfo> position = PositionInfo();
};

TEST(PlayHeadTest, WithoutAPlayHeadNothingIsTold) {
    EXPECT_EQ(toldTransport(nullptr), std::nullopt);
}

TEST(PlayHeadTest, APlayHeadThatKnowsNoPositionTellsNothing) {
    PlayHead playHead;
    EXPECT_EQ(toldTransport(&playHead), std::nullopt);
    playHead.position = juce::nullopt;
    EXPECT_EQ(toldTransport(&playHead), std::nullopt);
}

/// The wrapper's play head divides by the rate that it has not been told.
TEST(PlayHeadTest, AStandingTransportWhosePositionInSecondsIsNoNumberIsNone) {
    PlayHead playHead;
    playHead.position->setTimeInSamples(0);
    playHead.position->setTimeInSeconds(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(toldTransport(&playHead), std::nullopt);
    playHead.position->setIsPlaying(true);
    EXPECT_EQ(toldTransport(&playHead), (ToldTransport{AUHostTransportStateMoving, 0.0}));
    playHead.position->setIsPlaying(false);
    playHead.position->setTimeInSeconds(0.0);
    EXPECT_EQ(toldTransport(&playHead), (ToldTransport{0, 0.0}));
}

TEST(PlayHeadTest, TellsTheFlagsAndThePositionInFrames) {
    PlayHead playHead;
    playHead.position->setTimeInSamples(4711);
    EXPECT_EQ(toldTransport(&playHead), (ToldTransport{0, 4711.0}));
    playHead.position->setIsPlaying(true);
    EXPECT_EQ(toldTransport(&playHead), (ToldTransport{AUHostTransportStateMoving, 4711.0}));
    playHead.position->setIsPlaying(false);
    playHead.position->setIsRecording(true);
    EXPECT_EQ(toldTransport(&playHead), (ToldTransport{AUHostTransportStateRecording, 4711.0}));
    playHead.position->setIsRecording(false);
    playHead.position->setIsLooping(true);
    EXPECT_EQ(toldTransport(&playHead), (ToldTransport{AUHostTransportStateCycling, 4711.0}));
}

}  // namespace
}  // namespace quillo
