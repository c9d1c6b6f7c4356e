// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "engine/MIDIMessage.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

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
