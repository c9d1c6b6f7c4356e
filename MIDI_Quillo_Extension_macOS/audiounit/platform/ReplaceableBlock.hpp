// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "platform/RealTime.hpp"

namespace quillo {

/// A block that the host sets, replaces and takes away whenever it likes, also while the render thread calls
/// it. A block that was replaced is freed by the thread that replaced it: at once, or with the next
/// replacement where a cycle was still using it. The render thread neither waits nor frees.
template <class Block>
class ReplaceableBlock {
public:
    /// What one cycle uses: the block that was set when the cycle asked for it, for as long as this object
    /// lives.
    class Use {
    public:
        explicit Use(ReplaceableBlock& set) QUILLO_REALTIME : set_(set), block_(set.holdCurrent()) {}
        ~Use() { set_.held_.store(nullptr, std::memory_order_release); }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

        /// Null where the host offers none.
        [[nodiscard]] const Block* get() const QUILLO_REALTIME { return block_; }

    private:
        ReplaceableBlock& set_;
        const Block* block_;
    };

    /// [any but render, one at a time] Cycles see `block` from the next on; an absent one takes the block
    /// away.
    ReplaceableBlock& operator=(Block block) {
        if (block) {
            current_ = kept_.emplace_back(std::make_unique<const Block>(std::move(block))).get();
        } else {
            current_ = nullptr;
        }
        std::erase_if(kept_, [current = current_.load(), held = held_.load()](const auto& one) {
            return one.get() != current && one.get() != held;
        });
        return *this;
    }

    /// [any] Whether a block is set.
    explicit operator bool() const { return current_ != nullptr; }

    /// [render] One at a time.
    [[nodiscard]] Use use() QUILLO_REALTIME { return Use(*this); }

private:
    /// The current block, with the mark on it that keeps it from being freed. A block that was replaced
    /// before it was marked may be gone already, so the mark counts only if the block is still the current
    /// one afterwards.
    const Block* holdCurrent() QUILLO_REALTIME {
        const Block* block = current_;
        const Block* marked = nullptr;
        do {
            marked = block;
            held_ = marked;
            block = current_;
        } while (block != marked);
        return block;
    }

    std::atomic<const Block*> current_{nullptr};
    std::atomic<const Block*> held_{nullptr};  ///< written by [render]: what must not be freed now
    std::vector<std::unique_ptr<const Block>> kept_;
};

}  // namespace quillo
