// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/EventMailbox.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

#include "support/Threads.hpp"

namespace quillo {
namespace {

EventLogEntry entryAt(SampleTime time) {
    return {time, EventLogEntryVariants::MIDI{{0xF8}}};
}

void post(EventMailbox& mailbox, SampleTime first, SampleTime end) {
    for (auto time = first; time < end; ++time) {
        mailbox.post(entryAt(time));
    }
    mailbox.handOver();
}

/// Each entry in a block of its own.
void postOneByOne(EventMailbox& mailbox, SampleTime first, SampleTime end) {
    for (auto time = first; time < end; ++time) {
        post(mailbox, time, time + 1);
    }
}

/// These entries and no others, in order.
void expectEntries(const std::vector<EventLogEntry>& entries, SampleTime first, SampleTime last) {
    ASSERT_EQ(static_cast<SampleTime>(entries.size()), last - first + 1);
    for (const auto& entry : entries) {
        ASSERT_EQ(entry.timestamp, first++);
    }
}

TEST(EventMailbox, HandsOutWhatWasPostedInOrderAndOnce) {
    EventMailbox mailbox;
    EXPECT_TRUE(mailbox.takeAll().empty());
    post(mailbox, 0, 5);
    expectEntries(mailbox.takeAll(), 0, 4);
    EXPECT_TRUE(mailbox.takeAll().empty());
}

TEST(EventMailbox, KeepsToItselfWhatWasNotHandedOver) {
    EventMailbox mailbox;
    mailbox.handOver();
    mailbox.post(entryAt(0));
    EXPECT_TRUE(mailbox.takeAll().empty());
    mailbox.post(entryAt(1));
    mailbox.handOver();
    expectEntries(mailbox.takeAll(), 0, 1);
}

TEST(EventMailbox, HandsOutTheEntriesOfSeveralBlocksInOrder) {
    EventMailbox mailbox;
    post(mailbox, 0, 3);
    post(mailbox, 3, 4);
    post(mailbox, 4, 9);
    expectEntries(mailbox.takeAll(), 0, 8);
}

TEST(EventMailbox, LosesNothingUpToWhatALogShows) {
    EventMailbox mailbox;
    for (SampleTime round = 0; round < 50; ++round) {
        post(mailbox, 100 * round, 100 * (round + 1));
        expectEntries(mailbox.takeAll(), 100 * round, 100 * round + 99);
    }
}

TEST(EventMailbox, KeepsTheNewest100OfAFlood) {
    for (const SampleTime count : {99, 100, 101, 199, 200, 1050, 100000}) {
        for (const auto& flood : {post, postOneByOne}) {
            EventMailbox mailbox;
            flood(mailbox, 0, count);
            expectEntries(mailbox.takeAll(), std::max<SampleTime>(count - 100, 0), count - 1);
        }
    }
}

TEST(EventMailbox, KeepsTheNewest100OfTwoBlocksTogether) {
    for (const SampleTime second : {1, 40, 60, 61, 100, 150}) {
        EventMailbox mailbox;
        post(mailbox, 0, 60);
        post(mailbox, 60, 60 + second);
        expectEntries(mailbox.takeAll(), std::max<SampleTime>(second - 40, 0), 60 + second - 1);
    }
}

TEST(EventMailbox, AFloodCanBeTakenAndFollowedByAnother) {
    EventMailbox mailbox;
    for (SampleTime round = 1; round <= 20; ++round) {
        post(mailbox, 0, 1000 * round);
        expectEntries(mailbox.takeAll(), 1000 * round - 100, 1000 * round - 1);
    }
}

TEST(EventMailbox, CarriesLongMessagesWhole) {
    EventMailbox mailbox;
    const std::vector<std::uint8_t> bytes(1000, 0x42);
    mailbox.post({3, EventLogEntryVariants::MIDI{MIDIMessage::copyOf(bytes)}});
    mailbox.handOver();
    const auto entries = mailbox.takeAll();
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].variants.midi()->message, MIDIMessage::copyOf(bytes));
}

/// Until something was taken so often that on two processors they have met in every way. On one they make
/// room for each other, and meet only between their calls.
TEST(EventMailbox, APosterAndATakerNeverMeetOutOfOrderAndTheNewestArrives) {
    EventMailbox mailbox;
    std::atomic<bool> stops{false};
    SampleTime end = 0;
    JoinedThread poster([&] {
        for (SampleTime length = 1; !stops; end += length, length = length % 300 + 1) {
            post(mailbox, end, end + length);
            if (length % 16 == 0) {
                std::this_thread::yield();
            }
        }
    });
    SampleTime last = -1;
    const auto taken = [&] {
        const auto entries = mailbox.takeAll();
        for (const auto& entry : entries) {
            EXPECT_GT(entry.timestamp, std::exchange(last, entry.timestamp));
        }
        return !entries.empty();
    };
    for (int times = 0; times < 1000 && !::testing::Test::HasFailure();) {
        if (taken()) {
            ++times;
        } else {
            std::this_thread::yield();
        }
    }
    stops = true;
    poster.join();
    taken();
    EXPECT_EQ(last, end - 1);
    EXPECT_TRUE(mailbox.takeAll().empty());
}

}  // namespace
}  // namespace quillo
