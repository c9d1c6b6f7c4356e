// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/MainThread.hpp"

#include "hosts/auv3/Failure.hpp"

namespace quillo {

namespace {

MainQueue& makeMainQueue() {
    auto* queue = new MainQueue(isMainThread);
    queue->setWake([] { runOnMainThread(drainProcessMainQueue); });
    return *queue;
}

}  // namespace

MainQueue& processMainQueue() {
    static MainQueue& queue = makeMainQueue();
    return queue;
}

void drainProcessMainQueue() noexcept {
    static_cast<void>(attempt([] { processMainQueue().drain(); }));
}

}  // namespace quillo
