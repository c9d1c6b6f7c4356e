// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <span>
#include <thread>
#include <utility>
#include <vector>

#include "platform/Observers.hpp"

namespace quillo {

/// Work that must run on the user-interface thread, in the order in which it was posted. The thread that
/// makes the queue is the main thread, unless the queue is given a way to recognise it. With a window, the
/// owner of the window's message loop calls `drain` from it whenever `wake` asks for it; a program without a
/// window drains the queue itself.
class MainQueue {
public:
    MainQueue()
        : MainQueue([maker = std::this_thread::get_id()] { return std::this_thread::get_id() == maker; }) {}

    /// `isMainThread` says whether the caller is the main thread: for a platform that has such a thread and
    /// may make the queue on any other.
    explicit MainQueue(std::function<bool()> isMainThread) : isMainThread_(std::move(isMainThread)) {}

    /// [main, before anything is posted] `wake` runs on the posting thread after each post to an empty queue.
    void setWake(std::function<void()> wake) { wake_ = std::move(wake); }

    /// [any] Whether the caller is the main thread.
    [[nodiscard]] bool isMainThread() const { return isMainThread_(); }

    /// [any but render] Runs `block` later, on the main thread.
    void async(std::function<void()> block);

    /// [main] `poll` runs in every `drain`, before the posted blocks, as long as the returned observation
    /// lives: for work whose source cannot post, such as the render thread.
    [[nodiscard]] Observation onDrain(std::function<void()> poll) { return polls_.add(std::move(poll)); }

    /// [main] Runs the polls and what was posted before the call; what these blocks post waits for the next
    /// one. Returns how many blocks ran. What a poll or a block throws leaves from here; the blocks behind
    /// it wait for the next call, which is asked for.
    std::size_t drain();

private:
    void putBack(std::span<std::function<void()>> blocks);

    std::function<bool()> isMainThread_;
    std::function<void()> wake_;
    Observers polls_;
    std::mutex mutex_;
    std::vector<std::function<void()>> blocks_;
};

}  // namespace quillo
