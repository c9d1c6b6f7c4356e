// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "log/EventLogEntry.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// Both event logs in the order in which things happened, from the render thread to the one that prints
/// them. One thread records, one takes; neither waits for the other. What finds the tape full is counted and
/// left out, so that what was recorded before it stays as it is.
class LogTape {
public:
    enum class Direction : std::uint8_t { in, out };

    struct Record {
        Direction direction = Direction::in;
        EventLogEntry entry{0, EventLogEntryVariants::MIDI{}};
    };

    /// What was on the tape, and how many records found no room since the last look.
    struct Contents {
        std::vector<Record> records;
        std::uint64_t lost = 0;
    };

    explicit LogTape(std::size_t capacity) : slots_(capacity) {}
    LogTape(const LogTape&) = delete;
    LogTape& operator=(const LogTape&) = delete;

    /// [render]
    void record(Direction direction, const EventLogEntry& entry) QUILLO_REALTIME;

    /// [main] Empties the tape, oldest first.
    [[nodiscard]] Contents takeAll();

private:
    std::vector<Record> slots_;
    std::atomic<std::uint64_t> recorded_{0};  ///< written by [render]: hands the slots before it over
    std::atomic<std::uint64_t> taken_{0};     ///< written by [main]: hands the slots before it back
    std::atomic<std::uint64_t> lost_{0};
};

}  // namespace quillo
