// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/platform/RenderEventList.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace quillo {
namespace {

using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

/// The sample times of the events that a unit sees, from the head along the links.
std::vector<AUEventSampleTime> timesOf(const RenderEventList& list) {
    std::vector<AUEventSampleTime> times;
    for (const auto* event = list.head(); event != nullptr; event = event->next) {
        times.push_back(event->eventSampleTime);
    }
    return times;
}

const AUMIDIEvent& headAsMIDI(const RenderEventList& list) {
    return *static_cast<const AUMIDIEvent*>(list.head());
}

TEST(RenderEventList, HasNoHeadWhenEmpty) {
    const RenderEventList list(4);
    EXPECT_EQ(list.head(), nullptr);
    EXPECT_EQ(list.size(), 0U);
}

TEST(RenderEventList, LinksEventsInTheOrderOfThePushesWhateverTheirTimes) {
    RenderEventList list(3);
    EXPECT_TRUE(list.tryPushMIDI(30, Bytes{0xF8}));
    EXPECT_TRUE(list.tryPushMIDI(10, Bytes{0xF8}));
    EXPECT_TRUE(list.tryPushMIDI(20, Bytes{0xF8}));
    EXPECT_THAT(timesOf(list), ElementsAre(30, 10, 20));
    EXPECT_EQ(list.size(), 3U);
}

TEST(RenderEventList, RejectsAnEventTooManyAndKeepsTheOthers) {
    RenderEventList list(2);
    EXPECT_TRUE(list.tryPushMIDI(1, Bytes{0xF8}));
    EXPECT_TRUE(list.tryPushMIDI(2, Bytes{0xF8}));
    EXPECT_FALSE(list.tryPushMIDI(3, Bytes{0xF8}));
    EXPECT_FALSE(list.tryPush(AURenderEvent{}));
    EXPECT_THAT(timesOf(list), ElementsAre(1, 2));
}

TEST(RenderEventList, WithoutCapacityTakesNothing) {
    RenderEventList list(0);
    EXPECT_FALSE(list.tryPushMIDI(1, Bytes{0xF8}));
    EXPECT_EQ(list.head(), nullptr);
}

TEST(RenderEventList, StartsAgainOnceCleared) {
    RenderEventList list(2);
    EXPECT_TRUE(list.tryPushMIDI(1, Bytes{0xF8}));
    EXPECT_TRUE(list.tryPushMIDI(2, Bytes{0xF8}));
    list.clear();
    EXPECT_EQ(list.head(), nullptr);
    EXPECT_TRUE(list.tryPushMIDI(3, Bytes{0xF8}));
    EXPECT_THAT(timesOf(list), ElementsAre(3));
}

TEST(RenderEventList, SetsTheLinkThatAnEventBroughtAlong) {
    const AURenderEvent stray;
    AUMIDIEvent event;
    event.next = &stray;
    RenderEventList list(1);
    EXPECT_TRUE(list.tryPush(event));
    EXPECT_EQ(list.head()->next, nullptr);
}

class RenderEventListLength : public testing::TestWithParam<std::size_t> {};

TEST_P(RenderEventListLength, KeepsUpToThreeBytesAndZeroesTheRest) {
    constexpr std::array<std::uint8_t, 5> given{0x90, 60, 100, 1, 2};
    RenderEventList list(1);
    ASSERT_TRUE(list.tryPushMIDI(512, {given.data(), GetParam()}));

    const auto& event = headAsMIDI(list);
    const auto kept = std::min<std::size_t>(GetParam(), 3);
    EXPECT_EQ(event.eventType, AURenderEventType::midi);
    EXPECT_EQ(event.eventSampleTime, 512);
    EXPECT_EQ(event.length, kept);
    EXPECT_EQ(event.cable, 0);
    for (std::size_t i = 0; i < event.data.size(); ++i) {
        EXPECT_EQ(event.data[i], i < kept ? given[i] : 0) << "byte " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Bytes, RenderEventListLength, testing::Range<std::size_t>(0, 6));

TEST(RenderEventList, KeepsAMIDIEventAsTheHostMadeIt) {
    AUMIDIEvent event;
    event.eventSampleTime = 7;
    event.length = 2;
    event.cable = 3;
    event.data = {0xC0, 5, 0x55};
    RenderEventList list(1);
    ASSERT_TRUE(list.tryPush(event));

    const auto& kept = headAsMIDI(list);
    EXPECT_EQ(kept.eventSampleTime, 7);
    EXPECT_EQ(kept.length, 2);
    EXPECT_EQ(kept.cable, 3);
    EXPECT_THAT(kept.data, ElementsAre(0xC0, 5, 0x55));
}

TEST(RenderEventList, MixesEventsOfAllKinds) {
    const Bytes sysExBytes{0xF0, 1, 2, 0xF7};
    AURenderEvent parameter;
    parameter.eventType = AURenderEventType::parameter;
    AUMIDISysExEvent sysEx;
    sysEx.eventType = AURenderEventType::midiSysEx;
    sysEx.data = sysExBytes;

    RenderEventList list(3);
    ASSERT_TRUE(list.tryPush(parameter));
    ASSERT_TRUE(list.tryPush(sysEx));
    ASSERT_TRUE(list.tryPushMIDI(0, Bytes{0xF8}));

    const auto* first = list.head();
    EXPECT_EQ(first->eventType, AURenderEventType::parameter);
    const auto* second = first->next;
    EXPECT_EQ(second->eventType, AURenderEventType::midiSysEx);
    EXPECT_EQ(static_cast<const AUMIDISysExEvent*>(second)->data.data(), sysExBytes.data());
    EXPECT_EQ(second->next->eventType, AURenderEventType::midi);
}

TEST(RenderEventList, ForgetsTheKindThatASlotHeldBefore) {
    AURenderEvent parameter;
    parameter.eventType = AURenderEventType::parameterRamp;
    RenderEventList list(1);
    ASSERT_TRUE(list.tryPush(parameter));
    list.clear();
    ASSERT_TRUE(list.tryPushMIDI(5, Bytes{0xFA}));
    EXPECT_EQ(list.head()->eventType, AURenderEventType::midi);
    EXPECT_EQ(headAsMIDI(list).data[0], 0xFA);
}

}  // namespace
}  // namespace quillo
