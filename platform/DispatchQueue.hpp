// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <mutex>
#include <pthread.h>
#include <shared_mutex>
#include <string>
#include <utility>

#include "platform/ReaderGate.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// A mutex whose holder runs, while others wait for it, with the priority of the most urgent of them (where
/// the platform offers that). Meets the standard's BasicLockable.
class PriorityInheritanceMutex {
public:
    PriorityInheritanceMutex();
    ~PriorityInheritanceMutex();
    PriorityInheritanceMutex(const PriorityInheritanceMutex&) = delete;
    PriorityInheritanceMutex& operator=(const PriorityInheritanceMutex&) = delete;

    void lock() noexcept;
    void unlock() noexcept;

private:
    pthread_mutex_t mutex_;
};

/// A concurrent queue whose blocks run on the caller's thread before the call returns.
///
/// `sync` blocks run side by side, and so does what the render thread does while it has entered; a
/// `barrierSync` block runs alone. Made for a render thread that enters all the time and for rare barriers:
/// entering costs no locked instruction where the system allows that (see `ReaderGate`), unless a barrier is
/// at work; then the render thread waits for it and lends it its priority.
///
/// Other readers never keep the render thread waiting, however seldom they run: a barrier waits for them
/// first, and only then shuts out the render thread.
///
/// Keep blocks short, and never enter a queue from inside one of its own blocks: a barrier that waits for the
/// outer one blocks the inner one for good.
class DispatchQueue {
public:
    explicit DispatchQueue(std::string label) : label_(std::move(label)) {}

    [[nodiscard]] const std::string& label() const { return label_; }

    /// [any but render] Runs `block` alongside other `sync` blocks and returns what it returns.
    template <class Block>
    auto sync(Block&& block) {
        const std::shared_lock reader(readers_);
        return std::forward<Block>(block)();
    }

    /// [any but render] Runs `block` while no other block runs and returns what it returns.
    template <class Block>
    auto barrierSync(Block&& block) {
        const Barrier barrier(*this);
        return std::forward<Block>(block)();
    }

    /// [render, one thread at a time] A block that is as long as this object lives.
    class RenderEntry {
    public:
        explicit RenderEntry(DispatchQueue& queue) QUILLO_REALTIME : queue_(queue) { queue_.enter(); }
        ~RenderEntry() QUILLO_REALTIME { queue_.gate_.leave(); }
        RenderEntry(const RenderEntry&) = delete;
        RenderEntry& operator=(const RenderEntry&) = delete;

    private:
        DispatchQueue& queue_;
    };

private:
    class Barrier {
    public:
        explicit Barrier(DispatchQueue& queue);
        ~Barrier();
        Barrier(const Barrier&) = delete;
        Barrier& operator=(const Barrier&) = delete;

    private:
        DispatchQueue& queue_;
    };

    void enter() QUILLO_REALTIME {
        if (!gate_.tryEnter()) {
            enterBehindBarrier();
        }
    }
    void enterBehindBarrier() QUILLO_REALTIME;

    std::string label_;
    std::shared_mutex readers_;
    PriorityInheritanceMutex barrierMutex_;  ///< of a thread that shuts out the render thread
    ReaderGate gate_;                        ///< of the render thread
};

}  // namespace quillo
