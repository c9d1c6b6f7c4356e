// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/MIDIMessage.hpp"

#include <algorithm>
#include <utility>

#include "engine/SharedBytes.hpp"

namespace quillo {

MIDIMessage MIDIMessage::copyOf(std::span<const std::uint8_t> bytes) {
    if (bytes.size() <= maximumInlineSize) {
        return inlineCopyOf(bytes);
    }
    MIDIMessage message;
    message.shared_ = SharedBytes::make(bytes);
    return message;
}

MIDIMessage MIDIMessage::inlineCopyOf(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    MIDIMessage message;
    message.inlineSize_ = static_cast<std::uint8_t>(std::min(bytes.size(), maximumInlineSize));
    std::copy_n(bytes.begin(), message.inlineSize_, message.inline_.begin());
    return message;
}

MIDIMessage::MIDIMessage(std::initializer_list<std::uint8_t> bytes) QUILLO_REALTIME
    : MIDIMessage(inlineCopyOf({bytes.begin(), bytes.size()})) {}

MIDIMessage::MIDIMessage(const MIDIMessage& other) QUILLO_REALTIME
    : shared_(other.shared_), inlineSize_(other.inlineSize_), inline_(other.inline_) {
    if (shared_ != nullptr) {
        shared_->hold();
    }
}

MIDIMessage::MIDIMessage(MIDIMessage&& other) QUILLO_REALTIME
    : shared_(std::exchange(other.shared_, nullptr)),
      inlineSize_(std::exchange(other.inlineSize_, std::uint8_t{0})),
      inline_(other.inline_) {}

MIDIMessage& MIDIMessage::operator=(const MIDIMessage& other) QUILLO_REALTIME {
    return *this = MIDIMessage(other);
}

MIDIMessage& MIDIMessage::operator=(MIDIMessage&& other) QUILLO_REALTIME {
    std::swap(shared_, other.shared_);
    std::swap(inlineSize_, other.inlineSize_);
    std::swap(inline_, other.inline_);
    return *this;
}

MIDIMessage::~MIDIMessage() QUILLO_REALTIME {
    if (shared_ != nullptr) {
        shared_->release();
    }
}

std::span<const std::uint8_t> MIDIMessage::bytes() const QUILLO_REALTIME {
    if (shared_ != nullptr) {
        return shared_->bytes();
    }
    return {inline_.data(), inlineSize_};
}

bool MIDIMessage::operator==(const MIDIMessage& other) const QUILLO_REALTIME {
    return std::ranges::equal(bytes(), other.bytes());
}

void MIDIMessage::freeRetired() {
    SharedBytes::freeRetired();
}

}  // namespace quillo
