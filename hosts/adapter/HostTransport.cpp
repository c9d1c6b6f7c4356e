// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/HostTransport.hpp"

#include <cmath>

namespace quillo {

void HostTransport::tell(AUHostTransportStateFlags flags, double position, double speed) QUILLO_REALTIME {
    const bool moves = (flags & AUHostTransportStateMoving) != 0;
    if (!moves) {
        changed_ = 0;
    } else if (isMoving() && std::abs(position - position_) > tolerance_) {
        changed_ ^= AUHostTransportStateChanged;
    }
    flags_ = flags;
    position_ = position;
    speed_ = speed;
}

void HostTransport::advance(std::uint32_t frames) QUILLO_REALTIME {
    if (isMoving()) {
        position_ += frames * speed_;
    }
}

}  // namespace quillo
