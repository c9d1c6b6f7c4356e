// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/HostTransport.hpp"

#include <cmath>

namespace quillo {

void HostTransport::tell(AUHostTransportStateFlags flags, double position, double speed) QUILLO_REALTIME {
    const bool moved = isMoving();
    tell(flags);
    if (moved && isMoving() && !lost_ && jumpsTo(position)) {
        changed_ ^= AUHostTransportStateChanged;
    }
    toldZero_ = position == 0.0;
    position_ = position;
    speed_ = speed;
    lost_ = false;
}

void HostTransport::tell(AUHostTransportStateFlags flags) QUILLO_REALTIME {
    flags_ = flags;
    if (!isMoving()) {
        changed_ = 0;
    }
}

/// Where zero may stand for less, the position may lie as far behind the expected one as it likes.
bool HostTransport::jumpsTo(double position) const QUILLO_REALTIME {
    const bool mayBeBehind = positions_ == Positions::noneBelowZero && toldZero_;
    return position > position_ + tolerance_ || (position < position_ - tolerance_ && !mayBeBehind);
}

void HostTransport::advance(std::uint32_t frames) QUILLO_REALTIME {
    if (isMoving()) {
        position_ += frames * speed_;
    }
}

}  // namespace quillo
