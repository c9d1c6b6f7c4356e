// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LogTape.hpp"

#include <utility>

namespace quillo {

void LogTape::record(Direction direction, const EventLogEntry& entry) QUILLO_REALTIME {
    const auto position = recorded_.load(std::memory_order_relaxed);
    if (position - taken_.load(std::memory_order_acquire) == slots_.size()) {
        lost_.fetch_add(1, std::memory_order_relaxed);
        return;
    }
    auto& slot = slots_[position % slots_.size()];
    slot.direction = direction;
    slot.entry = entry;
    recorded_.store(position + 1, std::memory_order_release);
}

LogTape::Contents LogTape::takeAll() {
    Contents contents;
    const auto end = recorded_.load(std::memory_order_acquire);
    auto position = taken_.load(std::memory_order_relaxed);
    contents.records.reserve(end - position);
    for (; position != end; ++position) {
        contents.records.push_back(std::exchange(slots_[position % slots_.size()], Record{}));
    }
    taken_.store(position, std::memory_order_release);
    contents.lost = lost_.exchange(0, std::memory_order_relaxed);
    return contents;
}

}  // namespace quillo
