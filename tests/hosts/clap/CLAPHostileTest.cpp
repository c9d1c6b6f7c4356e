// SPDX-License-Identifier: GPL-3.0-or-later
// Hosts that do not keep to the rules: nothing is lost but what they got wrong.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>

#include "hosts/clap/CLAPTestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<ScriptMessage>;

class CLAPHostile : public testing::Test {
protected:
    CLAPHostile() { host.start(); }

    /// An event of a program change, whose header can be spoilt.
    static clap_event_midi_t program(std::uint8_t number) {
        clap_event_midi_t event{};
        event.header = {sizeof(event), 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_MIDI, 0};
        event.data[0] = 0xC0;
        event.data[1] = number;
        return event;
    }

    Messages played(std::uint32_t frames = 64) {
        EXPECT_NE(host.process(frames, events), CLAP_PROCESS_ERROR);
        events.clear();
        return host.take();
    }

    CLAPTestHost host;
    CLAPEvents events;
};

TEST_F(CLAPHostile, EventsThatAreTooShortForTheirKindAreLeftOut) {
    for (const auto type :
         {CLAP_EVENT_NOTE_ON, CLAP_EVENT_NOTE_OFF, CLAP_EVENT_NOTE_CHOKE, CLAP_EVENT_NOTE_EXPRESSION,
          CLAP_EVENT_TRANSPORT, CLAP_EVENT_MIDI, CLAP_EVENT_MIDI_SYSEX}) {
        const auto kind = static_cast<std::uint16_t>(type);
        events.add(clap_event_header_t{sizeof(clap_event_header_t), 0, CLAP_CORE_EVENT_SPACE_ID, kind, 0});
        events.add(clap_event_header_t{0, 0, CLAP_CORE_EVENT_SPACE_ID, kind, 0});
    }
    events.add(program(1));
    EXPECT_EQ(played(), (Messages{{0, {0xC0, 1}}}));
}

TEST_F(CLAPHostile, EventsThatAreLongerThanTheirKindAreTaken) {
    struct Longer {
        clap_event_midi_t event;
        std::uint64_t more;
    } longer{program(1), 0};
    longer.event.header.size = sizeof(longer);
    events.add(longer);
    EXPECT_EQ(played(), (Messages{{0, {0xC0, 1}}}));
}

TEST_F(CLAPHostile, EventsOfOtherSpacesAndUnknownKindsAreLeftOut) {
    auto ofAnotherSpace = program(1);
    ofAnotherSpace.header.space_id = 7;
    events.add(ofAnotherSpace);
    for (const int type :
         {int{CLAP_EVENT_PARAM_VALUE}, int{CLAP_EVENT_PARAM_GESTURE_BEGIN}, int{CLAP_EVENT_MIDI2}, 999}) {
        auto ofAnotherKind = program(2);
        ofAnotherKind.header.type = static_cast<std::uint16_t>(type);
        events.add(ofAnotherKind);
    }
    EXPECT_EQ(played(), Messages{});
}

TEST_F(CLAPHostile, PlacesWithoutAnEventAreSkipped) {
    events.addNothing();
    events.add(program(1));
    events.addNothing();
    EXPECT_EQ(played(), (Messages{{0, {0xC0, 1}}}));
}

TEST_F(CLAPHostile, WhatIsNoMessageIsLeftOut) {
    for (const auto& bytes :
         {Bytes{0x00, 60, 1}, Bytes{0x7F, 60, 1}, Bytes{0xF4, 0, 0}, Bytes{0xF7, 0, 0}, Bytes{0xFD, 0, 0},
          Bytes{0x90, 0x80, 1}, Bytes{0x90, 60, 0x90}, Bytes{0xC0, 0xFF, 0}}) {
        events.addMIDI(0, bytes);
    }
    auto cut = program(1);
    cut.data[0] = 0xF0;
    events.add(cut);
    events.addMIDI(0, {0xFA});
    EXPECT_EQ(played(), (Messages{{0, {0xFA}}}));
}

TEST_F(CLAPHostile, DataBytesThatDoNotBelongToAMessageDoNotMatter) {
    auto padded = program(1);
    padded.data[2] = 0xFF;
    events.add(padded);
    EXPECT_EQ(played(), (Messages{{0, {0xC0, 1}}}));
}

TEST_F(CLAPHostile, MessagesOfAnotherPortAreLeftOut) {
    events.addMIDI(0, {0xC0, 1}, 1);
    events.addMIDI(0, {0xF0, 1, 0xF7}, 1);
    EXPECT_EQ(played(), Messages{});
}

