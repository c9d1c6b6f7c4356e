// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/HostTransport.hpp"

#include <cmath>

namespace quillo {

using Trigger = HostTransportTriggerVariantsV2;

void HostTransport::report(State state, double position, double speed) QUILLO_REALTIME {
    if (before_.isKnown) {
        hasJumped_ = jumpsTo(position);
    }
    reportContinued(state, position, speed);
}

void HostTransport::reportContinued(State state, double position, double speed) QUILLO_REALTIME {
    now_ = {state, position, speed, true, position == 0.0};
    isReported_ = true;
}

void HostTransport::report(State state) QUILLO_REALTIME {
    now_.state = state;
    isReported_ = true;
}

void HostTransport::losePosition() QUILLO_REALTIME {
    now_.isKnown = false;
    before_.isKnown = false;
}

std::optional<Trigger> HostTransport::takeReportedChange() QUILLO_REALTIME {
    const bool isChange = hasChanged();
    before_ = now_;
    isReported_ = false;
    hasJumped_ = false;
    isForgotten_ = false;
    if (!isChange) {
        return std::nullopt;
    }
    if (!isMoving()) {
        return Trigger::Stop;
    }
    return now_.position > 0.0 ? Trigger::Continue : Trigger::Start;
}

void HostTransport::advance(std::uint32_t frames) QUILLO_REALTIME {
    if (isMoving()) {
        const auto moved = frames * now_.speed;
        now_.position += moved;
        before_.position += moved;
    }
}

bool HostTransport::hasChanged() const QUILLO_REALTIME {
    return !isForgotten_ && (now_.state != before_.state || (hasJumped_ && isMoving()));
}

/// Where zero may stand for less, the position may lie as far behind the expected one as it likes.
bool HostTransport::jumpsTo(double position) const QUILLO_REALTIME {
    if (std::fabs(position - before_.position) <= tolerance_) {
        return false;
    }
    const bool mayBeBehind = positions_ == Positions::noneBelowZero && before_.isZero;
    return !mayBeBehind || position > before_.position;
}

}  // namespace quillo
