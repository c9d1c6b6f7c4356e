// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "hosts/clap/CLAPHeaders.hpp"
#include "platform/AUHostTransportState.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// What a host says of its transport, in the terms of `BlockRenderer::tellTransport`.
///
/// The position is the one in seconds, in frames, which no change of the tempo makes jump. Hosts that tell only
/// beats have theirs counted in steps, 64 to a beat: a step is what a position may be off that a host works out
/// while the tempo changes, and shorter than any jump.
struct CLAPTransport {
    /// Off by more than this, a position is a jump: the host rounds seconds to a fraction of a frame.
    static constexpr double tolerance = 1.0;

    AUHostTransportStateFlags flags = 0;
    std::optional<double> position;  ///< none when the host tells none
    std::optional<double> speed;     ///< of the position, a frame; none when it cannot be foretold

    [[nodiscard]] static CLAPTransport from(const clap_event_transport_t& event,
                                            double sampleRate) QUILLO_REALTIME;
};

}  // namespace quillo
