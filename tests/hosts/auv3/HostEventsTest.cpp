// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/HostEvents.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "hosts/auv3/HostEventChain.hpp"
#include "hosts/auv3/HostEventDouble.hpp"
#include "support/OutputRecorder.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

struct Received {
    AUEventSampleTime time;
    int cable;
    Bytes bytes;

    bool operator==(const Received&) const = default;
};

std::vector<AUMIDIEvent> eventsOf(const HostEventChain<HostEvent>& chain) {
    std::vector<AUMIDIEvent> events;
    receiveEvents(chain.head(), [&](const AUMIDIEvent& event) { events.push_back(event); });
    return events;
}

std::vector<Received> received(const HostEventChain<HostEvent>& chain) {
    std::vector<Received> all;
    for (const auto& event : eventsOf(chain)) {
        EXPECT_EQ(event.eventType, AURenderEventType::midi);
        all.push_back({event.eventSampleTime, event.cable, copyOf({event.data.data(), event.length})});
    }
    return all;
}

TEST(HostEvents, AnEmptyListHasNone) {
    EXPECT_THAT(received({}), IsEmpty());
}

TEST(HostEvents, MIDIEventsKeepTimeCableLengthAndOrder) {
    HostEventChain<HostEvent> chain;
    chain.addMIDI(-5, {0x90, 60, 100}, 3);
    chain.addMIDI(7, {0xC1, 9});
    chain.addMIDI(7, {});
    EXPECT_THAT(received(chain),
                ElementsAre(Received{-5, 3, {0x90, 60, 100}}, Received{7, 0, {0xC1, 9}}, Received{7, 0, {}}));
}

TEST(HostEvents, ALengthBeyondTheEventsBytesIsLeftToTheUnit) {
    HostEventChain<HostEvent> chain;
    chain.addMIDI(0, {0x90, 1, 2, 3, 4});
    ASSERT_EQ(eventsOf(chain).size(), 1U);
    EXPECT_EQ(eventsOf(chain)[0].length, 5);
    EXPECT_THAT(eventsOf(chain)[0].data, ElementsAre(0x90, 1, 2));
}

TEST(HostEvents, ParametersRampsSystemExclusiveAndUnknownEventsArePassedOver) {
    HostEventChain<HostEvent> chain;
    for (const int type : {0, 1, 2, 9, 11, 255}) {
        chain.addOther(static_cast<std::uint8_t>(type));
    }
    chain.addMIDI(1, {0xFA});
    EXPECT_THAT(received(chain), ElementsAre(Received{1, 0, {0xFA}}));
}

TEST(HostEvents, EveryMessageOfAnEventListArrivesAtTheListsTimeAndCable) {
    HostEventChain<HostEvent> chain;
    chain.addMIDI(1, {0x80, 1, 1});
    chain.addEventList(50, {{0x20903C64U, 0x20C50700U}, {}, {0x30160102U, 0x03040506U, 0x10F80000U}}, 4);
    chain.addMIDI(99, {0x80, 2, 2});
    EXPECT_THAT(received(chain), ElementsAre(Received{1, 0, {0x80, 1, 1}},
                                             Received{50, 4, {0x90, 0x3C, 0x64}}, Received{50, 4, {0xC5, 7}},
                                             Received{50, 4, {0xF8}}, Received{99, 0, {0x80, 2, 2}}));
}

TEST(HostEvents, AnEventListWithoutPacketsHasNoMessages) {
    HostEventChain<HostEvent> chain;
    chain.addEventList(50, {});
    EXPECT_THAT(received(chain), IsEmpty());
}

}  // namespace
}  // namespace quillo