TEST_F(CLAPHostile, SystemExclusiveIsTakenAndNotForwardedWhateverItIs) {
    events.addMIDI(0, {0xF0, 1, 2, 3, 0xF7});
    events.addMIDI(0, {0xF0});
    events.addMIDI(0, Bytes(70000, 0xF0));
    clap_event_midi_sysex_t empty{};
    empty.header = {sizeof(empty), 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_MIDI_SYSEX, 0};
    events.add(empty);
    empty.size = 12;
    events.add(empty);
    const Bytes noSystemExclusive{0x90, 60, 1};
    empty.buffer = noSystemExclusive.data();
    empty.size = 3;
    events.add(empty);
    events.addMIDI(1, {0xC0, 1});
    EXPECT_EQ(played(), (Messages{{1, {0xC0, 1}}}));
}

TEST_F(CLAPHostile, TimesBehindTheBlockAreMovedToItsLastFrame) {
    events.addMIDI(64, {0xC0, 1});
    events.addMIDI(UINT32_MAX, {0xC0, 2});
    EXPECT_EQ(played(), (Messages{{63, {0xC0, 1}}, {63, {0xC0, 2}}}));
}

TEST_F(CLAPHostile, EventsThatGoBackInTimeKeepTheirOrder) {
    events.addMIDI(40, {0xC0, 1});
    events.addMIDI(3, {0xC0, 2});
    events.addNote(CLAP_EVENT_NOTE_ON, 0, 0, 60, 1.0);
    EXPECT_EQ(played(), (Messages{{40, {0xC0, 1}}, {40, {0xC0, 2}}, {40, {0x90, 60, 127}}}));
}

TEST_F(CLAPHostile, ABlockWithoutFramesIsProcessed) {
    events.addMIDI(0, {0xC0, 1});
    EXPECT_EQ(played(0), (Messages{{0, {0xC0, 1}}}));
}

TEST_F(CLAPHostile, ABlockIsAsLongAsTheHostLikes) {
    host.loadRules(
        {rule(onProgramChange(any, any, PassThroughV2::EatMatching), send(controlChange(0, 7, 1), 1000))});
    events.addMIDI(0, {0xC0, 1});
    EXPECT_EQ(played(1U << 20U), (Messages{{48000, {0xB0, 7, 1}}}));
}

TEST_F(CLAPHostile, ABlockWithoutAnInputListIsProcessed) {
    clap_process_t process{};
    process.frames_count = 64;
    EXPECT_EQ(host.plugin->process(host.plugin, &process), CLAP_PROCESS_SLEEP);
    const clap_input_events_t withoutFunctions{};
    process.in_events = &withoutFunctions;
    EXPECT_EQ(host.plugin->process(host.plugin, &process), CLAP_PROCESS_SLEEP);
}

TEST_F(CLAPHostile, SteadyTimesNearTheirEndAreNoHarm) {
    for (const auto time : {INT64_MAX, INT64_MIN, INT64_MAX - 1}) {
        clap_process_t process{};
        process.frames_count = UINT32_MAX;
        process.steady_time = time;
        EXPECT_EQ(host.plugin->process(host.plugin, &process), CLAP_PROCESS_SLEEP);
    }
}

TEST_F(CLAPHostile, PositionsAtTheirEndsAreNoHarm) {
    host.loadRules({rule(onHost(HostTransportTriggerVariantsV2::Start), send(controlChange(0, 20, 1)))});
    for (const auto seconds : {INT64_MIN, INT64_MAX, INT64_MIN}) {
        auto transport = clapTransport(CLAP_TRANSPORT_IS_PLAYING, 0.0);
        transport.song_pos_seconds = seconds;
        host.process(64, &transport);
    }
    EXPECT_EQ(host.take(), (Messages{{0, {0xB0, 20, 1}}, {128, {0xB0, 20, 1}}}));
}

TEST_F(CLAPHostile, NothingIsProcessedWithoutABlockOrWithoutActivation) {
    EXPECT_EQ(host.plugin->process(host.plugin, nullptr), CLAP_PROCESS_ERROR);
    host.stop();
    EXPECT_EQ(host.process(64, Bytes{0xC0, 1}), CLAP_PROCESS_ERROR);
    EXPECT_FALSE(host.plugin->start_processing(host.plugin));
    EXPECT_EQ(host.take(), Messages{});
}

TEST_F(CLAPHostile, AnInvalidRateIsRejectedAndAnotherTakenAfterwards) {
    host.stop();
    for (const auto rate : {-1.0, 0.0, 0.5, std::numeric_limits<double>::quiet_NaN(), 1e30}) {
        EXPECT_FALSE(host.plugin->activate(host.plugin, rate, 1, 64)) << rate;
    }
    host.start();
    EXPECT_EQ(host.process(64, Bytes{0xC0, 1}), CLAP_PROCESS_SLEEP);
}

