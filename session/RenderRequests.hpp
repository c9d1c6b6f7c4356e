// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/RealTime.hpp"

namespace quillo {

/// What a panic has ended.
struct PanicResult {
    std::size_t notes = 0;
    std::size_t pedals = 0;
    std::size_t messages = 0;  ///< that waited

    bool operator==(const PanicResult&) const = default;
};

/// The same for the user, such as "Stopped 3 notes, let go of 1 pedal, cancelled 12 waiting messages",
/// without the parts that there were none of; "Nothing was sounding" when there was nothing.
[[nodiscard]] std::string inWords(const PanicResult& result);

/// What is asked of the render thread, which does it when its next block begins, and the answer to a panic.
/// Neither thread waits for the other; what is asked for again before it is done is done once.
class RenderRequests {
public:
    /// What can be asked for.
    enum class Kind : std::uint8_t { endOfNotes = 1, cancelAll = 2, panic = 4, load = 8 };

    /// What was asked for since the last time.
    class Kinds {
    public:
        Kinds() = default;
        explicit Kinds(std::uint8_t bits) QUILLO_REALTIME : bits_(bits) {}
        [[nodiscard]] bool has(Kind kind) const QUILLO_REALTIME {
            return (bits_ & static_cast<std::uint8_t>(kind)) != 0;
        }
        [[nodiscard]] bool any() const QUILLO_REALTIME { return bits_ != 0; }

    private:
        std::uint8_t bits_ = 0;
    };

    /// [any] Asks for it to be done when the next block begins.
    void ask(Kind kind) QUILLO_REALTIME {
        asked_.fetch_or(static_cast<std::uint8_t>(kind), std::memory_order_release);
    }

    /// [main] Asks for the cancellation of the output of this number; false, and nothing done, while the one
    /// before has not been taken.
    [[nodiscard]] bool tryCancel(std::uint64_t number) {
        std::uint64_t none = 0;
        return cancelled_.compare_exchange_strong(none, number, std::memory_order_release,
                                                  std::memory_order_relaxed);
    }

    /// [any] Whether something has been asked for that was not taken.
    [[nodiscard]] bool any() const QUILLO_REALTIME {
        return asked_.load(std::memory_order_relaxed) != 0 || cancelled_.load(std::memory_order_relaxed) != 0;
    }

    /// [render]
    [[nodiscard]] Kinds take() QUILLO_REALTIME {
        return asked_.load(std::memory_order_relaxed) == 0
                   ? Kinds()
                   : Kinds(asked_.exchange(0, std::memory_order_acquire));
    }

    /// [render] The number of the output that is to be cancelled; 0 when there is none.
    [[nodiscard]] std::uint64_t takeCancelled() QUILLO_REALTIME {
        return cancelled_.load(std::memory_order_relaxed) == 0
                   ? 0
                   : cancelled_.exchange(0, std::memory_order_acquire);
    }

    /// [render] A panic is over. What was not taken of the panics before counts too.
    void answer(const PanicResult& result) QUILLO_REALTIME {
        notes_.fetch_add(result.notes, std::memory_order_relaxed);
        pedals_.fetch_add(result.pedals, std::memory_order_relaxed);
        messages_.fetch_add(result.messages, std::memory_order_relaxed);
        answered_.store(true, std::memory_order_release);
    }

    /// [main] What the panics since the last call have ended; nothing when there were none.
    [[nodiscard]] std::optional<PanicResult> takeAnswer() {
        if (!answered_.exchange(false, std::memory_order_acquire)) {
            return std::nullopt;
        }
        return PanicResult{notes_.exchange(0, std::memory_order_relaxed),
                           pedals_.exchange(0, std::memory_order_relaxed),
                           messages_.exchange(0, std::memory_order_relaxed)};
    }

private:
    std::atomic<std::uint8_t> asked_{0};
    std::atomic<std::uint64_t> cancelled_{0};
    std::atomic<std::size_t> notes_{0};
    std::atomic<std::size_t> pedals_{0};
    std::atomic<std::size_t> messages_{0};
    std::atomic<bool> answered_{false};
};

}  // namespace quillo
