// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/HostTransport.hpp"

namespace quillo {

void HostTransport::tell(AUHostTransportStateFlags flags, double position, double speed) QUILLO_REALTIME {
    take(flags, position, speed, !isOff(position, position_));
    jumped_ = jumpsTo(position);
}

void HostTransport::follow(AUHostTransportStateFlags flags, double position, double speed) QUILLO_REALTIME {
    take(flags, position, speed, true);
}

void HostTransport::take(AUHostTransportStateFlags flags, double position, double speed,
                         bool goesOn) QUILLO_REALTIME {
    const bool hasBegun = isMoving() && hasPassed();
    tell(flags);
    if (!goesOn || !hasBegun || !isMoving()) {
        toldPosition_ = position;
    }
    toldZero_ = position == 0.0;
    position_ = position;
    speed_ = speed;
    known_ = true;
}

void HostTransport::tell(AUHostTransportStateFlags flags) QUILLO_REALTIME {
    toldPosition_ = position();
    flags_ = flags;
}

void HostTransport::lose() QUILLO_REALTIME {
    seen_.position.reset();
    known_ = false;
}

void HostTransport::wait(std::uint32_t frames) QUILLO_REALTIME {
    move(frames);
    if (seen_.moves && seen_.position) {
        *seen_.position += frames * seen_.speed;
    }
}

void HostTransport::advance(std::uint32_t frames) QUILLO_REALTIME {
    const auto nowChanged = changed();
    move(frames);
    seen_ = {isMoving(), nowChanged, toldZero_, speed_, known_ ? std::optional(position_) : std::nullopt};
    toldPosition_.reset();
    jumped_ = false;
}

void HostTransport::move(std::uint32_t frames) QUILLO_REALTIME {
    if (isMoving()) {
        position_ += frames * speed_;
    }
}

/// What is told between two looks of the unit, and taken back before the second, it cannot hear.
AUHostTransportStateFlags HostTransport::changed() const QUILLO_REALTIME {
    if (!isMoving()) {
        return 0;
    }
    return seen_.moves && jumped_ ? seen_.changed ^ AUHostTransportStateChanged : seen_.changed;
}

/// Whether frames have passed since something was told that the unit has not seen.
bool HostTransport::hasPassed() const QUILLO_REALTIME {
    return toldPosition_ && *toldPosition_ != position_;
}

bool HostTransport::isOff(double position, double expected) const QUILLO_REALTIME {
    return position > expected + tolerance_ || position < expected - tolerance_;
}

/// Where zero may stand for less, the position may lie as far behind the expected one as it likes.
bool HostTransport::jumpsTo(double position) const QUILLO_REALTIME {
    if (!seen_.position) {
        return false;
    }
    const bool mayBeBehind = positions_ == Positions::noneBelowZero && seen_.isZero;
    return isOff(position, *seen_.position) && (!mayBeBehind || position > *seen_.position);
}

}  // namespace quillo
