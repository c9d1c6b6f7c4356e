// SPDX-License-Identifier: GPL-3.0-or-later
// What no host should do. AddressSanitizer sees a byte that is read outside a sequence.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "hosts/lv2/LV2TestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<ScriptMessage>;

const Bytes note{0x90, 60, 100};

LV2_URID midi() {
    return lv2Id(LV2_MIDI__MidiEvent);
}

class LV2Hostile : public testing::Test {
protected:
    LV2Hostile() { host.activate(); }

    Messages sentFor(const LV2Sequence& events, std::uint32_t frames = 64) {
        const auto start = host.now;
        host.run(frames, events);
        auto sent = host.take();
        for (auto& message : sent) {
            message.time -= start;
        }
        return sent;
    }

    LV2TestHost host;
};

TEST_F(LV2Hostile, ABlockWithoutPortsIsPlayed) {
    host.connect(0, nullptr);
    host.connect(1, nullptr);
    host.descriptor().run(host.handle(), 64);
    host.descriptor().run(host.handle(), 0);
    host.connect(99, nullptr);
    EXPECT_EQ(sentFor(LV2Sequence().addMIDI(3, note)), (Messages{{3, note}}));
}

TEST_F(LV2Hostile, WithoutAnOutputNothingIsSent) {
    auto in = LV2Sequence().addMIDI(3, note);
    host.connect(0, &in.atom());
    host.connect(1, nullptr);
    host.descriptor().run(host.handle(), 64);
    EXPECT_EQ(sentFor(LV2Sequence()), Messages{});
}

TEST_F(LV2Hostile, ABlockWithoutFramesSendsAtItsStart) {
    EXPECT_EQ(sentFor(LV2Sequence().addMIDI(5, note), 0), (Messages{{0, note}}));
}

TEST_F(LV2Hostile, TheSameBufferForInputAndOutputIsBoth) {
    for (auto events : {LV2Sequence(), LV2Sequence().addMIDI(7, note),
                        LV2Sequence().addMIDI(7, note).addMIDI(9, Bytes{0xF8}).addMIDI(9, note)}) {
        const auto size = sizeof(LV2_Atom) + events.atom().atom.size;
        std::vector<std::uint64_t> words((size + 7) / 8);
        std::memcpy(words.data(), &events.atom(), size);
        const auto before = words;
        host.connect(0, words.data());
        host.connect(1, words.data());
        host.descriptor().run(host.handle(), 64);
        EXPECT_EQ(words, before);
    }
}

TEST_F(LV2Hostile, TimesOutsideTheBlockAndBackwardsAreMovedToTheNearest) {
    EXPECT_EQ(sentFor(LV2Sequence()
                          .addMIDI(-5, note)
                          .addMIDI(20, note)
                          .addMIDI(10, note)
                          .addMIDI(64, note)
                          .addMIDI(std::numeric_limits<std::int64_t>::max(), note)
                          .addMIDI(std::numeric_limits<std::int64_t>::min(), note)),
              (Messages{{0, note}, {20, note}, {20, note}, {63, note}, {63, note}, {63, note}}));
}

TEST_F(LV2Hostile, WhatIsNotExactlyOneMessageIsLeftOut) {
    LV2Sequence events;
    for (const auto& bytes :
         {Bytes{}, Bytes{60, 100}, Bytes{0x90, 60}, Bytes{0x90, 60, 100, 1}, Bytes{0x90, 60, 200},
          Bytes{0xC0, 1, 2}, Bytes{0xF7}, Bytes{0xF4}, Bytes{0xF0}, Bytes(70000, 0xF0)}) {
        events.addMIDI(1, bytes);
    }
    EXPECT_EQ(sentFor(events.addMIDI(2, note)), (Messages{{2, note}}));
}

TEST_F(LV2Hostile, EventsOfOtherTypesAreLeftOut) {
    LV2Sequence events;
    for (const auto type : {0U, lv2Id(LV2_ATOM__Int), lv2Id("urn:test:unknown"), lv2Id(LV2_ATOM__Sequence),
                            std::numeric_limits<LV2_URID>::max()}) {
        events.add(1, type, note);
    }
    EXPECT_EQ(sentFor(events.addMIDI(2, note)), (Messages{{2, note}}));
}

