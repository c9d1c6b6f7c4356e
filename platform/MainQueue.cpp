// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MainQueue.hpp"

#include <iterator>
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
    std::vector<std::function<void()>> blocks;
    {
        const std::lock_guard lock(mutex_);
        blocks.swap(blocks_);
    }
    std::size_t ran = 0;
    try {
        polls_.notify();
        while (ran < blocks.size()) {
            blocks[ran++]();
        }
    } catch (...) {
        putBack(std::span(blocks).subspan(ran));
        throw;
    }
    return ran;
}

/// In front of what has been posted meanwhile.
void MainQueue::putBack(std::span<std::function<void()>> blocks) {
    if (blocks.empty()) {
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        blocks_.insert(blocks_.begin(), std::move_iterator(blocks.begin()), std::move_iterator(blocks.end()));
    }
    if (wake_) {
        wake_();
    }
}

}  // namespace quillo
