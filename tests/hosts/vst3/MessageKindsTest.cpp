// SPDX-License-Identifier: GPL-3.0-or-later
// What of each kind of message gets through the format, in both directions: the measured side of
// docs/guide/06-formats.md.
#include <gtest/gtest.h>

#include "hosts/vst3/VST3Host.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
namespace vst = Steinberg::Vst;

constexpr std::uint32_t blockLength = 512;

std::uint8_t byteOf(int value) {
    return static_cast<std::uint8_t>(value);
}

class VST3MessageKinds : public testing::Test {
protected:
    VST3MessageKinds() { install({}); }

    void install(std::vector<Rule> rules) {
        EXPECT_EQ(plugIn.setState(PluginData{std::move(rules)}.write()), Steinberg::kResultOk);
        plugIn.deactivate();
        plugIn.activate();
    }

    /// What the plug-in sends in a block with these messages.
    std::vector<ScriptMessage> sentFor(const std::vector<ScriptMessage>& messages,
                                       std::uint32_t frames = blockLength) {
        input.clear();
        for (const auto& [offset, bytes] : messages) {
            EXPECT_TRUE(plugIn.give(input, static_cast<std::uint32_t>(offset), bytes));
        }
        EXPECT_EQ(plugIn.process(frames, input, &context), Steinberg::kResultOk);
        return plugIn.sent();
    }

    /// Whether the format has a way in for a message.
    bool canBeGiven(const Bytes& bytes) {
        input.clear();
        return plugIn.give(input, 0, bytes);
    }

    /// What a rule sends, woken by a note.
    Bytes outputOf(RuleOutputVariantsV2 output) {
        install({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(std::move(output)))});
        const auto sent = sentFor({{0, {0x90, 60, 100}}});
        return sent.size() == 1 ? sent.front().bytes : Bytes{};
    }

    VST3Instance plugIn;
    VST3Input input;
    vst::ProcessContext context{};
};

TEST_F(VST3MessageKinds, EveryNoteWithEveryVelocityArrivesAndLeavesAsItIs) {
    for (int velocity = 1; velocity < 128; ++velocity) {
        std::vector<ScriptMessage> messages;
        for (int note = 0; note < 128; ++note) {
            messages.push_back({2 * note, {0x90, byteOf(note), byteOf(velocity)}});
            messages.push_back({2 * note + 1, {0x8F, byteOf(note), byteOf(velocity)}});
        }
        EXPECT_EQ(sentFor(messages), messages) << velocity;
    }
}

TEST_F(VST3MessageKinds, ANoteOnOfVelocityZeroArrivesAsOneAndLeavesAsANoteOff) {
    install({rule(onNoteOn(exactly(60)), send(noteOn(1, 61, 5)))});
    EXPECT_EQ(sentFor({{10, {0x90, 60, 0}}}),
              (std::vector<ScriptMessage>{{10, {0x91, 61, 5}}, {10, {0x80, 60, 0}}}));
}

TEST_F(VST3MessageKinds, EveryPolyPressureArrivesAndLeavesAsItIs) {
    for (int note = 0; note < 128; ++note) {
        std::vector<ScriptMessage> messages;
        for (int pressure = 0; pressure < 128; ++pressure) {
            messages.push_back({pressure, {0xA3, byteOf(note), byteOf(pressure)}});
        }
        EXPECT_EQ(sentFor(messages), messages) << note;
    }
}

/// Hosts made with the SDK look for no other.
TEST_F(VST3MessageKinds, PolyPressureLeavesAsTheEventThatTheFormatHasForIt) {
    sentFor({{7, {0xA3, 60, 100}}});
    ASSERT_EQ(plugIn.sentEvents().size(), 1U);
    const auto& event = plugIn.sentEvents().front();
    EXPECT_EQ(event.type, vst::Event::kPolyPressureEvent);
    EXPECT_EQ(event.sampleOffset, 7);
    EXPECT_EQ(event.polyPressure.channel, 3);
    EXPECT_EQ(event.polyPressure.pitch, 60);
    EXPECT_FLOAT_EQ(event.polyPressure.pressure, 100.0F / 127.0F);
    EXPECT_EQ(event.polyPressure.noteId, -1);
}

TEST_F(VST3MessageKinds, EveryValueOfEveryControllerArrivesAndLeavesAsItIs) {
    for (int controller = 0; controller < 128; ++controller) {
        std::vector<ScriptMessage> messages;
        for (int value = 0; value < 128; ++value) {
            messages.push_back({value, {0xB5, byteOf(controller), byteOf(value)}});
        }
        EXPECT_EQ(sentFor(messages), messages) << controller;
    }
}

TEST_F(VST3MessageKinds, EveryChannelPressureArrivesAndLeavesAsItIs) {
    std::vector<ScriptMessage> messages;
    for (int pressure = 0; pressure < 128; ++pressure) {
        messages.push_back({pressure, {0xD2, byteOf(pressure)}});
    }
    EXPECT_EQ(sentFor(messages), messages);
}

TEST_F(VST3MessageKinds, EveryPitchBendArrivesAndLeavesAsItIs) {
    for (int high = 0; high < 128; ++high) {
        std::vector<ScriptMessage> messages;
        for (int low = 0; low < 128; ++low) {
            messages.push_back({low, {0xE1, byteOf(low), byteOf(high)}});
        }
        EXPECT_EQ(sentFor(messages), messages) << high;
    }
}