TEST_F(LV2Hostile, AnAtomThatIsNoSequenceHasNoEvents) {
    for (const auto type : {lv2Id(LV2_ATOM__Chunk), lv2Id(LV2_ATOM__Object), LV2_URID{99999}}) {
        auto events = LV2Sequence().addMIDI(1, note);
        events.atom().atom.type = type;
        EXPECT_EQ(sentFor(events), Messages{});
    }
}

TEST_F(LV2Hostile, ASequenceThatEndsWithinAnEventEndsBeforeIt) {
    const auto whole = LV2Sequence().addMIDI(1, note).addMIDI(2, note);
    constexpr std::uint32_t body = sizeof(LV2_Atom_Sequence_Body);
    constexpr std::uint32_t event = sizeof(LV2_Atom_Event);
    for (std::uint32_t size = 0; size <= body + 2 * (event + 8); ++size) {
        auto events = whole;
        events.atom().atom.size = size;
        const auto complete = size < body + event + 3 ? 0U : size < body + event + 8 + event + 3 ? 1U : 2U;
        EXPECT_EQ(sentFor(events).size(), complete) << size;
    }
}

TEST_F(LV2Hostile, AnEventThatIsLongerThanItsSequenceEndsIt) {
    for (const auto size : {9U, 100U, 0x7FFFFFFFU, 0xFFFFFFF9U, 0xFFFFFFFFU}) {
        const auto events = LV2Sequence().addMIDI(1, note).add(2, midi(), note, size);
        EXPECT_EQ(sentFor(events), (Messages{{1, note}})) << size;
    }
}

TEST_F(LV2Hostile, PositionsThatAreNoneAreLeftOut) {
    host.loadRules({rule(onHost(HostTransportTriggerVariantsV2::Start), send(controlChange(0, 20, 1)))});
    const auto object = lv2Id(LV2_ATOM__Object);
    const auto position = lv2Id(LV2_TIME__Position);
    LV2Sequence events;
    events.add(0, object, {});
    events.add(0, object, {1, 2, 3});
    events.add(
        0, object,
        LV2ObjectBody(lv2Id("urn:test:other")).addNumber(LV2_TIME__speed, LV2_ATOM__Float, 1.0F).bytes());
    events.add(0, object, LV2ObjectBody(position).bytes());
    for (const auto* type : {LV2_ATOM__Int, LV2_ATOM__Double, LV2_ATOM__String, LV2_ATOM__Long}) {
        events.add(0, object, LV2ObjectBody(position).add(lv2Id(LV2_TIME__speed), lv2Id(type), {1}).bytes());
    }
    for (const auto speed : {std::nanf(""), INFINITY, -INFINITY}) {
        events.add(0, object,
                   LV2ObjectBody(position).addNumber(LV2_TIME__speed, LV2_ATOM__Float, speed).bytes());
    }
    auto cut = LV2ObjectBody(position).addNumber(LV2_TIME__speed, LV2_ATOM__Float, 1.0F).bytes();
    for (std::int64_t time = 1; cut.size() > 1; ++time) {
        cut.pop_back();
        events.add(time, object, cut);
    }
    EXPECT_EQ(sentFor(events), Messages{});
    EXPECT_EQ(sentFor(LV2Sequence().addPosition(3, 1.0, 0)), (Messages{{3, {0xB0, 20, 1}}}));
}

TEST_F(LV2Hostile, NoiseIsSurvived) {
    host.loadRules({rule(onNoteOn(), send(noteOn(0, 61, 5), 1)),
                    rule(onHost(HostTransportTriggerVariantsV2::Start), send(controlChange(0, 20, 1)))});
    std::mt19937 generator(1);
    const auto random = [&generator](std::uint32_t below) {
        return std::uniform_int_distribution<std::uint32_t>(0, below - 1)(generator);
    };
    for (int block = 0; block < 2000; ++block) {
        LV2Sequence events;
        for (auto left = random(6); left > 0; --left) {
            Bytes body(random(60));
            for (auto& byte : body) {
                byte = static_cast<std::uint8_t>(random(4) == 0 ? random(256) : random(20));
            }
            events.add(static_cast<std::int64_t>(random(100)) - 10, random(20), body,
                       static_cast<std::uint32_t>(body.size()) + (random(4) == 0 ? random(9) : 0));
        }
        if (random(4) == 0) {
            events.atom().atom.size -= random(std::min(events.atom().atom.size, 30U));
        }
        host.capacity = random(300);
        host.run(random(3) * 100, events);
    }
    host.capacity = 4096;
    host.run(8192);
    host.loadRules({});
    static_cast<void>(host.take());
    EXPECT_EQ(sentFor(LV2Sequence().addMIDI(2, note)), (Messages{{2, note}}));
}

