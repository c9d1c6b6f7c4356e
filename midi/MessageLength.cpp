// SPDX-License-Identifier: GPL-3.0-or-later
#include "midi/MessageLength.hpp"

#include <algorithm>

namespace quillo {

bool isCompleteShortMessage(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    return !bytes.empty() && messageLength(bytes[0]) == bytes.size() &&
           std::ranges::all_of(bytes.subspan(1), midi::isData);
}

bool isCompleteChannelMessage(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    return isCompleteShortMessage(bytes) && !midi::isSystem(bytes[0]);
}

}  // namespace quillo
