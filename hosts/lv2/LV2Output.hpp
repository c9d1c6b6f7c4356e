// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "hosts/lv2/LV2URIDs.hpp"
#include "platform/RealTime.hpp"
#include "session/HostOutput.hpp"

namespace quillo {

/// The sequence that goes to a host, in a buffer of the host's, which says how much it takes. [render]
///
/// Hosts do not agree whether the size that they give counts the atom's own header. Here it does, so that not
/// a byte goes too far; that costs the other hosts eight bytes.
class LV2Output final : public HostOutput {
public:
    explicit LV2Output(const LV2URIDs& ids) : ids_(ids) {}

    /// A new block, and the host's buffer for it; null has no room. One that also holds the input says how
    /// long that is, without its own header.
    void begin(LV2_Atom_Sequence* buffer, bool holdsInput = false) QUILLO_REALTIME;

    /// Room is what the buffer has left.
    [[nodiscard]] Room roomFor(Bytes bytes, const Waiting& waiting) const QUILLO_REALTIME override;
    void write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME override;

    /// Writes a notice that the state has changed, behind all messages. False when there is no room for it.
    [[nodiscard]] bool tryWriteStateChanged(std::uint32_t offset) QUILLO_REALTIME;

    /// The sequence is complete.
    void end() QUILLO_REALTIME;

private:
    [[nodiscard]] bool fits(std::size_t size) const QUILLO_REALTIME;
    void write(std::uint32_t offset, LV2_URID type, std::span<const std::uint8_t> body) QUILLO_REALTIME;

    const LV2URIDs& ids_;
    LV2_Atom_Sequence* buffer_ = nullptr;
    std::size_t capacity_ = 0;
    std::size_t written_ = 0;  ///< of the capacity, the sequence's own head included
};

}  // namespace quillo
