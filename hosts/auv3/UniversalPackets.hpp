// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/RealTime.hpp"

/// Universal MIDI Packets, in which newer hosts may wrap MIDI 1.0. [any, render]
namespace quillo {

/// A MIDI 1.0 message of one to three bytes.
struct ShortMessage {
    std::array<std::uint8_t, 3> data{};
    std::size_t length = 0;

    [[nodiscard]] auto bytes() const QUILLO_REALTIME { return std::span(data).first(length); }
};

/// How many 32-bit words the packet that begins with this one has: 1 to 4.
[[nodiscard]] std::size_t packetLength(std::uint32_t firstWord) QUILLO_REALTIME;

/// The message in a packet of this first word: a MIDI 1.0 channel message, or a system message that is not
/// system exclusive. Nothing for any other packet.
[[nodiscard]] std::optional<ShortMessage> shortMessage(std::uint32_t firstWord) QUILLO_REALTIME;

/// Hands each message among the packets of `words` to `receive`, in order. A last packet that is cut short is
/// left out.
template <class Receive>
void forEachShortMessage(std::span<const std::uint32_t> words, Receive&& receive) QUILLO_REALTIME {
    while (!words.empty() && packetLength(words[0]) <= words.size()) {
        if (const auto message = shortMessage(words[0])) {
            receive(message->bytes());
        }
        words = words.subspan(packetLength(words[0]));
    }
}

}  // namespace quillo
