// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/HostTransport.hpp"

#include <cmath>

namespace quillo {

void HostTransport::tell(AUHostTransportStateFlags flags, double position, double speed) QUILLO_REALTIME {
    const bool moved = isMoving();
    tell(flags);
    if (moved && isMoving() && !lost_ && std::abs(position - position_) > tolerance_) {
        changed_ ^= AUHostTransportStateChanged;
    }
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

void HostTransport::advance(std::uint32_t frames) QUILLO_REALTIME {
    if (isMoving()) {
        position_ += frames * speed_;
    }
}

}  // namespace quillo
