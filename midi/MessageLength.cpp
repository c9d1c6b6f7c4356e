// SPDX-License-Identifier: GPL-3.0-or-later
#include "midi/MessageLength.hpp"

namespace quillo {

bool isCompleteShortMessage(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    const auto mayStandAt = [bytes](std::size_t index) QUILLO_REALTIME {
        return index >= bytes.size() || midi::isData(bytes[index]);
    };
    return !bytes.empty() && messageLength(bytes[0]) == bytes.size() && mayStandAt(1) && mayStandAt(2);
}

bool isCompleteChannelMessage(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    return isCompleteShortMessage(bytes) && !midi::isSystem(bytes[0]);
}

}  // namespace quillo
