// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include <juce_audio_processors/juce_audio_processors.h>

#include "session/HostTransport.hpp"

namespace quillo {

/// The host's transport at the start of a block, as JUCE's play head reports it.
struct ReportedTransport {
    HostTransport::State state;
    double position = 0.0;  ///< in frames

    bool operator==(const ReportedTransport&) const = default;
};

/// Nothing when there is no play head, or when the host has reported nothing to it: then it stands still at a
/// position in seconds that is no number. [render]
[[nodiscard]] std::optional<ReportedTransport> reportedTransport(
    const juce::AudioPlayHead* playHead) noexcept;

}  // namespace quillo
