// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unistd.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <utility>

#include "support/Threads.hpp"

namespace quillo::test {

/// Returns once a thread of this process sleeps in the system, waiting for another one, or has ended.
inline void awaitSleepOrEnd(pid_t thread) {
    const auto path = "/proc/self/task/" + std::to_string(thread) + "/stat";
    const auto runs = [&path] {
        std::ifstream file(path);
        const std::string text(std::istreambuf_iterator<char>(file), {});
        const auto endOfName = text.rfind(')');  // then a space and the state
        return endOfName != std::string::npos && text.substr(endOfName + 2, 1) == "R";
    };
    while (runs()) {
        std::this_thread::yield();
    }
}

/// A thread that can be seen to wait; joined at the end of the scope.
class WatchedThread {
public:
    template <class Body>
    explicit WatchedThread(Body body)
        : thread_([this, run = std::move(body)] {
              id_ = ::gettid();
              run();
          }) {}

    /// Returns once the body waits for another thread, or has ended.
    void awaitSleepOrEnd() const {
        while (id_ == 0) {
            std::this_thread::yield();
        }
        test::awaitSleepOrEnd(id_);
    }

    void join() { thread_.join(); }

private:
    std::atomic<pid_t> id_ = 0;
    JoinedThread thread_;
};

}  // namespace quillo::test
