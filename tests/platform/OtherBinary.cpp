// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/OtherBinary.hpp"

#include <thread>

namespace {

/// Whoever closes the gate has time to fall asleep before the caller goes on.
void awaitClosing(quillo::ReaderGate& gate) {
    constexpr int turns = 100;
    while (gate.tryEnter()) {
        gate.leave();
        std::this_thread::yield();
    }
    for (int turn = 0; turn < turns; ++turn) {
        std::this_thread::yield();
    }
}

}  // namespace

void otherBinaryLeavesClosingGate(quillo::ReaderGate& gate, std::atomic<int>& entered, int rounds) {
    while (entered < rounds) {
        if (gate.tryEnter()) {
            ++entered;
            awaitClosing(gate);
            gate.leave();
        }
    }
}

void otherBinaryEnters(quillo::DispatchQueue& queue, std::uint64_t times) {
    for (; times > 0; --times) {
        const quillo::DispatchQueue::RenderEntry entry(queue);
    }
}

void otherBinaryCloses(quillo::DispatchQueue& queue, const std::atomic<bool>& done) {
    while (!done) {
        queue.barrierSync([] {});
    }
}
