// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Observers.hpp"

#include <utility>

namespace quillo {

Observation Observers::add(std::function<void()> callback) {
    auto observation = std::make_shared<const std::function<void()>>(std::move(callback));
    const std::lock_guard lock(mutex_);
    std::erase_if(callbacks_, [](const auto& weak) { return weak.expired(); });
    callbacks_.emplace_back(observation);
    return observation;
}

void Observers::notify() {
    std::vector<Observation> current;
    {
        const std::lock_guard lock(mutex_);
        for (const auto& weak : callbacks_) {
            if (auto callback = weak.lock()) {
                current.push_back(std::move(callback));
            }
        }
    }
    for (const auto& callback : current) {
        (*callback)();
    }
}

}  // namespace quillo
