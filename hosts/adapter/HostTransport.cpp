// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/HostTransport.hpp"

#include <cmath>

namespace quillo {

void HostTransport::tell(AUHostTransportStateFlags flags, double position, double speed) QUILLO_REALTIME {
    const bool moves = (flags & AUHostTransportStateMoving) != 0;
    if (!moves) {
        changed_ = 0;
    } else if (isMoving() && jumpsTo(position)) {
        changed_ ^= AUHostTransportStateChanged;
    }
    toldZero_ = position == 0.0;
    flags_ = flags;
    position_ = position;
    speed_ = speed;
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
