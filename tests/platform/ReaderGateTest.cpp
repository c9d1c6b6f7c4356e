// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ReaderGate.hpp"

#include <gtest/gtest.h>

#ifdef __linux__
#include <linux/filter.h>
#include <linux/membarrier.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <latch>
#include <thread>

#include "support/Threads.hpp"

namespace quillo {
namespace {

/// Passes the gate once if it is open; whether it was.
bool passes(ReaderGate& gate) {
    if (!gate.tryEnter()) {
        return false;
    }
    gate.leave();
    return true;
}

/// Waits until another thread has begun to close the gate.
void awaitClosing(ReaderGate& gate) {
    while (passes(gate)) {
        std::this_thread::yield();
    }
}

TEST(ReaderGate, IsOpenAtFirstAndLetsTheReaderInAgain) {
    ReaderGate gate;
    EXPECT_TRUE(gate.tryEnter());
    EXPECT_TRUE(gate.tryEnter());
    EXPECT_TRUE(gate.tryEnter());
    gate.leave();
    gate.leave();
    gate.leave();
    gate.close();
    EXPECT_FALSE(gate.tryEnter());
}

TEST(ReaderGate, KeepsReadersOutWhileClosed) {
    ReaderGate gate;
    gate.close();
    EXPECT_FALSE(gate.tryEnter());
    EXPECT_FALSE(gate.tryEnter());
    gate.open();
    EXPECT_TRUE(passes(gate));
}

TEST(ReaderGate, ARefusalLeavesNoTrace) {
    ReaderGate gate;
    gate.close();
    EXPECT_FALSE(gate.tryEnter());
    gate.open();
    gate.close();
    gate.open();
    EXPECT_TRUE(passes(gate));
}

TEST(ReaderGate, ClosesOnceTheLastOneHasLeft) {
    ReaderGate gate;
    std::atomic<int> left = 0;
    int leftWhenClosed = -1;
    ASSERT_TRUE(gate.tryEnter());
    ASSERT_TRUE(gate.tryEnter());
    {
        const JoinedThread closer([&] {
            gate.close();
            leftWhenClosed = left;
        });
        awaitClosing(gate);
        ++left;
        gate.leave();
        EXPECT_FALSE(passes(gate));
        ++left;
        gate.leave();
    }
    EXPECT_EQ(leftWhenClosed, 2);
}

/// A reader that bounces off a closed gate counts as inside for a moment: it must neither keep the closer
/// asleep nor let it go on too early.
TEST(ReaderGate, AlwaysWakesTheCloserWhileTheReaderBouncesOff) {
    constexpr int rounds = 20000;
    ReaderGate gate;
    std::atomic<int> inside = 0;
    std::atomic<bool> stop = false;
    std::atomic<int> passed = 0;
    std::latch bothHere(2);
    int intruders = 0;
    const auto visit = [&] {
        bothHere.arrive_and_wait();
        while (!stop) {
            if (gate.tryEnter()) {
                ++inside;
                ++passed;
                --inside;
                gate.leave();
            }
        }
    };
    {
        const JoinedThread visitor(visit);
        bothHere.arrive_and_wait();
        for (int round = 0; round < rounds; ++round) {
            gate.close();
            intruders += inside;
            gate.open();
        }
        while (passed == 0) {
            std::this_thread::yield();
        }
        stop = true;
    }
    EXPECT_EQ(intruders, 0);
}

/// Cache lines that two processors write by turns: what is written behind them waits until all have come
/// over.
class SlowStores {
public:
    void write() {
        for (auto& line : lines_) {
            line.value.store(1, std::memory_order_relaxed);
        }
    }

private:
    struct alignas(64) Line {
        std::atomic<int> value = 0;
    };
    std::array<Line, 8> lines_;
};

/// How often the reader saw a change while it was inside. It stays for as long as a closer needs to close the
/// gate and change something, and its entry is slow to be seen: a closer that overlooks it, because neither
/// side fences, is found out sooner or later. A reader that seldom gets in is given a hundred times the
/// rounds.
int changesSeenInside(ReaderGate& gate, int rounds) {
    const int leastVisits = rounds / 200;
    constexpr int looks = 100;
    SlowStores stores;
    std::atomic<int> value = 0;
    std::atomic<int> visits = 0;
    std::atomic<bool> stop = false;
    int changes = 0;
    {
        const JoinedThread reader([&] {
            while (!stop) {
                stores.write();
                if (gate.tryEnter()) {
                    const int before = value.load(std::memory_order_relaxed);
                    for (int look = 0; look < looks; ++look) {
                        changes += value.load(std::memory_order_relaxed) == before ? 0 : 1;
                    }
                    gate.leave();
                    visits.store(visits.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
                }
            }
        });
        for (int round = 0; round < rounds || (visits < leastVisits && round < 100 * rounds); ++round) {
            stores.write();
            gate.close();
            value.fetch_add(1, std::memory_order_relaxed);
            gate.open();
            for (int turn = 0; turn < round % looks; ++turn) {
                std::atomic_signal_fence(std::memory_order_seq_cst);
            }
        }
        stop = true;
    }
    EXPECT_GE(visits, leastVisits);
    return changes;
}

TEST(ReaderGate, NothingChangesWhileTheReaderIsInside) {
    ReaderGate gate;
    EXPECT_EQ(changesSeenInside(gate, 200000), 0);
}

#if defined(__linux__) && !defined(QUILLO_EMULATED)  // An emulated system has no sandboxes.
/// As a host's sandbox does: from now on this process and its threads get an error for the call.
void forbidMembarrier() {
    std::array filter{
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_membarrier, 0, 1),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
    ASSERT_EQ(::syscall(SYS_membarrier, MEMBARRIER_CMD_QUERY, 0, 0), -1);
}

/// In a process of its own, which ends by an alarm when the closer never comes through.
TEST(ReaderGateDeathTest, ClosesAndKeepsTheReaderSafeWhenTheSystemNoLongerFencesForIt) {
    constexpr int rounds = 2000;
    constexpr unsigned seconds = 240;
    const auto closeInSandbox = [] {
        ::alarm(seconds);
        ReaderGate gate;
        forbidMembarrier();
        EXPECT_EQ(changesSeenInside(gate, rounds), 0);
        std::_Exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(closeInSandbox(), testing::ExitedWithCode(0), "");
}
#endif

TEST(ReaderGate, EachSideSeesWhatTheOtherWrote) {
    constexpr int rounds = 2000;
    ReaderGate gate;
    int fromCloser = 0;
    int fromVisitor = 0;
    bool goesBack = false;
    bool isAnswered = false;
    std::atomic<bool> isOver = false;
    {
        const JoinedThread visitor([&] {
            while (!isOver) {
                if (gate.tryEnter()) {
                    goesBack = goesBack || fromCloser < fromVisitor;
                    fromVisitor = fromCloser;
                    gate.leave();
                }
            }
        });
        for (int round = 1; round <= rounds || (!isAnswered && round < 1000 * rounds); ++round) {
            gate.close();
            isAnswered = fromVisitor == rounds;
            fromCloser = std::min(round, rounds);
            gate.open();
            std::this_thread::yield();
        }
        isOver = true;
    }
    EXPECT_TRUE(isAnswered);
    EXPECT_FALSE(goesBack);
}

}  // namespace
}  // namespace quillo
