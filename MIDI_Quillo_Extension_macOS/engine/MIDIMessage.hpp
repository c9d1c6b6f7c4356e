// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <utility>

#include "engine/SharedBytes.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// One complete MIDI message, status byte first; an immutable value of any length.
///
/// Short messages lie inside the value and long ones (system exclusive) are shared, so that copying, moving
/// and dropping one neither allocates nor frees: they may all happen on the render thread. The storage of a
/// long message that is no longer held is freed when the next long one is made, or by
/// `SharedBytes::freeRetired`.
class MIDIMessage {
public:
    /// The longest message that needs no storage of its own, in bytes.
    static constexpr std::size_t maximumInlineSize = 7;

    /// The message without bytes.
    MIDIMessage() = default;

    /// [any but render] A message of any length.
    [[nodiscard]] static MIDIMessage copyOf(std::span<const std::uint8_t> bytes);

    /// A message of at most `maximumInlineSize` bytes.
    MIDIMessage(std::initializer_list<std::uint8_t> bytes) QUILLO_REALTIME;

    /// A message of at most `maximumInlineSize` bytes; what lies beyond is left out.
    [[nodiscard]] static MIDIMessage inlineCopyOf(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    /// The first `length` of these bytes, or all three.
    MIDIMessage(const std::array<std::uint8_t, 3>& bytes, std::size_t length) QUILLO_REALTIME
        : inline_(inlineOf(std::min(length, bytes.size()), bytes)) {}

    MIDIMessage(const MIDIMessage& other) QUILLO_REALTIME;
    MIDIMessage(MIDIMessage&& other) QUILLO_REALTIME;
    MIDIMessage& operator=(const MIDIMessage& other) QUILLO_REALTIME;
    MIDIMessage& operator=(MIDIMessage&& other) QUILLO_REALTIME;
    ~MIDIMessage() QUILLO_REALTIME;

    /// The bytes, valid as long as this value or a copy of it.
    [[nodiscard]] std::span<const std::uint8_t> bytes() const QUILLO_REALTIME;
    [[nodiscard]] std::size_t size() const QUILLO_REALTIME { return bytes().size(); }

    bool operator==(const MIDIMessage& other) const QUILLO_REALTIME;

private:
    /// The size and the bytes. They are made and copied as one word: a processor waits when it reads as a
    /// whole what has just been written in parts, and each event is written and copied a few times.
    using Inline = std::array<std::uint8_t, 1 + maximumInlineSize>;

    /// `bytes` may be more than `size`, but no more than there is room for.
    [[nodiscard]] static Inline inlineOf(std::size_t size, std::span<const std::uint8_t> bytes)
        QUILLO_REALTIME;

    /// Holds these bytes instead of those that it holds; either may be null.
    void share(SharedBytes* bytes) QUILLO_REALTIME;

    SharedBytes* shared_ = nullptr;
    Inline inline_{};
};

// What the render thread does with each message stands here, so that it costs no call.

inline MIDIMessage MIDIMessage::inlineCopyOf(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    const auto size = std::min(bytes.size(), maximumInlineSize);
    MIDIMessage message;
    message.inline_ = inlineOf(size, bytes.first(size));
    return message;
}

inline MIDIMessage::Inline MIDIMessage::inlineOf(std::size_t size,
                                                 std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    constexpr auto place = [](std::size_t index) {
        return 8 * (std::endian::native == std::endian::little ? index : maximumInlineSize - index);
    };
    auto word = std::uint64_t{size} << place(0);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        word |= std::uint64_t{bytes[i]} << place(i + 1);
    }
    return std::bit_cast<Inline>(word);
}

inline MIDIMessage::MIDIMessage(std::initializer_list<std::uint8_t> bytes) QUILLO_REALTIME
    : MIDIMessage(inlineCopyOf({bytes.begin(), bytes.size()})) {}

inline MIDIMessage::MIDIMessage(const MIDIMessage& other) QUILLO_REALTIME
    : shared_(other.shared_), inline_(other.inline_) {
    if (shared_ != nullptr) {
        shared_->hold();
    }
}

inline MIDIMessage::MIDIMessage(MIDIMessage&& other) QUILLO_REALTIME
    : shared_(std::exchange(other.shared_, nullptr)), inline_(std::exchange(other.inline_, Inline{})) {}

inline MIDIMessage& MIDIMessage::operator=(const MIDIMessage& other) QUILLO_REALTIME {
    if (this != &other) {
        inline_ = other.inline_;
        if (shared_ != other.shared_) {
            share(other.shared_);
        }
    }
    return *this;
}

inline MIDIMessage& MIDIMessage::operator=(MIDIMessage&& other) QUILLO_REALTIME {
    std::swap(shared_, other.shared_);
    std::swap(inline_, other.inline_);
    return *this;
}

inline MIDIMessage::~MIDIMessage() QUILLO_REALTIME {
    if (shared_ != nullptr) {
        shared_->release();
    }
}

inline std::span<const std::uint8_t> MIDIMessage::bytes() const QUILLO_REALTIME {
    if (shared_ != nullptr) {
        return shared_->bytes();
    }
    return {inline_.data() + 1, inline_[0]};
}

/// The messages of one output, emitted together: one, or two (bank select and program change). Copying
/// neither allocates nor frees.
class MessageList {
public:
    MessageList() = default;
    explicit MessageList(MIDIMessage only) QUILLO_REALTIME : messages_{std::move(only), {}}, count_(1) {}
    MessageList(MIDIMessage first, MIDIMessage second) QUILLO_REALTIME
        : messages_{std::move(first), std::move(second)}, count_(2) {}

    [[nodiscard]] std::span<const MIDIMessage> messages() const QUILLO_REALTIME {
        return {messages_.data(), count_};
    }

    bool operator==(const MessageList&) const = default;

private:
    std::array<MIDIMessage, 2> messages_;
    std::uint8_t count_ = 0;
};

}  // namespace quillo
