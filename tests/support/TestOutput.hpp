// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "platform/RealTime.hpp"
#include "session/HostOutput.hpp"
#include "support/OutputRecorder.hpp"

namespace quillo::test {

using Timed = std::vector<std::pair<std::uint32_t, Bytes>>;

/// What leaves in a block, in the order in which it is written. There is as much room as `room` says.
class TestOutput final : public HostOutput {
public:
    Timed sent;
    std::function<Room(std::span<const std::uint8_t> bytes, const Waiting& waiting)> room =
        [](std::span<const std::uint8_t>, const Waiting&) { return Room::enough; };

    [[nodiscard]] Room roomFor(Bytes bytes, const Waiting& waiting) const QUILLO_REALTIME override {
        return room(bytes, waiting);
    }
    void write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME override {
        sent.emplace_back(offset, copyOf(bytes));
    }

    /// The messages so far, which are then forgotten.
    Timed take() { return std::exchange(sent, {}); }
};

}  // namespace quillo::test
