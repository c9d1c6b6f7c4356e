// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

#include "platform/PriorityInheritanceMutex.hpp"
#include "platform/ReaderGate.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// A concurrent queue whose blocks run on the caller's thread before the call returns.
///
/// `sync` blocks run side by side; a `barrierSync` block runs alone. Made for many short `sync` blocks, the
/// render thread's among them, and rare barriers: a `sync` block costs two atomic additions unless a barrier
/// is at work; then it waits for the barrier and lends it its priority.
///
/// Keep blocks short, and never enter a queue from inside one of its own blocks.
class DispatchQueue {
public:
    explicit DispatchQueue(std::string label) : label_(std::move(label)) {}

    [[nodiscard]] const std::string& label() const { return label_; }

    /// [any, render] Runs `block` alongside other `sync` blocks and returns what it returns.
    template <class Block>
    auto sync(Block&& block) {
        const Entry entry(*this);
        return std::forward<Block>(block)();
    }

    /// [any but render] Runs `block` while no other block runs and returns what it returns.
    template <class Block>
    auto barrierSync(Block&& block) {
        const Barrier barrier(*this);
        return std::forward<Block>(block)();
    }

private:
    class Entry {
    public:
        explicit Entry(DispatchQueue& queue) QUILLO_REALTIME : queue_(queue) { queue_.enter(); }
        ~Entry() QUILLO_REALTIME { queue_.gate_.leave(); }
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;

    private:
        DispatchQueue& queue_;
    };

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
    ReaderGate gate_;
    PriorityInheritanceMutex barrierMutex_;
};

}  // namespace quillo
