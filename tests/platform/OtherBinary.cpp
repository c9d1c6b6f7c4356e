// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/OtherBinary.hpp"

#include <thread>

#include "support/WatchedThread.hpp"

namespace {

/// Returns once `closer` has begun to close the gate and sleeps.
void awaitClosing(quillo::ReaderGate& gate, pid_t closer) {
    while (gate.tryEnter()) {
        gate.leave();
        std::this_thread::yield();
    }
    quillo::test::awaitSleepOrEnd(closer);
}

}  // namespace

void otherBinaryLeavesClosingGate(quillo::ReaderGate& gate, std::atomic<int>& entered, int rounds,
                                  pid_t closer) {
    while (entered < rounds) {
        if (gate.tryEnter()) {
            ++entered;
            awaitClosing(gate, closer);
            gate.leave();
        }
    }
}

void otherBinaryEnters(quillo::DispatchQueue& queue, std::uint64_t times) {
    for (; times > 0; --times) {
        const quillo::DispatchQueue::RenderEntry entry(queue);
    }
}

std::uint64_t otherBinaryCloses(quillo::DispatchQueue& queue, const std::atomic<bool>& done) {
    std::uint64_t barriers = 0;
    while (!done) {
        queue.barrierSync([&] { ++barriers; });
    }
    return barriers;
}
