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

TEST(PlayHeadTest, WithoutAPlayHeadNothingIsReported) {
    EXPECT_EQ(reportedTransport(nullptr), std::nullopt);
}

TEST(PlayHeadTest, APlayHeadThatKnowsNoPositionReportsNothing) {
    PlayHead playHead;
    EXPECT_EQ(reportedTransport(&playHead), std::nullopt);
    playHead.position = juce::nullopt;
    EXPECT_EQ(reportedTransport(&playHead), std::nullopt);
}

/// The wrapper's play head divides by the rate that it has not been given.
TEST(PlayHeadTest, AStandingTransportWhosePositionInSecondsIsNoNumberIsNone) {
    PlayHead playHead;
    playHead.position->setTimeInSamples(0);
    playHead.position->setTimeInSeconds(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(reportedTransport(&playHead), std::nullopt);
    playHead.position->setIsPlaying(true);
    EXPECT_EQ(reportedTransport(&playHead), (ReportedTransport{{.isMoving = true}, 0.0}));
    playHead.position->setIsPlaying(false);
    playHead.position->setTimeInSeconds(0.0);
    EXPECT_EQ(reportedTransport(&playHead), (ReportedTransport{{}, 0.0}));
}

TEST(PlayHeadTest, ReportsTheStateAndThePositionInFrames) {
    PlayHead playHead;
    playHead.position->setTimeInSamples(4711);
    EXPECT_EQ(reportedTransport(&playHead), (ReportedTransport{{}, 4711.0}));
    playHead.position->setIsPlaying(true);
    EXPECT_EQ(reportedTransport(&playHead), (ReportedTransport{{.isMoving = true}, 4711.0}));
    playHead.position->setIsPlaying(false);
    playHead.position->setIsRecording(true);
    EXPECT_EQ(reportedTransport(&playHead), (ReportedTransport{{.isRecording = true}, 4711.0}));
    playHead.position->setIsRecording(false);
    playHead.position->setIsLooping(true);
    EXPECT_EQ(reportedTransport(&playHead), (ReportedTransport{{.isCycling = true}, 4711.0}));
}

}  // namespace
}  // namespace quillo
