// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/OutgoingMessages.hpp"

#include <algorithm>

namespace quillo {

OutgoingMessages::OutgoingMessages(std::size_t messages, std::size_t bytes)
    : messages_(messages), bytes_(bytes) {}

void OutgoingMessages::clear() QUILLO_REALTIME {
    size_ = 0;
    bytesUsed_ = 0;
    inOrder_ = true;
}

bool OutgoingMessages::tryPush(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (!hasRoomFor(bytes.size())) {
        return false;
    }
    const auto room = std::span(bytes_).subspan(bytesUsed_, bytes.size());
    std::ranges::copy(bytes, room.begin());
    inOrder_ = inOrder_ && (size_ == 0 || messages_[size_ - 1].offset <= offset);
    messages_[size_++] = {offset, room};
    bytesUsed_ += bytes.size();
    return true;
}

/// The bytes were stored in the order of arrival, so their addresses tell which of two messages of one offset
/// came first; messages without bytes are all alike.
std::span<const OutgoingMessages::Message> OutgoingMessages::inTimeOrder() QUILLO_REALTIME {
    const auto messages = std::span(messages_).first(size_);
    if (!inOrder_) {
        std::ranges::sort(messages, [](const Message& first, const Message& second) QUILLO_REALTIME {
            return first.offset != second.offset ? first.offset < second.offset
                                                 : first.bytes.data() < second.bytes.data();
        });
    }
    return messages;
}

}  // namespace quillo
