// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/MIDIMessage.hpp"

#include <algorithm>

namespace quillo {

MIDIMessage MIDIMessage::copyOf(std::span<const std::uint8_t> bytes) {
    if (bytes.size() <= maximumInlineSize) {
        return inlineCopyOf(bytes);
    }
    MIDIMessage message;
    message.shared_ = SharedBytes::make(bytes);
    return message;
}

bool MIDIMessage::operator==(const MIDIMessage& other) const QUILLO_REALTIME {
    return std::ranges::equal(bytes(), other.bytes());
}

void MIDIMessage::share(SharedBytes* bytes) QUILLO_REALTIME {
    if (bytes != nullptr) {
        bytes->hold();
    }
    if (shared_ != nullptr) {
        shared_->release();
    }
    shared_ = bytes;
}

}  // namespace quillo
