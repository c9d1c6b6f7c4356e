// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

#include "platform/RealTime.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// A host's transport: turns what a format reports now and then into starts, continues and stops.
///
/// Between two reports the position moves on with the frames. Reports at one time count as one: a change is
/// what differs from the transport before the first of them. A transport changes when it begins or ends to
/// move, to record or to cycle, and when its position jumps while it moves. Where it stands still then, the
/// change is a stop; where it moves, a continue behind the beginning, else a start. [render], save for making
/// one.
class HostTransport {
public:
    struct State {
        bool isMoving = false;
        bool isRecording = false;
        bool isCycling = false;

        bool operator==(const State&) const = default;
    };

    /// Which positions a format can report. One that has none below zero reports zero in their place: before
    /// the beginning the transport seems to stand there while it moves, which is no jump, and neither is
    /// leaving it.
    enum class Positions : std::uint8_t { all, noneBelowZero };

    /// A position that lies within `tolerance` of the expected one, in the unit of the positions, is no jump:
    /// for formats that round.
    explicit HostTransport(double tolerance = 0.0, Positions positions = Positions::all)
        : tolerance_(tolerance), positions_(positions) {}

    /// The transport as it is now, its position, below zero before the beginning, and how much of it passes
    /// in one rendered frame. Positions are in frames, unless a format counts in another unit; that must then
    /// be the same one every time.
    void report(State state, double position, double speed = 1.0) QUILLO_REALTIME;

    /// The same where the position is known to be the one reported before, moved on: no jump, wherever it
    /// lies.
    void reportContinued(State state, double position, double speed = 1.0) QUILLO_REALTIME;

    /// The same where no position is reported: it goes on from the one that is known.
    void report(State state) QUILLO_REALTIME;

    /// Frames may have passed without a render call: the next position is not a jump. A jump
    /// before that stays one.
    void losePosition() QUILLO_REALTIME;

    /// Changes may have been missed: what is reported next has been so before.
    void forget() QUILLO_REALTIME { isForgotten_ = true; }

    /// How the transport has changed since the last call; nothing when it has not.
    [[nodiscard]] std::optional<HostTransportTriggerVariantsV2> takeChange() QUILLO_REALTIME {
        return isReported_ ? takeReportedChange() : std::nullopt;
    }

    /// So many frames have passed. A change that was not taken stays one.
    void advance(std::uint32_t frames) QUILLO_REALTIME;

    [[nodiscard]] bool isMoving() const QUILLO_REALTIME { return now_.state.isMoving; }
    [[nodiscard]] double position() const QUILLO_REALTIME { return now_.position; }

private:
    struct Moment {
        State state;
        double position = 0.0;
        double speed = 1.0;
        bool isKnown = true;  ///< the position: reported since it was lost
        bool isZero = false;  ///< of the position, as it was reported last
    };

    [[nodiscard]] std::optional<HostTransportTriggerVariantsV2> takeReportedChange() QUILLO_REALTIME;
    [[nodiscard]] bool jumpsTo(double position) const QUILLO_REALTIME;
    [[nodiscard]] bool hasChanged() const QUILLO_REALTIME;

    double tolerance_;
    Positions positions_;
    Moment now_;
    Moment before_;             ///< as it was last taken, moved on
    bool isReported_ = false;   ///< something, since a change was taken
    bool hasJumped_ = false;    ///< the position, since then
    bool isForgotten_ = false;  ///< what was before
};

}  // namespace quillo
