// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <thread>
#include <utility>
#include <vector>

namespace quillo {

/// A thread that is joined at the end of its scope, which whatever it refers to must outlive. Not every
/// standard library that the tests are built with has such a thread.
class JoinedThread {
public:
    template <class Body>
    explicit JoinedThread(Body body) : thread_(std::move(body)) {}
    JoinedThread(JoinedThread&&) = default;
    JoinedThread& operator=(JoinedThread&&) = delete;
    ~JoinedThread() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    void join() { thread_.join(); }

private:
    std::thread thread_;
};

/// Threads that all run `body`, each with its own number from 0; joined at the end of the scope, which `body`
/// must outlive.
class Threads {
public:
    template <class Body>
    Threads(std::size_t count, const Body& body) {
        threads_.reserve(count);
        for (std::size_t number = 0; number < count; ++number) {
            threads_.emplace_back([&body, number] { body(number); });
        }
    }

private:
    std::vector<JoinedThread> threads_;
};

}  // namespace quillo
