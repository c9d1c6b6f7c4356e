// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/UniversalPackets.hpp"

#include "midi/MessageLength.hpp"

namespace quillo {

namespace {

constexpr std::uint32_t systemMessage = 1;
constexpr std::uint32_t channelMessage = 2;

/// By message type, the first word's highest four bits.
constexpr std::array<std::size_t, 16> packetLengths{1, 1, 1, 2, 2, 4, 1, 1, 2, 2, 2, 3, 3, 4, 4, 4};

std::uint32_t messageType(std::uint32_t firstWord) QUILLO_REALTIME {
    return firstWord >> 28U;
}

std::uint8_t byteAt(std::uint32_t word, unsigned position) QUILLO_REALTIME {
    return static_cast<std::uint8_t>(word >> (24U - 8U * position));
}

/// System exclusive travels in packets of another type.
std::size_t lengthIn(std::uint32_t type, std::uint8_t status) QUILLO_REALTIME {
    return type == (midi::isSystem(status) ? systemMessage : channelMessage) ? messageLength(status) : 0;
}

}  // namespace

std::size_t packetLength(std::uint32_t firstWord) QUILLO_REALTIME {
    return packetLengths[messageType(firstWord)];
}

std::optional<ShortMessage> shortMessage(std::uint32_t firstWord) QUILLO_REALTIME {
    const auto length = lengthIn(messageType(firstWord), byteAt(firstWord, 1));
    if (length == 0) {
        return std::nullopt;
    }
    return ShortMessage{{byteAt(firstWord, 1), byteAt(firstWord, 2), byteAt(firstWord, 3)}, length};
}

}  // namespace quillo
