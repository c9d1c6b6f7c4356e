// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ReaderGate.hpp"

#ifdef __linux__
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace quillo {

namespace {

using Word = std::atomic<std::uint32_t>;

/// A gate may be closed by the code of one shared object and left by that of another, a plug-in's and its editor's.
/// libstdc++ counts its waiters in a table of which each shared object can have a copy of its own, and wakes
/// nobody whom its own copy does not count: so the system is asked itself. Elsewhere the table is in the C++
/// library, of which a process has one.
#ifdef __linux__
void waitWhile(const Word& word, std::uint32_t value) {
    ::syscall(SYS_futex, &word, FUTEX_WAIT_PRIVATE, value, nullptr, nullptr, 0);
}

void wakeOne(Word& word) {
    ::syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
}
#else
void waitWhile(const Word& word, std::uint32_t value) {
    word.wait(value, std::memory_order_relaxed);
}

void wakeOne(Word& word) {
    word.notify_one();
}
#endif

}  // namespace

void ReaderGate::wakeCloser() QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("wakes the thread that closes the gate; waking does not wait")
    wakeOne(state_);
    QUILLO_REALTIME_EXEMPT_END
}

void ReaderGate::close() {
    auto state = state_.fetch_or(closedBit, std::memory_order_acq_rel) | closedBit;
    while (state != closedBit) {
        waitWhile(state_, state);
        state = state_.load(std::memory_order_acquire);
    }
}

void ReaderGate::open() {
    state_.fetch_and(~closedBit, std::memory_order_release);
}

}  // namespace quillo
