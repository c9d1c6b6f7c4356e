// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "platform/AUHostTransportState.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// A host's transport, from what its format tells now and then to the answer that a unit asks for in every
/// cycle. Between two tellings the position moves on with the frames.
///
/// A jump of the position while the transport moves is a change that the moving, recording and cycling flags
/// do not show: each jump turns `AUHostTransportStateChanged` over, so that each is one change of the flags.
/// The flag is clear while the transport stands still. [render], save for making one.
class HostTransport {
public:
    /// Which positions a format can tell. One that has none below zero tells zero in their place: on the way to
    /// the beginning the transport seems to stand there while it moves, which is no jump, and neither is leaving it.
    enum class Positions : std::uint8_t { all, noneBelowZero };

    /// A position that lies within `tolerance` frames of the expected one is no jump: for formats that round.
    explicit HostTransport(double tolerance = 0.0, Positions positions = Positions::all)
        : tolerance_(tolerance), positions_(positions) {}

    /// The transport as it is now: a set of the moving, recording and cycling flags, the position in frames,
    /// below zero before the beginning, and how many frames of it pass in one rendered frame.
    void tell(AUHostTransportStateFlags flags, double position, double speed = 1.0) QUILLO_REALTIME;

    /// The same where no position is told: it goes on from the one that is known.
    void tell(AUHostTransportStateFlags flags) QUILLO_REALTIME;

    /// Frames may have passed that nobody rendered: the next position is no jump, wherever it lies.
    void lose() QUILLO_REALTIME { lost_ = true; }

    /// So many frames were rendered.
    void advance(std::uint32_t frames) QUILLO_REALTIME;

    [[nodiscard]] AUHostTransportStateFlags flags() const QUILLO_REALTIME { return flags_ | changed_; }
    [[nodiscard]] double position() const QUILLO_REALTIME { return position_; }
    [[nodiscard]] bool isMoving() const QUILLO_REALTIME { return (flags_ & AUHostTransportStateMoving) != 0; }

private:
    [[nodiscard]] bool jumpsTo(double position) const QUILLO_REALTIME;

    double tolerance_;
    Positions positions_;
    bool toldZero_ = false;
    AUHostTransportStateFlags flags_ = 0;
    AUHostTransportStateFlags changed_ = 0;
    double position_ = 0.0;
    double speed_ = 1.0;
    bool lost_ = false;  ///< the position is not known until it is told
};

}  // namespace quillo