TEST_F(VST3MessageKinds, AProgramChangeArrivesFromAHostThatUsesTheOutgoingEventAndLeavesAsItIs) {
    install({rule(onProgramChange(exactly(5)), send(controlChange(1, 7, 5)))});
    EXPECT_EQ(sentFor({{7, {0xC0, 5}}}), (std::vector<ScriptMessage>{{7, {0xB1, 7, 5}}, {7, {0xC0, 5}}}));
    for (int program = 0; program < 128; ++program) {
        EXPECT_EQ(outputOf(protocol(StatusV2::programChange, channel(4), byte(byteOf(program)))),
                  (Bytes{0xC4, byteOf(program)}));
    }
}

/// The way in that the format means: a parameter that chooses from a list of programs.
TEST_F(VST3MessageKinds, NoParameterChangesPrograms) {
    auto& controller = plugIn.controller();
    ASSERT_EQ(controller.getParameterCount(), 1 + 16 * vst::kCountCtrlNumber);
    for (Steinberg::int32 index = 0; index < controller.getParameterCount(); ++index) {
        vst::ParameterInfo info{};
        ASSERT_EQ(controller.getParameterInfo(index, info), Steinberg::kResultOk);
        EXPECT_EQ(info.flags & vst::ParameterInfo::kIsProgramChange, 0);
    }
}

TEST_F(VST3MessageKinds, SystemExclusiveLeavesAsItIsAndIsNotPassedOn) {
    for (const std::size_t length : {0U, 1U, 4U, 1000U, 60000U}) {
        Bytes message{0xF0};
        message.resize(length + 1, 0x55);
        message.push_back(0xF7);
        EXPECT_EQ(outputOf(systemExclusive(Bytes(message.begin() + 1, message.end() - 1))), message);
        EXPECT_EQ(sentFor({{3, message}}), std::vector<ScriptMessage>()) << length;
    }
}

/// At some lengths JUCE's buffer would not be read to its end.
TEST_F(VST3MessageKinds, SystemExclusiveOfAnyLengthArrivesAndIsNotPassedOn) {
    for (std::size_t length = 65520; length < 65540; ++length) {
        Bytes message(length, 0x55);
        message.front() = 0xF0;
        message.back() = 0xF7;
        EXPECT_EQ(sentFor({{3, message}, {4, {0x90, 60, 1}}}),
                  (std::vector<ScriptMessage>{{4, {0x90, 60, 1}}}))
            << length;
    }
}

/// Hosts read the bytes after the block.
TEST_F(VST3MessageKinds, TheBytesOfSystemExclusiveStayUntilTheNextBlock) {
    install({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(systemExclusive(Bytes(900, 0x11)))),
             rule(onNoteOff(any, any, PassThroughV2::EatMatching), send(systemExclusive(Bytes(900, 0x22))))});
    const auto first = sentFor({{3, {0x90, 60, 1}}});
    EXPECT_EQ(plugIn.sent(), first);
    EXPECT_NE(sentFor({{3, {0x80, 60, 1}}}), first);
}

TEST_F(VST3MessageKinds, AQuarterFrameLosesItsPieceNumber) {
    EXPECT_EQ(sentFor({{10, {0xF1, 0x25}}}), (std::vector<ScriptMessage>{{10, {0xF1, 0x05}}}));
}

TEST_F(VST3MessageKinds, TheOtherSystemMessagesHaveNoWayIn) {
    for (const auto& [time, bytes] : formatScript("EverySystemMessage").messages) {
        EXPECT_EQ(canBeGiven(bytes), bytes.front() == 0xF1) << int{bytes.front()};
    }
}

TEST_F(VST3MessageKinds, ControllersArriveBeforeNotesOfTheSameTime) {
    EXPECT_EQ(sentFor({{10, {0x90, 60, 1}}, {10, {0xB0, 1, 2}}, {10, {0xC0, 1}}, {10, {0xB0, 1, 3}}}),
              (std::vector<ScriptMessage>{
                  {10, {0xB0, 1, 2}}, {10, {0xB0, 1, 3}}, {10, {0x90, 60, 1}}, {10, {0xC0, 1}}}));
}

TEST_F(VST3MessageKinds, WhatARuleSendsAtOneTimeLeavesInItsOrder) {
    install({rule(onNoteOn(), send(programChange(channel(5), 3, byte(12)))),
             rule(onNoteOn(), send(controlChange(0, 7, 1)))});
    EXPECT_EQ(sentFor({{10, {0x90, 60, 1}}}),
              (std::vector<ScriptMessage>{
                  {10, {0xB5, 0x00, 3}}, {10, {0xC5, 12}}, {10, {0xB0, 7, 1}}, {10, {0x90, 60, 1}}}));
}

TEST_F(VST3MessageKinds, OfMoreThan2048MessagesInABlockTheFirst2048Leave) {
    std::vector<ScriptMessage> messages;
    for (int i = 0; i < 3000; ++i) {
        messages.push_back({i / 8, {0x90, byteOf(i % 128), 100}});
    }
    const auto sent = sentFor(messages);
    messages.resize(2048);
    EXPECT_EQ(sent, messages);
    EXPECT_EQ(sentFor({{0, {0x90, 1, 1}}}), (std::vector<ScriptMessage>{{0, {0x90, 1, 1}}}));
}

}  // namespace
}  // namespace quillo
