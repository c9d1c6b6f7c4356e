// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/SoundingNotes.hpp"

#include <bit>

namespace quillo {

void SoundingNotes::setPedal(std::size_t channel, std::uint8_t controller, bool isDown) QUILLO_REALTIME {
    for (std::size_t pedal = 0; pedal < pedals.size(); ++pedal) {
        if (pedals[pedal] == controller) {
            const auto bit = 1U << channel;
            const auto down = pedalsDown_[pedal];
            pedalsDown_[pedal] = static_cast<std::uint16_t>(isDown ? down | bit : down & ~bit);
        }
    }
}

std::size_t SoundingNotes::countOfNotes() const QUILLO_REALTIME {
    std::size_t count = 0;
    for (const auto half : notes_) {
        count += static_cast<std::size_t>(std::popcount(half));
    }
    return count;
}

std::size_t SoundingNotes::countOfPedals() const QUILLO_REALTIME {
    std::size_t count = 0;
    for (const auto down : pedalsDown_) {
        count += static_cast<std::size_t>(std::popcount(down));
    }
    return count;
}

}  // namespace quillo
