// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/PlayHead.hpp"

#include <cmath>
#include <limits>

namespace quillo {

std::optional<ToldTransport> toldTransport(const juce::AudioPlayHead* playHead) noexcept {
    const auto told = playHead != nullptr ? playHead->getPosition() : juce::nullopt;
    if (!told || !told->getTimeInSamples() || std::isnan(told->getTimeInSeconds().orFallback(0.0))) {
        return std::nullopt;
    }
    AUHostTransportStateFlags flags = 0;
    flags |= told->getIsPlaying() ? AUHostTransportStateMoving : 0;
    flags |= told->getIsRecording() ? AUHostTransportStateRecording : 0;
    flags |= told->getIsLooping() ? AUHostTransportStateCycling : 0;
    return ToldTransport{flags, static_cast<double>(*told->getTimeInSamples())};
}

}  // namespace quillo
