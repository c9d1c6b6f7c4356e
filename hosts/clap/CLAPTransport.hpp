// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

#include "hosts/clap/CLAPHeaders.hpp"
#include "platform/RealTime.hpp"
#include "session/BlockRenderer.hpp"

namespace quillo {

/// What a host says of its transport, in the terms of `BlockRenderer::reportTransport`. [render]
///
/// The position is the one in seconds, counted in steps of 2 ms: hosts round it to whole milliseconds, and
/// two of those may be off by one. Hosts that report only beats have theirs counted in steps, 64 to a beat. A
/// step is what a position may be off, and shorter than any jump.
///
/// Hosts work out seconds from beats or beats from seconds, and what is worked out jumps when the tempo
/// changes. Where both are reported, and a tempo, only what both show is a jump.
class CLAPTransport {
public:
    /// Off by more than this, a position is a jump.
    static constexpr double tolerance = 1.0;

    /// [main] It must outlive this.
    explicit CLAPTransport(BlockRenderer& renderer) : renderer_(renderer) {}

    /// [main, while nothing renders]
    void setSampleRate(double sampleRate) { sampleRate_ = sampleRate; }

    /// What the host says at this offset of the block.
    void report(std::uint32_t offset, const clap_event_transport_t& event) QUILLO_REALTIME;

private:
    using Event = clap_event_transport_t;

    enum class Timeline : std::uint8_t { none, seconds, beats };

    struct Position {
        double steps = 0.0;
        std::optional<double> speed;  ///< in steps a frame; nothing when it cannot be predicted
    };

    struct Report {
        SampleTime time = 0;  ///< on the render timeline
        HostTransport::State state;
        std::optional<Position> seconds;
        std::optional<Position> beats;
    };

    [[nodiscard]] Report read(std::uint32_t offset, const Event& event) const QUILLO_REALTIME;
    [[nodiscard]] bool goesOnInBeats(const Report& reported) const QUILLO_REALTIME;
    void report(std::uint32_t offset, const Report& reported, Timeline timeline,
                const Position& position) QUILLO_REALTIME;

    BlockRenderer& renderer_;
    double sampleRate_ = 0.0;
    Report last_;
    Timeline timeline_ = Timeline::none;  ///< of the position that was reported last
};

}  // namespace quillo
