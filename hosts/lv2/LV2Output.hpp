// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "hosts/adapter/OutgoingMessages.hpp"
#include "hosts/lv2/LV2URIDs.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// The sequence that goes to a host, in a buffer of the host's, which says how much it takes. Room is set
/// aside while the block is rendered, and nothing is written until its end: what has its room is written
/// whole, and what has none is refused while the unit can still be told. [render]
///
/// Hosts do not agree whether the size that they give counts the atom's own header. Here it does, so that not
/// a byte goes too far; that costs the other hosts eight bytes.
class LV2Output {
public:
    explicit LV2Output(const LV2URIDs& ids) : ids_(ids) {}

    /// A new block, and the host's buffer for it; null has no room.
    void begin(LV2_Atom_Sequence* buffer) QUILLO_REALTIME;

    /// Sets room aside for one message of so many bytes. False when there is not enough.
    [[nodiscard]] bool tryReserve(std::size_t bytes) QUILLO_REALTIME;

    /// Whether a message of so many bytes would have room in this buffer if it were empty.
    [[nodiscard]] bool couldHold(std::size_t bytes) const QUILLO_REALTIME;

    /// Sets room aside for one notice that the state has changed, which leaves first of all in the block.
    [[nodiscard]] bool tryReserveStateChanged() QUILLO_REALTIME;

    /// Writes the sequence: the notice, if room was set aside, then the messages, for each of which it was.
    void end(std::span<const OutgoingMessages::Message> messages) QUILLO_REALTIME;

private:
    [[nodiscard]] bool tryTake(std::size_t bodySize) QUILLO_REALTIME;
    void write(std::uint32_t offset, LV2_URID type, std::span<const std::uint8_t> body) QUILLO_REALTIME;
    void writeStateChanged() QUILLO_REALTIME;

    const LV2URIDs& ids_;
    LV2_Atom_Sequence* buffer_ = nullptr;
    std::size_t capacity_ = 0;
    std::size_t taken_ = 0;    ///< of the capacity, the sequence's own head included
    std::size_t written_ = 0;  ///< of what was taken
    bool stateChanged_ = false;
};

}  // namespace quillo
