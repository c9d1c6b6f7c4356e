// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/RealTime.hpp"

namespace quillo {

/// The audio ports of the stereo variant: two in, then two out. What comes in goes out, also where a host
/// uses one buffer for an input and an output, of the same channel or not. [render]
class LV2AudioPorts {
public:
    static constexpr std::size_t channels = 2;

    /// A port by its number among the audio ports. One that there is not is left alone.
    void connect(std::uint32_t port, float* samples) QUILLO_REALTIME;

    /// Copies so many frames; an output whose input is not connected gets silence.
    void copy(std::uint32_t frames) const QUILLO_REALTIME;

private:
    void copyPiece(std::size_t start, std::size_t frames) const QUILLO_REALTIME;

    std::array<float*, 2 * channels> ports_{};
};

}  // namespace quillo
