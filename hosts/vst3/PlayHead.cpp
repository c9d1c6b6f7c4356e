// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/PlayHead.hpp"

#include <cmath>

namespace quillo {

namespace {

/// Without the host's word the wrapper reports a transport of zeros, and divides by a rate of zero.
bool isUnreported(const juce::AudioPlayHead::PositionInfo& reported) {
    return std::isnan(reported.getTimeInSeconds().orFallback(0.0)) && !reported.getIsPlaying() &&
           !reported.getIsRecording() && !reported.getIsLooping();
}

}  // namespace

std::optional<ReportedTransport> reportedTransport(const juce::AudioPlayHead* playHead) noexcept {
    const auto reported = playHead != nullptr ? playHead->getPosition() : juce::nullopt;
    if (!reported || !reported->getTimeInSamples() || isUnreported(*reported)) {
        return std::nullopt;
    }
    return ReportedTransport{{reported->getIsPlaying(), reported->getIsRecording(), reported->getIsLooping()},
                             static_cast<double>(*reported->getTimeInSamples())};
}

}  // namespace quillo
