// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2AudioPorts.hpp"

#include <algorithm>

namespace quillo {

namespace {

constexpr std::size_t longestPiece = 64;

}  // namespace

void LV2AudioPorts::connect(std::uint32_t port, float* samples) QUILLO_REALTIME {
    if (port < ports_.size()) {
        ports_[port] = samples;
    }
}

void LV2AudioPorts::copy(std::uint32_t frames) const QUILLO_REALTIME {
    if (ports_[channels] == nullptr && ports_[channels + 1] == nullptr) {
        return;
    }
    for (std::size_t start = 0; start < frames; start += longestPiece) {
        copyPiece(start, std::min(longestPiece, frames - start));
    }
}

/// Every input is read before an output is written: the buffers may be crossed.
void LV2AudioPorts::copyPiece(std::size_t start, std::size_t frames) const QUILLO_REALTIME {
    std::array<std::array<float, longestPiece>, channels> piece{};
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (const auto* from = ports_[channel]) {
            std::copy_n(from + start, frames, piece[channel].begin());
        }
    }
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (auto* to = ports_[channels + channel]) {
            std::copy_n(piece[channel].begin(), frames, to + start);
        }
    }
}

}  // namespace quillo
