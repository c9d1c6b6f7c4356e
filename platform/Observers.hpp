// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace quillo {

/// Keeps an observation alive; dropping it ends the observation.
using Observation = std::shared_ptr<const std::function<void()>>;

/// Those who want to know when something changes. [any but render], from several threads at once.
///
///     auto observation = unit.observeAllParameterValues([&] { reload(); });
class Observers {
public:
    /// `callback` runs on the thread that notifies, for as long as the returned observation lives, and once
    /// more if a notification is under way when it is dropped.
    [[nodiscard]] Observation add(std::function<void()> callback);

    /// Calls every observer that is still there, in the order in which they were added.
    void notify();

private:
    std::mutex mutex_;
    std::vector<std::weak_ptr<const std::function<void()>>> callbacks_;
};

}  // namespace quillo
