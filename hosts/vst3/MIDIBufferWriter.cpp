// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/MIDIBufferWriter.hpp"

#include <algorithm>
#include <array>
#include <cstring>

#include "midi/MessageLength.hpp"

namespace quillo {

void MIDIBufferWriter::open(juce::MidiBuffer& buffer) {
    buffer.clear();
    storage_ = &buffer.data;
}

MIDIBufferWriter::Room MIDIBufferWriter::roomFor(Bytes bytes, const Waiting& waiting) const QUILLO_REALTIME {
    if (bytes.size() > longestMessage) {
        return Room::never;
    }
    return waiting.messages < mostEvents ? Room::enough : Room::full;
}

void MIDIBufferWriter::write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    std::array<juce::uint8, headerSize> header{};
    constexpr std::array<juce::uint8, mostZeros> zeros{};
    const auto signedOffset = static_cast<Offset>(offset);
    const auto wholeSize = std::max(bytes.size(), messageLength(bytes.front()));
    const auto length = static_cast<Length>(wholeSize);
    std::memcpy(header.data(), &signedOffset, sizeof signedOffset);
    std::memcpy(header.data() + sizeof signedOffset, &length, sizeof length);
    QUILLO_REALTIME_EXEMPT("the storage was made long enough before")
    storage_->addArray(header.data(), static_cast<int>(header.size()));
    storage_->addArray(bytes.data(), static_cast<int>(bytes.size()));
    storage_->addArray(zeros.data(), static_cast<int>(wholeSize - bytes.size()));
    QUILLO_REALTIME_EXEMPT_END
}

}  // namespace quillo
