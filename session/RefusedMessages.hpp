// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/RealTime.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// What a host had no room for, from the render thread to the main thread without a lock: how many messages,
/// and of the first few enough to find the rule that sent them.
class RefusedMessages {
public:
    /// A system exclusive message; of all others only that there were some, without size and bytes.
    struct Message {
        std::array<std::uint8_t, 32> beginning{};
        std::size_t size = 0;
        bool fitsNever = false;  ///< not even in a block of its own

        bool operator==(const Message&) const = default;

        /// Whether all that is kept of the message is the same as of these bytes.
        [[nodiscard]] bool matches(std::span<const std::uint8_t> bytes) const;
    };

    /// How many messages are kept until they are taken.
    static constexpr std::uint64_t room = 16;

    /// [render] Counts a message, and keeps it if there is room.
    void add(std::span<const std::uint8_t> bytes, bool fitsNever) QUILLO_REALTIME;

    /// [any] How many were refused since this was made: there was no room for them in a block.
    [[nodiscard]] std::uint64_t refused() const { return refused_; }
    /// [any] How many were left out: there will never be room for them.
    [[nodiscard]] std::uint64_t leftOut() const { return leftOut_; }

    /// [main] The messages that were kept, in their order; none when all have been taken.
    [[nodiscard]] std::optional<Message> takeNext();

private:
    std::array<Message, room> messages_;
    std::atomic<std::uint64_t> refused_{0};  ///< written by [render]
    std::atomic<std::uint64_t> leftOut_{0};  ///< written by [render]
    std::atomic<std::uint64_t> written_{0};  ///< written by [render]
    std::atomic<std::uint64_t> taken_{0};    ///< written by [main]
};

/// [main] What is reported to the user of a refused message, with the number and name of the rule whose
/// system exclusive it is. Rules that are switched off count as well.
[[nodiscard]] std::string refusalText(const RefusedMessages::Message& message, const std::vector<Rule>& rules,
                                      const RuleShelf& shelf);

}  // namespace quillo
