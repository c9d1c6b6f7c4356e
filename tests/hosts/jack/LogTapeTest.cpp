// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LogTape.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/OutputRecorder.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

using namespace test;
using Direction = LogTape::Direction;

EventLogEntry entryAt(SampleTime time) {
    return {time, EventLogEntryVariants::MIDI{MIDIMessage{0xF8}}};
}

std::string textOf(const LogTape::Contents& contents) {
    std::string line;
    for (const auto& [direction, entry] : contents.records) {
        line += (direction == Direction::in ? "in " : "out ") + text(entry) + "; ";
    }
    return line + std::to_string(contents.lost) + " lost";
}

TEST(LogTape, GivesWhatWasRecordedInOrderAndThenForgetsIt) {
    LogTape tape(8);
    tape.record(Direction::in, entryAt(1));
    tape.record(Direction::out, entryAt(2));
    tape.record(Direction::in, entryAt(3));
    EXPECT_EQ(textOf(tape.takeAll()), "in [1] f8; out [2] f8; in [3] f8; 0 lost");
    EXPECT_EQ(textOf(tape.takeAll()), "0 lost");
}

TEST(LogTape, LeavesOutAndCountsWhatFindsItFull) {
    LogTape tape(2);
    for (int time = 1; time <= 5; ++time) {
        tape.record(Direction::in, entryAt(time));
    }
    EXPECT_EQ(textOf(tape.takeAll()), "in [1] f8; in [2] f8; 3 lost");
    tape.record(Direction::out, entryAt(6));
    EXPECT_EQ(textOf(tape.takeAll()), "out [6] f8; 0 lost");
}

TEST(LogTape, KeepsLongMessages) {
    LogTape tape(3);
    const Bytes message(5000, 0x11);
    tape.record(Direction::out, {7, EventLogEntryVariants::MIDI{MIDIMessage::copyOf(message)}});
    const auto contents = tape.takeAll();
    ASSERT_EQ(contents.records.size(), 1U);
    EXPECT_EQ(copyOf(contents.records[0].entry.variants.midi()->message.bytes()), message);
}

TEST(LogTape, OneThreadRecordsWhileAnotherTakes) {
    constexpr SampleTime count = 100'000;
    LogTape tape(64);
    JoinedThread recorder([&] {
        for (SampleTime time = 0; time < count; ++time) {
            tape.record(time % 2 == 0 ? Direction::in : Direction::out, entryAt(time));
        }
    });
    SampleTime seen = 0;
    SampleTime last = -1;
    while (seen < count) {
        const auto contents = tape.takeAll();
        for (const auto& [direction, entry] : contents.records) {
            ASSERT_GT(entry.timestamp, last);
            last = entry.timestamp;
            ASSERT_EQ(direction, last % 2 == 0 ? Direction::in : Direction::out);
        }
        seen += static_cast<SampleTime>(contents.records.size() + contents.lost);
    }
    EXPECT_EQ(seen, count);
}

}  // namespace
}  // namespace quillo
