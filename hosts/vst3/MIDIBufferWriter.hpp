// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include <juce_audio_basics/juce_audio_basics.h>

#include "platform/RealTime.hpp"

namespace quillo {

/// Fills JUCE's buffer of MIDI events with messages in ascending order of their offsets. The buffer's own
/// `addEvent` looks for each event's place from the beginning, so that twice the messages take four times as long;
/// this writes behind the last one.
///
/// While the buffer's storage suffices, nothing is allocated. [render]
class MIDIBufferWriter {
    using Offset = std::int32_t;
    using Length = std::uint16_t;
    static constexpr std::size_t headerSize = sizeof(Offset) + sizeof(Length);

public:
    /// The buffer counts a message's bytes, with what it writes in front of them, in 16 bits.
    static constexpr std::size_t longestMessage = std::numeric_limits<Length>::max() - headerSize;

    /// How many bytes of storage so many messages, of so many bytes in all, take.
    [[nodiscard]] static constexpr std::size_t storageFor(std::size_t messages, std::size_t bytes) {
        return messages * headerSize + bytes;
    }

    /// Empties the buffer, which must outlive the writer.
    explicit MIDIBufferWriter(juce::MidiBuffer& buffer);

    /// Adds one message of at most `longestMessage` bytes, not before the last one.
    void append(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

private:
    juce::Array<juce::uint8>& storage_;
};

}  // namespace quillo
