// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/WaitingSnapshot.hpp"

#include <algorithm>

namespace quillo {

void WaitingSnapshot::request() {
    if (asked_.load(std::memory_order_acquire)) {
        return;
    }
    copies_.resize(RuleProcessor::delayCapacity);
    std::fill_n(copies_.begin(), size_, Copy());
    size_ = 0;
    slot_ = 0;
    isMade_ = true;
    asked_.store(true, std::memory_order_release);
}

std::optional<std::span<const WaitingSnapshot::Copy>> WaitingSnapshot::copies() const {
    if (asked_.load(std::memory_order_acquire) || !isMade_) {
        return std::nullopt;
    }
    return std::span(copies_).first(size_);
}

void WaitingSnapshot::copySome(RuleProcessor& processor) QUILLO_REALTIME {
    const auto copy = [this](std::uint64_t number, const DelayedMessage& output) QUILLO_REALTIME {
        copies_[size_++] = {number, output};
    };
    slot_ = processor.visitWaiting(slot_, slotsPerBlock, copy);
    if (slot_ == 0) {
        asked_.store(false, std::memory_order_release);
    }
}

}  // namespace quillo
