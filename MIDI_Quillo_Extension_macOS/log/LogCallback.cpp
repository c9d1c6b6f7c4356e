// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogCallback.hpp"

#include <utility>

namespace quillo {

LogCallback& LogCallback::operator=(Function function) {
    if (!function) {
        current_.store(nullptr, std::memory_order_relaxed);
        return *this;
    }
    given_.push_back(std::make_unique<const Function>(std::move(function)));
    current_.store(given_.back().get(), std::memory_order_release);
    return *this;
}

void LogCallback::also(Function function) {
    const auto* before = current_.load(std::memory_order_relaxed);
    if (before == nullptr) {
        *this = std::move(function);
        return;
    }
    *this = [before, function = std::move(function)](const EventLogEntry& entry) QUILLO_REALTIME {
        (*before)(entry);
        function(entry);
    };
}

}  // namespace quillo