TEST_F(CLAPHostile, ASecondInitIsRefused) {
    EXPECT_FALSE(host.plugin->init(host.plugin));
    events.add(program(1));
    EXPECT_EQ(played(), (Messages{{0, {0xC0, 1}}}));
}

TEST(CLAPBeforeInit, EveryFunctionDoesNothing) {
    const CLAPBinary binary;
    clap_host_t host{};
    host.clap_version = CLAP_VERSION;
    const auto* plugin = binary.factory().create_plugin(&binary.factory(), &host, clapId);
    ASSERT_NE(plugin, nullptr);
    const clap_process_t process{};
    EXPECT_FALSE(plugin->activate(plugin, 48000.0, 1, 64));
    EXPECT_FALSE(plugin->start_processing(plugin));
    EXPECT_EQ(plugin->process(plugin, &process), CLAP_PROCESS_ERROR);
    plugin->reset(plugin);
    plugin->stop_processing(plugin);
    plugin->deactivate(plugin);
    plugin->on_main_thread(plugin);
    const auto* state =
        static_cast<const clap_plugin_state_t*>(plugin->get_extension(plugin, CLAP_EXT_STATE));
    EXPECT_FALSE(state->load(plugin, nullptr));
    plugin->destroy(plugin);
}

TEST(CLAPBeforeInit, AHostWithoutFunctionsIsLivedWith) {
    const CLAPBinary binary;
    clap_host_t host{};
    host.clap_version = CLAP_VERSION;
    const auto* plugin = binary.factory().create_plugin(&binary.factory(), &host, clapId);
    ASSERT_NE(plugin, nullptr);
    EXPECT_TRUE(plugin->init(plugin));
    EXPECT_TRUE(plugin->activate(plugin, 48000.0, 1, 64));
    plugin->on_main_thread(plugin);
    plugin->destroy(plugin);
}

TEST_F(CLAPHostile, NoFunctionMindsANullPlugin) {
    const auto* table = host.plugin;
    const clap_process_t process{};
    EXPECT_FALSE(table->init(nullptr));
    EXPECT_FALSE(table->activate(nullptr, 48000.0, 1, 64));
    EXPECT_FALSE(table->start_processing(nullptr));
    EXPECT_EQ(table->process(nullptr, &process), CLAP_PROCESS_ERROR);
    table->stop_processing(nullptr);
    table->reset(nullptr);
    table->deactivate(nullptr);
    table->on_main_thread(nullptr);
    table->destroy(nullptr);
}

/// Events of random kinds, with random contents and times, for as long as it takes to try most of them.
TEST_F(CLAPHostile, EventsOfNoiseNeitherStopNorConfuseIt) {
    host.loadRules(
        {rule(onNoteOn(), send(noteOn(1, 1, 1), 3)), rule(onProgramChange(), send(controlChange(0, 7, 1)))});
    std::mt19937 generator(1);
    const auto random = [&generator](std::uint32_t below) {
        return static_cast<std::uint32_t>(generator() % below);
    };
    for (int i = 0; i < 2000; ++i) {
        for (auto count = random(40); count > 0; --count) {
            union {
                clap_event_header_t header;
                clap_event_note_t note;
                clap_event_note_expression_t expression;
                clap_event_midi_t midi;
                clap_event_transport_t transport;
                std::array<std::uint32_t, 64> words;
            } event{.words = {}};
            for (auto& word : event.words) {
                word = random(3) == 0 ? UINT32_MAX : static_cast<std::uint32_t>(generator());
            }
            auto type = static_cast<std::uint16_t>(random(14));
            type = type == CLAP_EVENT_MIDI_SYSEX ? std::uint16_t{CLAP_EVENT_MIDI} : type;
            event.header = {sizeof(event), random(100), static_cast<std::uint16_t>(random(8) / 7), type, 0};
            if (random(2) == 0) {
                event.midi.port_index = 0;
            }
            events.add(event);
        }
        EXPECT_NE(host.process(random(80), events), CLAP_PROCESS_ERROR);
        events.clear();
    }
    host.take();
    host.plugin->reset(host.plugin);
    host.process(48000);
    host.take();
    EXPECT_EQ(host.process(64, Bytes{0xB3, 1, 2}), CLAP_PROCESS_SLEEP);
    EXPECT_EQ(host.take(), (Messages{{host.now - 64, {0xB3, 1, 2}}}));
}

}  // namespace
}  // namespace quillo
