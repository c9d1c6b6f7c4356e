// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "hosts/lv2/LV2Headers.hpp"
#include "hosts/lv2/LV2URIDs.hpp"
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

/// What an object of the type `time:Position` reports: hosts leave out what they do not know, or what has not
/// changed. Numbers of any of the four types are taken; one that is not finite is ignored.
struct LV2Position {
    std::optional<double> speed;  ///< 0 when the transport stands still
    std::optional<double> frame;  ///< below zero before the beginning

    /// [render] Nothing when the bytes are the body of another object, or of none. Properties that end behind
    /// the bytes are left out.
    [[nodiscard]] static std::optional<LV2Position> from(std::span<const std::uint8_t> body,
                                                         const LV2URIDs& ids) QUILLO_REALTIME;
};

}  // namespace quillo
