// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/RealTime.hpp"

namespace quillo {

/// What a unit sends during one block of its host, kept until the block's end: a unit may send out of time
/// order, and no host takes that. Storage is made once. [render], save for making one.
class OutgoingMessages {
public:
    /// One message, due `offset` frames after the block's start. The bytes live until `clear`.
    struct Message {
        std::uint32_t offset = 0;
        std::span<const std::uint8_t> bytes;
    };

    /// Room for so many messages, and for so many bytes in all of them together.
    OutgoingMessages(std::size_t messages, std::size_t bytes);

    void clear() QUILLO_REALTIME;

    /// Whether one more message of so many bytes would be kept.
    [[nodiscard]] bool hasRoomFor(std::size_t bytes) const QUILLO_REALTIME {
        return size_ < messages_.size() && bytes <= bytes_.size() - bytesUsed_;
    }

    /// Keeps a copy of the message. False, and nothing kept, when there is no room for all of it.
    [[nodiscard]] bool tryPush(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    /// Whether the messages came in ascending order of their offsets.
    [[nodiscard]] bool cameInTimeOrder() const QUILLO_REALTIME { return inOrder_; }

    /// The messages by ascending offset, those of one offset in the order in which they came. Valid until the
    /// next call that is not const.
    [[nodiscard]] std::span<const Message> inTimeOrder() QUILLO_REALTIME;

private:
    std::vector<Message> messages_;
    std::size_t size_ = 0;
    std::vector<std::uint8_t> bytes_;
    std::size_t bytesUsed_ = 0;
    bool inOrder_ = true;
};

}  // namespace quillo
