// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MainQueue.hpp"

#include <utility>

namespace quillo {

void MainQueue::async(std::function<void()> block) {
    bool wasEmpty = false;
    {
        const std::lock_guard lock(mutex_);
        wasEmpty = blocks_.empty();
        blocks_.push_back(std::move(block));
    }
    if (wasEmpty && wake_) {
        wake_();
    }
}

std::size_t MainQueue::drain() {
    polls_.notify();
    std::vector<std::function<void()>> blocks;
    {
        const std::lock_guard lock(mutex_);
        blocks.swap(blocks_);
    }
    for (const auto& block : blocks) {
        block();
    }
    return blocks.size();
}

}  // namespace quillo
