// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include <juce_audio_basics/juce_audio_basics.h>

#include "platform/RealTime.hpp"
#include "session/HostOutput.hpp"

namespace quillo {

/// Fills JUCE's buffer of MIDI events with messages in ascending order of their offsets. The buffer's own
/// `addEvent` looks for each event's place from the beginning, so that twice the messages take four times as
/// long; this writes behind the last one. A message that lacks data bytes gets zeros for them, because JUCE
/// reads as many as its status byte asks for.
///
/// While the buffer's storage suffices, nothing is allocated. Nothing is written before a block's end: the
/// buffer is the one that the input came in. [render]
class MIDIBufferWriter final : public HostOutput {
    using Offset = std::int32_t;
    using Length = std::uint16_t;
    static constexpr std::size_t headerSize = sizeof(Offset) + sizeof(Length);
    static constexpr std::size_t mostZeros = 2;

public:
    /// The buffer counts a message's bytes, with what it writes in front of them, in 16 bits.
    static constexpr std::size_t longestMessage = std::numeric_limits<Length>::max() - headerSize;

    /// The wrapper hands no more events than this to the host in a block.
    static constexpr std::size_t mostEvents = 2048;

    /// How many bytes of storage so many messages, of so many bytes in all, take at most.
    [[nodiscard]] static constexpr std::size_t storageFor(std::size_t messages, std::size_t bytes) {
        return messages * (headerSize + mostZeros) + bytes;
    }

    /// Empties the buffer, into which it writes from now on.
    void open(juce::MidiBuffer& buffer);

    [[nodiscard]] Room roomFor(Bytes bytes, const Waiting& waiting) const QUILLO_REALTIME override;
    void write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME override;

private:
    juce::Array<juce::uint8>* storage_ = nullptr;
};

}  // namespace quillo
