// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

#include "audiounit/platform/AUHostTransportState.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// A host's transport, from what its format reports now and then to the answer that a unit asks for in every
/// cycle. Between two reports the position moves on with the frames. Of the reports between two cycles the
/// last holds: it is a change, or none, against what the unit saw in the cycle before.
///
/// A jump of the position while the transport moves is a change that the moving, recording and cycling flags
/// do not show: each jump turns `AUHostTransportStateChanged` over, so that each is one change of the flags.
/// The flag is clear while the transport stands still. [render], save for making one.
class HostTransport {
public:
    /// Which positions a format can report. One that has none below zero reports zero in their place: before
    /// the beginning the transport seems to stand there while it moves, which is no jump, and neither is
    /// leaving it.
    enum class Positions : std::uint8_t { all, noneBelowZero };

    /// A position that lies within `tolerance` of the expected one, in the unit of the positions, is no jump:
    /// for formats that round.
    explicit HostTransport(double tolerance = 0.0, Positions positions = Positions::all)
        : tolerance_(tolerance), positions_(positions) {}

    /// The transport as it is now: a set of the moving, recording and cycling flags, the position, below zero
    /// before the beginning, and how much of it passes in one rendered frame. Positions are in frames, unless
    /// a format counts in another unit; that must then be the same one every time.
    void tell(AUHostTransportStateFlags flags, double position, double speed = 1.0) QUILLO_REALTIME;

    /// The same where the position is known to be the one reported before, moved on: no jump, wherever it
    /// lies.
    void follow(AUHostTransportStateFlags flags, double position, double speed = 1.0) QUILLO_REALTIME;

    /// The same where no position is reported: it goes on from the one that is known.
    void tell(AUHostTransportStateFlags flags) QUILLO_REALTIME;

    /// Frames may have passed that nobody rendered: the next position is no jump, wherever it lies.
    void lose() QUILLO_REALTIME;

    /// So many frames have passed before the next cycle begins, which the unit has not asked in. An earlier
    /// report is shown to it as it was: a start at the beginning stays one.
    void wait(std::uint32_t frames) QUILLO_REALTIME;

    /// The unit has asked, in a cycle of so many frames.
    void advance(std::uint32_t frames) QUILLO_REALTIME;

    [[nodiscard]] AUHostTransportStateFlags flags() const QUILLO_REALTIME { return flags_ | changed(); }
    [[nodiscard]] double position() const QUILLO_REALTIME { return toldPosition_.value_or(position_); }
    [[nodiscard]] bool isMoving() const QUILLO_REALTIME { return (flags_ & AUHostTransportStateMoving) != 0; }

private:
    /// As the unit saw the transport last.
    struct Seen {
        bool moves = false;
        AUHostTransportStateFlags changed = 0;
        bool isZero = false;  ///< of the position, as it was reported
        double speed = 1.0;
        std::optional<double> position = 0.0;  ///< where it has got since; none when frames may have passed
    };

    void take(AUHostTransportStateFlags flags, double position, double speed, bool goesOn) QUILLO_REALTIME;
    void move(std::uint32_t frames) QUILLO_REALTIME;
    [[nodiscard]] AUHostTransportStateFlags changed() const QUILLO_REALTIME;
    [[nodiscard]] bool hasPassed() const QUILLO_REALTIME;
    [[nodiscard]] bool isOff(double position, double expected) const QUILLO_REALTIME;
    [[nodiscard]] bool jumpsTo(double position) const QUILLO_REALTIME;

    double tolerance_;
    Positions positions_;
    Seen seen_;

    // As it was reported.
    AUHostTransportStateFlags flags_ = 0;
    double position_ = 0.0;
    double speed_ = 1.0;
    bool known_ = true;                   ///< the position was reported since it was lost
    bool toldZero_ = false;               ///< the position, when it was reported last
    bool jumped_ = false;                 ///< the position is not where the unit expects it
    std::optional<double> toldPosition_;  ///< of what the unit has not seen yet
};

}  // namespace quillo
