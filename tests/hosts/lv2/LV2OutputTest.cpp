// SPDX-License-Identifier: GPL-3.0-or-later
// What fits into the host's buffer, to the byte. The host of the test looks behind it in every block.
#include <gtest/gtest.h>

#include <algorithm>

#include "hosts/lv2/LV2TestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<ScriptMessage>;

constexpr std::uint32_t head = sizeof(LV2_Atom_Sequence);
constexpr std::uint32_t shortMessage = sizeof(LV2_Atom_Event) + 8;
constexpr std::uint32_t notice = sizeof(LV2_Atom_Event) + sizeof(LV2_Atom_Object_Body);

class LV2Output : public testing::Test {
protected:
    LV2Output() { host.activate(); }

    static LV2Sequence notes(int count) {
        LV2Sequence events;
        for (int i = 0; i < count; ++i) {
            events.addMIDI(i, {0x90, static_cast<std::uint8_t>(i), 100});
        }
        return events;
    }

    static Messages firstNotes(SampleTime start, std::uint32_t count) {
        Messages messages;
        for (std::uint32_t i = 0; i < count; ++i) {
            messages.push_back({start + i, {0x90, static_cast<std::uint8_t>(i), 100}});
        }
        return messages;
    }

    void edit() { host.unit().onRulesChanged({}); }

    LV2TestHost host;
};

TEST_F(LV2Output, HoldsExactlyAsManyMessagesAsFit) {
    constexpr std::uint32_t count = 10;
    for (std::uint32_t capacity = 0; capacity < head + (count + 2) * shortMessage; ++capacity) {
        host.capacity = capacity;
        const auto start = host.now;
        host.run(64, notes(count));
        const auto fitting = capacity < head ? 0 : std::min(count, (capacity - head) / shortMessage);
        EXPECT_EQ(host.take(), firstNotes(start, fitting)) << capacity;
        EXPECT_EQ(host.bytesWritten, capacity < head ? sizeof(LV2_Atom) : head + fitting * shortMessage);
    }
}

TEST_F(LV2Output, HoldsALongMessageToTheLastByteOrNotAtAll) {
    constexpr std::uint32_t size = 1001;
    constexpr std::uint32_t exact = head + sizeof(LV2_Atom_Event) + 1008;
    host.loadRules(
        {rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(systemExclusive(Bytes(size - 2, 5))))});
    for (const auto capacity : {exact - 1, exact - 7, exact - 8, head}) {
        host.capacity = capacity;
        host.run(64, Bytes{0x90, 60, 1});
        EXPECT_EQ(host.take(), Messages{}) << capacity;
    }
    host.capacity = exact;
    host.run(64, Bytes{0x90, 60, 1});
    const auto sent = host.take();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].bytes.size(), size);
    EXPECT_EQ(host.bytesWritten, exact);
}

TEST_F(LV2Output, LeavesOutWhatTheBufferWouldNotHoldIfItWereEmptyAndSendsTheRest) {
    host.loadRules({rule(onNoteOff(), send(systemExclusive(Bytes(999, 5))), "dump")});
    host.capacity = head + sizeof(LV2_Atom_Event) + 1007;
    LV2Sequence events;
    events.addMIDI(3, {0x80, 60, 0});
    events.addMIDI(4, {0x80, 61, 0});
    host.run(64, events);
    EXPECT_EQ(host.take(), (Messages{{3, {0x80, 60, 0}}, {4, {0x80, 61, 0}}}));
    host.unit().drain();
    EXPECT_NE(host.unit().model()->alertErrorMessage().value_or("").find("rule 1 \"dump\""),
              std::string::npos);
}

TEST_F(LV2Output, RefusesWhatHasNoRoomBehindOthersAndTheRestOfTheBlock) {
    host.loadRules({rule(onNoteOff(), send(systemExclusive(Bytes(999, 5))))});
    host.capacity = head + sizeof(LV2_Atom_Event) + 1008;
    LV2Sequence events;
    events.addMIDI(3, {0xC0, 1});
    events.addMIDI(4, {0x80, 61, 0});
    host.run(64, events);
    EXPECT_EQ(host.take(), (Messages{{3, {0xC0, 1}}}));
}

TEST_F(LV2Output, HasRoomAgainInTheNextBlock) {
    host.capacity = head;
    host.run(64, notes(3));
    host.capacity = 4096;
    const auto start = host.now;
    host.run(64, notes(3));
    EXPECT_EQ(host.take(), firstNotes(start, 3));
}

TEST_F(LV2Output, OfThousandsOfMessagesIsInTheOrderOfTime) {
    LV2Sequence events;
    for (int i = 0; i < 9000; ++i) {
        events.addMIDI(i / 2, {0xB0, 1, static_cast<std::uint8_t>(i % 128)});
    }
    host.capacity = 1U << 20U;
    host.run(8192, events);
    const auto sent = host.take();
    ASSERT_EQ(sent.size(), 9000U);
    for (std::size_t i = 0; i < sent.size(); ++i) {
        ASSERT_EQ(sent[i].time, static_cast<SampleTime>(i / 2));
        ASSERT_EQ(sent[i].bytes[2], i % 128);
    }
}

TEST_F(LV2Output, TellsOnceThatTheRulesWereEdited) {
    host.run(64);
    EXPECT_EQ(host.stateChanges, 0);
    edit();
    for (int block = 0; block < 3; ++block) {
        host.run(64, notes(2));
        EXPECT_EQ(host.stateChanges, 1);
    }
}

TEST_F(LV2Output, TellsOnceOfManyEditsBetweenTwoBlocks) {
    edit();
    edit();
    host.run(64);
    EXPECT_EQ(host.stateChanges, 1);
    edit();
    host.run(0);
    EXPECT_EQ(host.stateChanges, 2);
}

TEST_F(LV2Output, TellsOfAnEditBehindAMessageOfTheLastFrame) {
    edit();
    host.run(64, LV2Sequence().addMIDI(63, {0xC0, 1}));
    EXPECT_EQ(host.stateChanges, 1);
}

TEST_F(LV2Output, TellsOfAnEditWhenThereIsRoom) {
    edit();
    for (const auto capacity : {0U, head, head + notice - 1}) {
        host.capacity = capacity;
        host.run(64);
        EXPECT_EQ(host.stateChanges, 0);
    }
    host.capacity = head + notice;
    host.run(64);
    EXPECT_EQ(host.stateChanges, 1);
    host.run(64);
    EXPECT_EQ(host.stateChanges, 1);
}

TEST_F(LV2Output, MessagesComeFirstWhenTheyFillTheBufferAndTheNoticeWaits) {
    edit();
    host.capacity = head + notice + 2 * shortMessage;
    host.run(64, notes(10));
    EXPECT_EQ(host.stateChanges, 0);
    EXPECT_EQ(host.take(), firstNotes(0, 3));
    host.run(64, notes(2));
    EXPECT_EQ(host.stateChanges, 1);
    EXPECT_EQ(host.take(), firstNotes(64, 2));
}

TEST_F(LV2Output, SaysNothingOfAStateThatTheHostItselfRestored) {
    host.loadRules({rule(onNoteOn(), send(noteOn(0, 1, 1)))});
    host.run(64);
    EXPECT_EQ(host.stateChanges, 0);
}

}  // namespace
}  // namespace quillo
