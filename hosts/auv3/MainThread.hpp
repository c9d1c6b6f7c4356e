// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "platform/MainQueue.hpp"

namespace quillo {

/// [any] Whether the caller is the main thread. The platform's part.
[[nodiscard]] bool isMainThread();

/// [any but render] Runs `block` later on the main thread. The platform's part.
void runOnMainThread(std::function<void()> block);

/// [any but render] The one main queue of this process, made by its first user and never destroyed. It
/// has itself drained when something is posted; an editor that is open drains it some 30 times a second as
/// well.
[[nodiscard]] MainQueue& processMainQueue();

/// [main] Drains it; nothing throws.
void drainProcessMainQueue() noexcept;

}  // namespace quillo
