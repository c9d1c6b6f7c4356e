// SPDX-License-Identifier: GPL-3.0-or-later
#include "midi/MessageLength.hpp"

#include <algorithm>
#include <array>

namespace quillo {

namespace {

constexpr std::size_t none = 0;

/// By the status bytes' high nibbles 8 to E.
constexpr std::array<std::size_t, 7> channelLengths{3, 3, 3, 3, 2, 2, 3};

/// By the status bytes F0 to FF.
constexpr std::array<std::size_t, 16> systemLengths{none, 2,    3, 2, none, none, 1, none,
                                                    1,    none, 1, 1, 1,    none, 1, 1};

}  // namespace

std::size_t messageLength(std::uint8_t status) QUILLO_REALTIME {
    if (status < 0x80) {
        return none;
    }
    return status < 0xF0 ? channelLengths[(status >> 4) - 8u] : systemLengths[status - 0xF0u];
}

bool isCompleteShortMessage(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    return !bytes.empty() && messageLength(bytes[0]) == bytes.size() &&
           std::ranges::all_of(bytes.subspan(1), [](std::uint8_t byte) QUILLO_REALTIME { return byte < 0x80; });
}

bool isCompleteChannelMessage(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    return isCompleteShortMessage(bytes) && bytes[0] < 0xF0;
}

}  // namespace quillo
