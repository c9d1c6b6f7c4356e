// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "engine/DelayedMessage.hpp"
#include "engine/RuleProcessor.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// Copies of what waits in a processor's queue, made by the render thread on request, a little in each block:
/// it never waits, and does nothing while nobody asks. An output that waits from the first of these blocks to
/// the last is copied once; one that comes or goes in between may be.
///
///     snapshot.request();                    // [main]
///     snapshot.goOn(processor);              // [render], in each block
///     if (const auto copies = snapshot.copies()) { show(*copies); snapshot.request(); }    // [main]
class WaitingSnapshot {
public:
    /// How many of the queue's slots are looked at in a block.
    static constexpr std::size_t slotsPerBlock = 256;

    struct Copy {
        std::uint64_t number;
        DelayedMessage output;
    };

    /// [main] Asks for new copies in the place of the last ones; does nothing while some are being made.
    void request();

    /// [main] The copies that were asked for last; nothing until they are complete. They stay until the next
    /// request.
    [[nodiscard]] std::optional<std::span<const Copy>> copies() const;

    /// [render] Makes some more of the copies that were asked for. Between two cycles.
    void goOn(RuleProcessor& processor) QUILLO_REALTIME {
        if (asked_.load(std::memory_order_acquire)) {
            copySome(processor);
        }
    }

private:
    void copySome(RuleProcessor& processor) QUILLO_REALTIME;

    std::atomic<bool> asked_{false};  ///< while it is, all that follows belongs to the render thread
    bool isMade_ = false;
    std::vector<Copy> copies_;  ///< as many as can wait, since the first request
    std::size_t size_ = 0;
    std::size_t slot_ = 0;  ///< where the next block goes on
};

}  // namespace quillo
