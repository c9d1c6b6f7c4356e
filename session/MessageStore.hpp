// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/RealTime.hpp"

namespace quillo {

/// Copies of messages, in the order in which they came. Its memory is set aside once; so much of it as an
/// ordinary block needs is touched then, and the rest when it is used. [render], save for making one.
class MessageStore {
public:
    /// How many messages there is room for, and for how many bytes in all of them together.
    static constexpr std::size_t mostMessages = 16384;
    static constexpr std::size_t mostBytes = 1U << 20U;

    /// How many of them an ordinary block may have.
    static constexpr std::size_t usualMessages = 1024;

    MessageStore();

    void clear() QUILLO_REALTIME {
        size_ = 0;
        bytesUsed_ = 0;
    }

    [[nodiscard]] std::size_t size() const QUILLO_REALTIME { return size_; }

    /// Whether so many more messages, of so many bytes in all, would be kept.
    [[nodiscard]] bool hasRoomFor(std::size_t messages, std::size_t bytes) const QUILLO_REALTIME {
        return messages <= mostMessages - size_ && bytes <= mostBytes - bytesUsed_;
    }

    /// Keeps a copy of the message. False, and nothing kept, when there is no room for all of it.
    [[nodiscard]] bool tryPush(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    /// The message that came as number `index`, from 0 on. It lives until `clear`.
    [[nodiscard]] std::span<const std::uint8_t> operator[](std::size_t index) const QUILLO_REALTIME {
        const auto& [first, length] = entries_[index];
        return {bytes_.get() + first, length};
    }

private:
    struct Entry {
        std::uint32_t first;  ///< of its bytes
        std::uint32_t length;
    };

    std::unique_ptr<Entry[]> entries_ = std::make_unique_for_overwrite<Entry[]>(mostMessages);
    std::unique_ptr<std::uint8_t[]> bytes_ = std::make_unique_for_overwrite<std::uint8_t[]>(mostBytes);
    std::size_t size_ = 0;
    std::size_t bytesUsed_ = 0;
};

}  // namespace quillo
