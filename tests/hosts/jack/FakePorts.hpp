// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "hosts/jack/MIDIPorts.hpp"
#include "platform/RealTimeFunction.hpp"
#include "support/TestOutput.hpp"

namespace quillo::test {

/// An input port that holds what a test has put there.
class FakeInput final : public MIDIInputPort {
public:
    FakeInput() = default;
    explicit FakeInput(Timed events) : events_(std::move(events)) {}

    [[nodiscard]] std::uint32_t size() const QUILLO_REALTIME override {
        return static_cast<std::uint32_t>(events_.size());
    }
    [[nodiscard]] Event event(std::uint32_t index) const QUILLO_REALTIME override {
        return {events_[index].first, events_[index].second};
    }
    [[nodiscard]] std::uint32_t lost() const QUILLO_REALTIME override { return lostEvents; }

    std::uint32_t lostEvents = 0;

private:
    Timed events_;
};

/// An output port with the server's rules: messages in ascending order only, so many and no more.
class FakeOutput final : public MIDIOutputPort {
public:
    void clear() QUILLO_REALTIME override {
        QUILLO_REALTIME_EXEMPT("a test has no deadline")
        written.clear();
        QUILLO_REALTIME_EXEMPT_END
    }
    [[nodiscard]] std::size_t room() const QUILLO_REALTIME override {
        constexpr std::size_t forOneMessage = 24;
        return std::min(longest, (mostMessages - written.size()) * forOneMessage);
    }
    [[nodiscard]] bool tryWrite(std::uint32_t offset,
                                std::span<const std::uint8_t> bytes) QUILLO_REALTIME override {
        QUILLO_REALTIME_EXEMPT("a test has no deadline")
        if (written.size() == mostMessages || bytes.size() > longest ||
            (!written.empty() && written.back().first > offset)) {
            return false;
        }
        written.emplace_back(offset, copyOf(bytes));
        QUILLO_REALTIME_EXEMPT_END
        return true;
    }

    Timed written;
    std::size_t mostMessages = 1'000'000;
    std::size_t longest = std::numeric_limits<std::size_t>::max();
};

}  // namespace quillo::test
