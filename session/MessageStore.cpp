// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/MessageStore.hpp"

#include <algorithm>

namespace quillo {

MessageStore::MessageStore() {
    constexpr std::size_t usualBytes = 4 * usualMessages;
    std::fill_n(entries_.get(), usualMessages, Entry{});
    std::fill_n(bytes_.get(), usualBytes, std::uint8_t{0});
}

bool MessageStore::tryPush(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (!hasRoomFor(1, bytes.size())) {
        return false;
    }
    entries_[size_++] = {static_cast<std::uint32_t>(bytesUsed_), static_cast<std::uint32_t>(bytes.size())};
    std::ranges::copy(bytes, bytes_.get() + bytesUsed_);
    bytesUsed_ += bytes.size();
    return true;
}

}  // namespace quillo
