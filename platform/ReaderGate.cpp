// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ReaderGate.hpp"

#ifdef __linux__
#include <linux/futex.h>
#include <linux/membarrier.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <thread>
#endif

namespace quillo {

namespace {

using Word = std::atomic<std::uint32_t>;

/// A gate may be closed by the code of one shared object and left by that of another, a plug-in's and its
/// editor's. libstdc++ counts its waiters in a table of which each shared object can have a copy of its own,
/// and wakes nobody whom its own copy does not count: so the system is asked itself. Elsewhere the table is
/// in the C++ library, of which a process has one.
#ifdef __linux__
void waitWhile(const Word& word, std::uint32_t value) {
    ::syscall(SYS_futex, &word, FUTEX_WAIT_PRIVATE, value, nullptr, nullptr, 0);
}

void wakeOne(Word& word) {
    ::syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
}

/// Whether the system has done it.
bool membarrier(int command) {
    return ::syscall(SYS_membarrier, command, 0, 0) == 0;
}

/// ThreadSanitizer cannot see what a system call does.
bool canFenceOthers() {
#ifdef __SANITIZE_THREAD__
    return false;
#else
    return membarrier(MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED);
#endif
}

/// A child that was forked off may have to register again. A host that has since forbidden the call, in a
/// sandbox, leaves only time: a processor holds back what it writes for well under a microsecond.
void fenceOthers() {
    constexpr std::chrono::microseconds longEnough(100);
    if (membarrier(MEMBARRIER_CMD_PRIVATE_EXPEDITED) ||
        (canFenceOthers() && membarrier(MEMBARRIER_CMD_PRIVATE_EXPEDITED))) {
        return;
    }
    std::this_thread::sleep_for(longEnough);
}
#else
void waitWhile(const Word& word, std::uint32_t value) {
    word.wait(value, std::memory_order_relaxed);
}

void wakeOne(Word& word) {
    word.notify_one();
}

bool canFenceOthers() {
    return false;
}

void fenceOthers() {}
#endif

}  // namespace

ReaderGate::ReaderGate() : closerFences_(canFenceOthers()) {}

void ReaderGate::wakeCloser() QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("wakes the thread that closes the gate; waking does not wait")
    wakeOne(inside_);
    QUILLO_REALTIME_EXEMPT_END
}

void ReaderGate::close() {
    closed_.store(true);
    if (closerFences_) {
        fenceOthers();
    }
    for (auto inside = inside_.load(); inside != 0; inside = inside_.load()) {
        waitWhile(inside_, inside);
    }
}

void ReaderGate::open() {
    closed_.store(false);
}

}  // namespace quillo