TEST_F(LV2Hostile, WithoutAnInstanceNothingHappens) {
    const auto& table = host.descriptor();
    table.connect_port(nullptr, 0, nullptr);
    table.activate(nullptr);
    table.run(nullptr, 64);
    table.deactivate(nullptr);
    table.cleanup(nullptr);
    EXPECT_EQ(table.extension_data(nullptr), nullptr);
    EXPECT_EQ(table.extension_data("urn:test:unknown"), nullptr);
}

TEST_F(LV2Hostile, AHostWithoutAMapGetsNoInstance) {
    const auto& table = host.descriptor();
    LV2_URID_Map withoutFunction{nullptr, nullptr};
    const LV2_Feature other{"urn:test:unknown", nullptr};
    const LV2_Feature mapWithoutData{LV2_URID__map, nullptr};
    const LV2_Feature mapWithoutFunction{LV2_URID__map, &withoutFunction};
    EXPECT_EQ(table.instantiate(&table, 48000.0, "", nullptr), nullptr);
    for (const auto* feature : {&other, &mapWithoutData, &mapWithoutFunction}) {
        const LV2_Feature* features[]{feature, nullptr};
        EXPECT_EQ(table.instantiate(&table, 48000.0, "", features), nullptr);
    }
}

TEST_F(LV2Hostile, AMapThatThrowsMakesNoInstance) {
    const auto& table = host.descriptor();
    LV2_URID_Map map{nullptr, [](LV2_URID_Map_Handle, const char*) -> LV2_URID { throw std::bad_alloc(); }};
    const LV2_Feature feature{LV2_URID__map, &map};
    const LV2_Feature* features[]{&feature, nullptr};
    EXPECT_EQ(table.instantiate(&table, 48000.0, "", features), nullptr);
}

TEST_F(LV2Hostile, AMapThatKnowsNoNumberForANameMakesNoInstance) {
    struct Maker {
        std::uint32_t left;  ///< how many names get a number

        static LV2_URID number(LV2_URID_Map_Handle handle, const char* name) {
            auto& self = *static_cast<Maker*>(handle);
            if (self.left == 0) {
                return 0;
            }
            --self.left;
            return lv2Map().map(lv2Map().handle, name);
        }
    };
    const auto& table = host.descriptor();
    for (std::uint32_t known = 0; known < 15; ++known) {
        Maker maker{known};
        LV2_URID_Map map{&maker, &Maker::number};
        const LV2_Feature feature{LV2_URID__map, &map};
        const LV2_Feature* features[]{&feature, nullptr};
        EXPECT_EQ(table.instantiate(&table, 48000.0, "", features), nullptr) << known;
    }
}

TEST_F(LV2Hostile, AFeatureWithoutANameIsPassedOver) {
    const auto& table = host.descriptor();
    const LV2_Feature nameless{nullptr, nullptr};
    const LV2_Feature map{LV2_URID__map, &lv2Map()};
    const LV2_Feature* features[]{&nameless, &map, nullptr};
    auto* instance = table.instantiate(&table, 48000.0, "", features);
    ASSERT_NE(instance, nullptr);
    table.cleanup(instance);
}

TEST_F(LV2Hostile, ARateThatIsNoneMakesNoInstance) {
    const auto& table = host.descriptor();
    const LV2_Feature feature{LV2_URID__map, &lv2Map()};
    const LV2_Feature* features[]{&feature, nullptr};
    constexpr auto infinity = std::numeric_limits<double>::infinity();
    for (const auto rate :
         {0.0, -1.0, 1e300, infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(table.instantiate(&table, rate, "", features), nullptr) << rate;
    }
}

}  // namespace
}  // namespace quillo
