// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <iosfwd>

namespace quillo::test {

/// How often a thread called what a render thread must not call.
struct CallCounts {
    std::size_t allocations = 0;  ///< `malloc` and its kin; `operator new` comes down to it
    std::size_t frees = 0;        ///< `free`, of something
    std::size_t locks = 0;        ///< mutexes and read-write locks, tried ones too, and waits for conditions

    bool operator==(const CallCounts&) const = default;
    CallCounts& operator+=(const CallCounts& more);
    friend void PrintTo(const CallCounts& counts, std::ostream* out);
};

inline constexpr CallCounts noCalls{};

/// Linked into a program it stands between the program, with all its libraries, and the system's allocator
/// and locks.
///
///     CallCounter::Scope scope;
///     render(cycle);
///     EXPECT_EQ(scope.counts(), noCalls);
///
/// In builds with sanitizers, which have an allocator and locks of their own, locks are not counted, nor,
/// with ThreadSanitizer, aligned allocations; with RealtimeSanitizer, which stops at the first forbidden
/// call, nothing is.
class CallCounter {
public:
    /// Counts the calls of the thread that makes it, as long as it lives. In a scope within a scope only the
    /// inner one counts.
    class Scope {
    public:
        Scope() noexcept;
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

        /// The calls so far.
        [[nodiscard]] const CallCounts& counts() const { return counts_; }

    private:
        CallCounts counts_;
        CallCounts* outer_;
    };

    /// What stands between the program and the system tells here.
    static void countAllocation() noexcept;
    static void countFree(const volatile void* memory) noexcept;
    static void countLock() noexcept;
};

}  // namespace quillo::test
