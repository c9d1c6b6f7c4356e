// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/formats/FormatScript.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <stdexcept>

#include "persistence/PluginData.hpp"
#include "support/TestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo::test {

namespace {

constexpr SampleTime framesPerMillisecond = scriptSampleRate / 1000;
constexpr std::uint32_t longestBlock = 8192;

Bytes stateOf(std::vector<Rule> rules) {
    return PluginData{std::move(rules)}.write();
}

FormatScript everyChannelMessage() {
    FormatScript script{"EveryChannelMessage", stateOf({}), {}, {}, 4096};
    SampleTime time = 3;
    for (std::uint8_t channel = 0; channel < 16; ++channel) {
        const auto status = [channel](int kind) { return static_cast<std::uint8_t>(kind | channel); };
        for (const auto& bytes :
             {Bytes{status(0x90), 60, 100}, Bytes{status(0xA0), 60, 7}, Bytes{status(0xB0), 1, 64},
              Bytes{status(0xC0), 12}, Bytes{status(0xD0), 55}, Bytes{status(0xE0), 1, 2},
              Bytes{status(0x80), 60, 33}}) {
            script.messages.push_back({time, bytes});
            time += 31;
        }
    }
    return script;
}

FormatScript everySystemMessage() {
    FormatScript script{"EverySystemMessage", stateOf({}), {}, {}, 1024};
    SampleTime time = 0;
    for (const auto& bytes :
         {Bytes{0xFA}, Bytes{0xF8}, Bytes{0xFB}, Bytes{0xFC}, Bytes{0xFE}, Bytes{0xF1, 0x25},
          Bytes{0xF2, 1, 2}, Bytes{0xF3, 4}, Bytes{0xF6}, Bytes{0xFF}}) {
        script.messages.push_back({time, bytes});
        time += 100;
    }
    return script;
}

FormatScript everyOutput() {
    Bytes longBody(1000, 0x11);
    const auto on = [](std::uint8_t note) {
        return onNoteOn(exactly(note), any, PassThroughV2::EatMatching);
    };
    const auto one = byte(1);
    FormatScript script{
        "EveryOutput",
        stateOf({rule(on(1), send(noteOn(2, 61, 5))),
                 rule(on(2), send(protocol(StatusV2::noteOff, channel(3), byte(61), byte(5)), 1)),
                 rule(on(3), send(controlChange(4, 7, 100), 10)),
                 rule(on(4), send(programChange(channel(5), 3, byte(12)), 250)),
                 rule(on(5), send(protocol(StatusV2::channelPressure, channel(6), byte(44)))),
                 rule(on(6), send(protocol(StatusV2::pitchWheel, channel(7), one, byte(96)), 33)),
                 rule(on(7), send(systemExclusive({0x7E, 0x7F, 9, 1}))),
                 rule(on(8), send(systemExclusive(longBody), 5)),
                 rule(on(9), send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, triggerByte), 2))}),
        {},
        {},
        framesPerMillisecond * 300};
    for (std::uint8_t note = 1; note <= 10; ++note) {
        script.messages.push_back({SampleTime{note} * 101, {0x9A, note, 99}});
    }
    return script;
}

FormatScript loading() {
    return {"Loading",
            stateOf({rule(onLoad(), send(controlChange(0, 7, 1))),
                     rule(onLoad(), send(controlChange(0, 7, 2), 20))}),
            {{5, {0xC0, 1}}},
            {},
            framesPerMillisecond * 30};
}

FormatScript transport() {
    const auto onEach = [](HostTransportTriggerVariantsV2 trigger, std::uint8_t controller) {
        return rule(onHost(trigger), send(controlChange(0, controller, 1)));
    };
    FormatScript script{"Transport",
                        stateOf({onEach(HostTransportTriggerVariantsV2::Start, 20),
                                 onEach(HostTransportTriggerVariantsV2::Continue, 21),
                                 onEach(HostTransportTriggerVariantsV2::Stop, 22)}),
                        {{100, {0xC0, 1}}, {5000, {0xC0, 2}}},
                        {},
                        20000};
    script.transport = {{0, false, 0.0},        {1000, true, 0.0},       {2500, false, 1500.0},
                        {2600, false, 48000.0}, {3000, true, 48000.0},   {4000, true, 48000.0},
                        {4800, false, 48800.0}, {5001, true, -752.0},    {5753, true, 0.0},
                        {7000, false, 1247.0},  {7010, true, 1247.0},    {7020, false, 1257.0},
                        {9000, true, 960000.0}, {12000, true, 963000.0}, {13000, true, 0.0}};
    return script;
}

