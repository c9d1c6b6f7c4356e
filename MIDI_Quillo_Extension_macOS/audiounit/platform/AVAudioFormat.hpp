// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillo {

/// Sample formats, with the platform's values.
enum class AVAudioCommonFormat : std::uint32_t { otherFormat = 0, pcmFormatFloat32 = 1 };

/// How the samples of a bus are laid out.
struct AVAudioFormat {
    AVAudioCommonFormat commonFormat = AVAudioCommonFormat::otherFormat;
    double sampleRate = 0.0;         ///< samples per second
    std::uint32_t channelCount = 0;  ///< channels
    bool interleaved = false;        ///< whether the channels share one buffer

    bool operator==(const AVAudioFormat&) const = default;
};

}  // namespace quillo
