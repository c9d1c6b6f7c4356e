// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "audiounit/platform/AUHostTransportState.hpp"
#include "audiounit/platform/AURenderEvent.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// What the host offers to the render thread, in the unit's form. The host's own blocks live as long as
/// these.
struct HostBlocks {
    AUHostTransportStateBlock transportState;
    AUMIDIOutputEventBlock midiOutputEvent;
};

/// The unit's form of the platform's transport block, which may be absent. `HostFlags` is the platform's set
/// of flags.
template <class HostFlags, class HostBlock>
[[nodiscard]] AUHostTransportStateBlock transportStateBlock(HostBlock block) {
    if (!block) {
        return {};
    }
    return [block](AUHostTransportStateFlags* flags, double* position, double* cycleStart,
                   double* cycleEnd) QUILLO_REALTIME {
        HostFlags hostFlags = 0;
        QUILLO_REALTIME_EXEMPT("the host's own block, which the host made for its render thread")
        const bool known = block(flags != nullptr ? &hostFlags : nullptr, position, cycleStart, cycleEnd);
        if (flags != nullptr) {
            *flags = static_cast<AUHostTransportStateFlags>(hostFlags);
        }
        return known;
        QUILLO_REALTIME_EXEMPT_END
    };
}

/// The unit's form of the platform's MIDI output block, which may be absent.
template <class HostBlock>
[[nodiscard]] AUMIDIOutputEventBlock midiOutputEventBlock(HostBlock block) {
    if (!block) {
        return {};
    }
    return [block](AUEventSampleTime time, std::uint8_t cable,
                   std::span<const std::uint8_t> bytes) QUILLO_REALTIME -> OSStatus {
        QUILLO_REALTIME_EXEMPT("the host's own block, which the host made for its render thread")
        return block(time, cable, static_cast<std::ptrdiff_t>(bytes.size()), bytes.data());
        QUILLO_REALTIME_EXEMPT_END
    };
}

}  // namespace quillo
