// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/RealTime.hpp"

namespace quillo {

/// Where a host takes the messages of one block. [render]
class HostOutput {
public:
    using Bytes = std::span<const std::uint8_t>;

    /// What room a host has for one more message.
    enum class Room : std::uint8_t {
        enough,
        full,  ///< not in this block
        never  ///< not even in a block of its own
    };

    /// The messages that have been given room in this block and are still to be written.
    struct Waiting {
        std::size_t messages = 0;
        std::size_t bytes = 0;  ///< each message's rounded up to a multiple of 8
    };

    /// The room for one more message of these bytes, beside what waits.
    [[nodiscard]] virtual Room roomFor(Bytes bytes, const Waiting& waiting) const QUILLO_REALTIME = 0;

    /// Writes a message for which there was room, `offset` frames after the block's start, in ascending order
    /// of the offsets.
    virtual void write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME = 0;

protected:
    HostOutput() = default;
    ~HostOutput() = default;
    HostOutput(const HostOutput&) = default;
    HostOutput& operator=(const HostOutput&) = default;
};

}  // namespace quillo
