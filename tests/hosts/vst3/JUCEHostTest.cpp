// SPDX-License-Identifier: GPL-3.0-or-later
// The built plug-in in a host made with JUCE's own classes, as many hosts are.
#include <gtest/gtest.h>

#include <juce_audio_processors/juce_audio_processors.h>

#include "hosts/formats/FormatScript.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

constexpr int blockLength = 512;

class JUCEHost : public testing::Test {
protected:
    static juce::PluginDescription found() {
        juce::VST3PluginFormat format;
        juce::OwnedArray<juce::PluginDescription> types;
        format.findAllTypesForFile(types, QUILLO_VST3_BUNDLE);
        EXPECT_EQ(types.size(), 1);
        return types.isEmpty() ? juce::PluginDescription() : *types[0];
    }

    JUCEHost() {
        juce::VST3PluginFormat format;
        juce::String problem;
        plugIn = format.createInstanceFromDescription(found(), scriptSampleRate, blockLength, problem);
        EXPECT_EQ(problem, juce::String());
    }

    /// Such a host keeps what a plug-in saves inside a document of its own.
    void install(std::vector<Rule> rules) {
        const auto document = PluginData{std::move(rules)}.write();
        juce::XmlElement state("VST3PluginState");
        state.createNewChildElement("IComponent")
            ->addTextElement(juce::MemoryBlock(document.data(), document.size()).toBase64Encoding());
        juce::MemoryBlock chunk;
        juce::AudioProcessor::copyXmlToBinary(state, chunk);
        plugIn->setStateInformation(chunk.getData(), static_cast<int>(chunk.getSize()));
        plugIn->prepareToPlay(scriptSampleRate, blockLength);
    }

    std::vector<ScriptMessage> sentFor(const std::vector<ScriptMessage>& messages) {
        juce::MidiBuffer buffer;
        for (const auto& [offset, bytes] : messages) {
            buffer.addEvent(bytes.data(), static_cast<int>(bytes.size()), static_cast<int>(offset));
        }
        juce::AudioBuffer<float> audio(2, blockLength);
        audio.clear();
        plugIn->processBlock(audio, buffer);
        std::vector<ScriptMessage> sent;
        for (const auto event : buffer) {
            sent.push_back({event.samplePosition, Bytes(event.data, event.data + event.numBytes)});
        }
        return sent;
    }

    std::unique_ptr<juce::AudioPluginInstance> plugIn;
};

TEST_F(JUCEHost, FindsThePlugInWithItsNameMakerAndKind) {
    const auto description = found();
    EXPECT_EQ(description.name, "MIDI Quillo");
    EXPECT_EQ(description.manufacturerName, "MIDI Quillo");
    EXPECT_EQ(description.category, "Fx|Tools");
    EXPECT_EQ(description.version, QUILLO_VERSION);
    EXPECT_FALSE(description.isInstrument);
    EXPECT_EQ(description.numInputChannels, 2);
    EXPECT_EQ(description.numOutputChannels, 2);
}

TEST_F(JUCEHost, SeesAMIDIProcessorWithoutAnEnd) {
    ASSERT_NE(plugIn, nullptr);
    EXPECT_TRUE(plugIn->acceptsMidi());
    EXPECT_TRUE(plugIn->producesMidi());
    EXPECT_TRUE(plugIn->hasEditor());
    EXPECT_GT(plugIn->getTailLengthSeconds(), 1000.0);
}

TEST_F(JUCEHost, NotesPolyPressureAndProgramChangesArriveAndLeaveAsTheyAreAtTheirTimes) {
    install({});
    std::vector<ScriptMessage> messages;
    SampleTime time = 0;
    for (const auto& message : formatScript("EveryChannelMessage").messages) {
        const auto kind = message.bytes[0] & 0xF0;
        if (kind == 0x80 || kind == 0x90 || kind == 0xA0 || kind == 0xC0) {
            messages.push_back({time, message.bytes});
            time += 7;
        }
    }
    EXPECT_EQ(messages.size(), 64U);
    EXPECT_EQ(sentFor(messages), messages);
}

/// Such a host gives a parameter one value a block.
TEST_F(JUCEHost, OfControllersPressureAndBendTheLastValueOfTheBlockArrivesAtItsStart) {
    install({});
    EXPECT_EQ(sentFor({{10, {0xB0, 1, 2}}, {20, {0xB0, 1, 3}}}),
              (std::vector<ScriptMessage>{{0, {0xB0, 1, 3}}}));
    EXPECT_EQ(sentFor({{10, {0xD0, 1}}, {20, {0xD0, 2}}}), (std::vector<ScriptMessage>{{0, {0xD0, 2}}}));
    EXPECT_EQ(sentFor({{10, {0xE0, 1, 2}}, {20, {0xE0, 3, 4}}}),
              (std::vector<ScriptMessage>{{0, {0xE0, 3, 4}}}));
}

TEST_F(JUCEHost, NoSystemMessageArrivesButAQuarterFrameOfTheWrongPiece) {
    install({rule(onMIDIStart(), send(noteOn(1, 61, 5))), rule(onMIDIStop(), send(noteOn(1, 61, 5))),
             rule(onMIDIContinue(), send(noteOn(1, 61, 5)))});
    for (const auto& message : formatScript("EverySystemMessage").messages) {
        const auto sent = sentFor({{10, message.bytes}});
        if (message.bytes[0] == 0xF1) {
            EXPECT_EQ(sent, (std::vector<ScriptMessage>{{10, {0xF1, 0x15}}}));
        } else {
            EXPECT_EQ(sent, std::vector<ScriptMessage>()) << int{message.bytes[0]};
        }
    }
}

TEST_F(JUCEHost, SystemExclusiveLeavesAsItIs) {
    Bytes longBody(1000, 0x11);
    install({rule(onNoteOn(exactly(1), any, PassThroughV2::EatMatching),
                  send(systemExclusive({0x7E, 0x7F, 9, 1}))),
             rule(onNoteOn(exactly(2), any, PassThroughV2::EatMatching), send(systemExclusive(longBody)))});
    EXPECT_EQ(sentFor({{10, {0x90, 1, 1}}}),
              (std::vector<ScriptMessage>{{10, {0xF0, 0x7E, 0x7F, 9, 1, 0xF7}}}));
    const auto sent = sentFor({{10, {0x90, 2, 1}}});
    longBody.insert(longBody.begin(), 0xF0);
    longBody.push_back(0xF7);
    EXPECT_EQ(sent, (std::vector<ScriptMessage>{{10, longBody}}));
}

TEST_F(JUCEHost, SavesAndRestores) {
    install({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(1, 61, 5)))});
    juce::MemoryBlock saved;
    plugIn->getStateInformation(saved);
    install({});
    EXPECT_EQ(sentFor({{10, {0x90, 1, 1}}}), (std::vector<ScriptMessage>{{10, {0x90, 1, 1}}}));
    plugIn->setStateInformation(saved.getData(), static_cast<int>(saved.getSize()));
    EXPECT_EQ(sentFor({{10, {0x90, 1, 1}}}), (std::vector<ScriptMessage>{{10, {0x91, 61, 5}}}));
}

}  // namespace
}  // namespace quillo
