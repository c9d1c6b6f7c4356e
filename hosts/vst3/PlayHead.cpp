// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/PlayHead.hpp"

#include <cmath>

namespace quillo {

namespace {

/// Without the host's word the wrapper tells a transport of zeros, and divides by a rate of zero.
bool isHearsay(const juce::AudioPlayHead::PositionInfo& told) {
    return std::isnan(told.getTimeInSeconds().orFallback(0.0)) && !told.getIsPlaying() &&
           !told.getIsRecording() && !told.getIsLooping();
}

}  // namespace

std::optional<ToldTransport> toldTransport(const juce::AudioPlayHead* playHead) noexcept {
    const auto told = playHead != nullptr ? playHead->getPosition() : juce::nullopt;
    if (!told || !told->getTimeInSamples() || isHearsay(*told)) {
        return std::nullopt;
    }
    AUHostTransportStateFlags flags = 0;
    flags |= told->getIsPlaying() ? AUHostTransportStateMoving : 0;
    flags |= told->getIsRecording() ? AUHostTransportStateRecording : 0;
    flags |= told->getIsLooping() ? AUHostTransportStateCycling : 0;
    return ToldTransport{flags, static_cast<double>(*told->getTimeInSamples())};
}

}  // namespace quillo