/// Notes that are echoed at 1 and at 7 ms, and controllers that never share a time with anything.
FormatScript dense() {
    constexpr SampleTime spacing = 10 * framesPerMillisecond;
    constexpr int notes = 200;
    FormatScript script{
        "Dense",
        stateOf({rule(onNoteOn(), send(protocol(StatusV2::noteOn, channel(1), triggerByte, byte(5)), 1)),
                 rule(onNoteOn(), send(protocol(StatusV2::noteOn, channel(2), triggerByte, byte(6)), 7)),
                 rule(onControlChange(1, exactly(64), any, PassThroughV2::EatMatching),
                      send(controlChange(0, 2, 3)))}),
        {},
        {},
        (notes + 1) * spacing};
    std::mt19937 generator(1);
    const auto random = [&generator](int below) {
        return std::uniform_int_distribution(0, below - 1)(generator);
    };
    for (int i = 0; i < notes; ++i) {
        const SampleTime begin = i * spacing;
        script.messages.push_back({begin, {0x90, static_cast<std::uint8_t>(random(128)), 100}});
        for (SampleTime residue = 1; residue < framesPerMillisecond; residue += 1 + random(9)) {
            script.messages.push_back(
                {begin + residue, {0xB0, 1, static_cast<std::uint8_t>(60 + random(8))}});
        }
    }
    return script;
}

}  // namespace

std::vector<FormatScript> formatScripts() {
    return {everyChannelMessage(), everySystemMessage(), everyOutput(), loading(), transport(), dense()};
}

FormatScript formatScript(const std::string& name) {
    for (auto& script : formatScripts()) {
        if (script.name == name) {
            return script;
        }
    }
    throw std::invalid_argument("no script is named " + name);
}

namespace {

/// A transport as the unit asks for it: each jump while it moves is one change of its flags.
struct AskedTransport {
    AUHostTransportStateFlags flags = 0;
    double position = 0.0;

    void report(bool moves, double now) {
        const bool jumps = moves && flags != 0 && now != position;
        const auto kept = flags & AUHostTransportStateChanged;
        flags = moves ? AUHostTransportStateMoving | (jumps ? kept ^ AUHostTransportStateChanged : kept) : 0;
        position = now;
    }
    void advance(SampleTime frames) { position += flags != 0 ? static_cast<double>(frames) : 0.0; }
};

}  // namespace

std::vector<ScriptMessage> playedByTheUnit(const FormatScript& script) {
    constexpr SampleTime longestCycle = 512;
    const auto unit = makeUnit();
    unit->processor->sampleRate = scriptSampleRate;
    unit->setFullState(StateDictionary{{stateKey, script.state}});
    AskedTransport transport;
    unit->transportStateBlock = [&transport](AUHostTransportStateFlags* flags, double* position, double*,
                                             double*) {
        *flags = transport.flags;
        *position = transport.position;
        return true;
    };
    std::vector<ScriptMessage> sent;
    unit->MIDIOutputEventBlock =
        WithoutDeadline([&sent](AUEventSampleTime time, std::uint8_t, std::span<const std::uint8_t> bytes) {
            sent.push_back({time, copyOf(bytes)});
            return noErr;
        });
    const auto render = unit->internalRenderBlock();
    auto told = script.transport.begin();
    auto message = script.messages.begin();
    for (SampleTime start = 0; start < script.end;) {
        for (; told != script.transport.end() && told->time <= start; ++told) {
            transport.report(told->moves, told->position);
        }
        const auto next = told != script.transport.end() ? told->time : script.end;
        const auto end = std::min({start + longestCycle, next, script.end});
        RenderEventList events(script.messages.size());
        for (; message != script.messages.end() && message->time < end; ++message) {
            if (!events.tryPushMIDI(message->time, message->bytes)) {
                throw std::logic_error("a script has a message that is too long");
            }
        }
        if (render({static_cast<double>(start)}, static_cast<AUAudioFrameCount>(end - start),
                   events.head()) != noErr) {
            throw std::logic_error("a cycle of the script failed");
        }
        transport.advance(end - start);
        start = end;
    }
    std::vector<std::size_t> order(sent.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {}, [&sent](std::size_t i) { return std::pair(sent[i].time, i); });
    std::vector<ScriptMessage> ordered;
    for (const auto i : order) {
        ordered.push_back(sent[i]);
    }
    return ordered;
}

std::vector<std::uint32_t> evenBlocks(SampleTime end, std::uint32_t length) {
    std::vector<std::uint32_t> blocks(static_cast<std::size_t>(end / length), length);
    if (end % length != 0) {
        blocks.push_back(static_cast<std::uint32_t>(end % length));
    }
    return blocks;
}

std::vector<std::uint32_t> randomBlocks(SampleTime end, std::uint32_t longest, unsigned seed) {
    std::mt19937 generator(seed);
    std::uniform_int_distribution<SampleTime> lengths(1, longest);
    std::vector<std::uint32_t> blocks;
    for (SampleTime left = end; left > 0; left -= blocks.back()) {
        blocks.push_back(static_cast<std::uint32_t>(std::min(left, lengths(generator))));
    }
    return blocks;
}

void expectAsTheUnit(
    const FormatScript& script,
    const std::function<std::vector<ScriptMessage>(const std::vector<std::uint32_t>& blocks)>& play) {
    const auto expected = playedByTheUnit(script);
    ASSERT_FALSE(expected.empty());
    for (std::uint32_t length = 1; length <= longestBlock; length *= 2) {
        EXPECT_EQ(play(evenBlocks(script.end, length)), expected) << "blocks of " << length;
    }
    EXPECT_EQ(play(evenBlocks(script.end, 1000)), expected) << "blocks of 1000";
    for (unsigned seed = 0; seed < 10; ++seed) {
        EXPECT_EQ(play(randomBlocks(script.end, 2000, seed)), expected) << "seed " << seed;
    }
}

}  // namespace quillo::test
