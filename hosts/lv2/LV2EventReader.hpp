// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "hosts/lv2/LV2Headers.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// One event of a sequence. The bytes are the host's.
struct LV2Event {
    std::int64_t time = 0;  ///< in frames from the block's start, whatever the host wrote there
    LV2_URID type = 0;
    std::span<const std::uint8_t> body;
};

/// The events of a host's sequence, one by one. It reads nothing that lies outside the size that the sequence
/// gives itself: at an event that would end behind it, it ends. [render]
class LV2EventReader {
public:
    /// Null, an atom of another type than `sequenceType` and one too short for a sequence have no events.
    LV2EventReader(const LV2_Atom_Sequence* sequence, LV2_URID sequenceType) QUILLO_REALTIME;

    /// The next event; nothing when there is none.
    [[nodiscard]] std::optional<LV2Event> next() QUILLO_REALTIME;

private:
    std::span<const std::uint8_t> left_;
};

}  // namespace quillo
