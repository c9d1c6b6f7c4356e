// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogCallback.hpp"

#include <utility>

namespace quillo {

LogCallback& LogCallback::operator=(Function function) {
    if (function) {
        listen(std::move(function), {});
    } else {
        current_.store(nullptr, std::memory_order_relaxed);
    }
    return *this;
}

void LogCallback::listen(Function function, EndOfBlock endOfBlock) {
    given_.push_back(std::make_unique<const Listener>(std::move(function), std::move(endOfBlock)));
    current_.store(given_.back().get(), std::memory_order_release);
}

void LogCallback::also(Function function) {
    const auto* before = current_.load(std::memory_order_relaxed);
    if (before == nullptr) {
        *this = std::move(function);
        return;
    }
    const auto both = [before, function = std::move(function)](const EventLogEntry& entry) QUILLO_REALTIME {
        before->function(entry);
        function(entry);
    };
    listen(both, before->endOfBlock);
}

}  // namespace quillo
