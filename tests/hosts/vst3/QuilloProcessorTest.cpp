// SPDX-License-Identifier: GPL-3.0-or-later
// The processor and its editor, without the wrapper and without a screen.
#include "hosts/vst3/QuilloProcessor.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "editor/AlertView.hpp"
#include "hosts/formats/FormatScript.hpp"
#include "hosts/vst3/MIDIBufferWriter.hpp"
#include "hosts/vst3/QuilloProcessorEditor.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;
using Layout = juce::AudioProcessor::BusesLayout;

class HostListener final : public juce::AudioProcessorListener {
public:
    void audioProcessorParameterChanged(juce::AudioProcessor*, int, float) override {}
    void audioProcessorChanged(juce::AudioProcessor*, const ChangeDetails& details) override {
        changes += details.nonParameterStateChanged ? 1 : 0;
    }

    int changes = 0;
};

class QuilloProcessorTest : public testing::Test {
protected:
    QuilloProcessorTest() { processor.prepareToPlay(scriptSampleRate, 512); }

    void install(std::vector<Rule> rules) {
        ASSERT_EQ(processor.session().restore(PluginData{std::move(rules)}.write()), std::nullopt);
    }

    std::vector<ScriptMessage> sentFor(const std::vector<ScriptMessage>& messages, int frames = 512) {
        juce::AudioBuffer<float> audio(2, frames);
        audio.clear();
        MIDIBufferWriter writer;
        writer.open(buffer);
        for (const auto& [offset, bytes] : messages) {
            writer.write(static_cast<std::uint32_t>(offset), bytes);
        }
        processor.processBlock(audio, buffer);
        std::vector<ScriptMessage> sent;
        for (const auto event : buffer) {
            sent.push_back({event.samplePosition, Bytes(event.data, event.data + event.numBytes)});
        }
        return sent;
    }

    const std::optional<std::string>& alert() {
        processor.session().drain();
        return processor.session().model()->alertErrorMessage();
    }

    static Layout layout(const juce::AudioChannelSet& input, const juce::AudioChannelSet& output) {
        Layout result;
        result.inputBuses.add(input);
        result.outputBuses.add(output);
        return result;
    }

    QuilloProcessor processor;
    juce::MidiBuffer buffer;
    const std::vector<Rule> answer{rule(onNoteOn(), send(noteOn(1, 61, 5)), "answer")};
};

/// What the format has no words for is lost by the wrapper, not here.
TEST_F(QuilloProcessorTest, MessagesOfEveryKindPassItUnchanged) {
    for (const auto* name : {"EveryChannelMessage", "EverySystemMessage"}) {
        const auto script = formatScript(name);
        EXPECT_EQ(sentFor(script.messages, static_cast<int>(script.end)), script.messages) << name;
    }
}

TEST_F(QuilloProcessorTest, AnEventBeforeTheBlockIsMovedToItsStart) {
    buffer.clear();
    buffer.addEvent(juce::MidiMessage(0xC0, 5), -7);
    juce::AudioBuffer<float> audio(2, 64);
    processor.processBlock(audio, buffer);
    EXPECT_EQ(buffer.getFirstEventTime(), 0);
}

/// The cycle ends there, as it does with any output that is full, and nothing is logged that was not sent.
TEST_F(QuilloProcessorTest, TheUnitLearnsThatTheWrapperTakesNoMoreEvents) {
    install(answer);
    processor.session().viewDidLoad();
    std::vector<ScriptMessage> notes;
    for (SampleTime time = 0; time < 2000; ++time) {
        notes.push_back({time, {0x90, 60, 1}});
    }
    EXPECT_EQ(sentFor(notes, 2000).size(), MIDIBufferWriter::mostEvents);
    processor.session().drain();
    const auto& model = *processor.session().model();
    EXPECT_EQ(model.outLog()[QuilloModel::logCapacity - 1].timestamp, 1023);
    EXPECT_EQ(model.inLog()[QuilloModel::logCapacity - 1].timestamp, 1024);
    EXPECT_EQ(sentFor({{5, {0x90, 60, 1}}}).size(), 2U);
}

TEST_F(QuilloProcessorTest, ABypassedBlockHasTheRoomOfAnyBlock) {
    install({rule(onNoteOff(), send(controlChange(1, 7, 5), 10))});
    const std::vector<ScriptMessage> notes(2000, {0, {0x80, 60, 1}});
    EXPECT_EQ(sentFor(notes, 480).size(), 2000U);
    juce::AudioBuffer<float> audio(2, 480);
    buffer.clear();
    processor.processBlockBypassed(audio, buffer);
    EXPECT_EQ(buffer.getNumEvents(), 2000);
}

TEST_F(QuilloProcessorTest, ChannelsWithoutAnInputAreSilent) {
    using Set = juce::AudioChannelSet;
    ASSERT_TRUE(processor.setBusesLayout(layout(Set::disabled(), Set::stereo())));
    juce::AudioBuffer<float> audio(2, 64);
    for (int channel = 0; channel < 2; ++channel) {
        juce::FloatVectorOperations::fill(audio.getWritePointer(channel), 0.5F, 64);
    }
    processor.processBlock(audio, buffer);
    EXPECT_EQ(audio.getMagnitude(0, 64), 0.0F);
}

TEST_F(QuilloProcessorTest, AMessageThatIsLongerThanAnEventCanBeIsLeftOutAndReported) {
    install({rule(onNoteOn(exactly(1)), send(systemExclusive(Bytes(MIDIBufferWriter::longestMessage - 1)))),
             rule(onNoteOn(exactly(2)), send(systemExclusive(Bytes(MIDIBufferWriter::longestMessage - 2))))});
    EXPECT_EQ(sentFor({{0, {0x90, 1, 1}}}), (std::vector<ScriptMessage>{{0, {0x90, 1, 1}}}));
    ASSERT_TRUE(alert().has_value());
    EXPECT_THAT(*alert(), HasSubstr("The SysEx of rule 1 is "));
    const auto sent = sentFor({{0, {0x90, 2, 1}}});
    ASSERT_EQ(sent.size(), 2U);
    EXPECT_EQ(sent[0].bytes.size(), MIDIBufferWriter::longestMessage);
}

TEST_F(QuilloProcessorTest, TakesAsManyChannelsInAsOut) {
    using Set = juce::AudioChannelSet;
    for (const auto& set :
         {Set::disabled(), Set::mono(), Set::stereo(), Set::create5point1(), Set::create7point1()}) {
        EXPECT_TRUE(processor.isBusesLayoutSupported(layout(set, set)));
        EXPECT_TRUE(processor.isBusesLayoutSupported(layout(Set::disabled(), set)));
        EXPECT_TRUE(processor.isBusesLayoutSupported(layout(set, Set::disabled())));
    }
    EXPECT_FALSE(processor.isBusesLayoutSupported(layout(Set::mono(), Set::stereo())));
    EXPECT_FALSE(
        processor.isBusesLayoutSupported(layout(Set::create7point1point4(), Set::create7point1point4())));
}

TEST_F(QuilloProcessorTest, SavesTheStateDocumentAndNothingElse) {
    const auto document = PluginData{answer}.write();
    ASSERT_EQ(processor.session().restore(document), std::nullopt);
    juce::MemoryBlock saved;
    processor.getStateInformation(saved);
    EXPECT_EQ(saved, juce::MemoryBlock(document.data(), document.size()));
}

TEST_F(QuilloProcessorTest, RulesThatCannotBeSavedAreToldOfAndKept) {
    const std::vector<Rule> unwritable{rule(onLoad(), send(noteOn(1, 61, 5)), "\xFF")};
    processor.session().onRulesChanged(unwritable);
    juce::MemoryBlock saved;
    processor.getStateInformation(saved);
    EXPECT_TRUE(saved.isEmpty());
    EXPECT_FALSE(processor.hasSaved());
    ASSERT_TRUE(alert().has_value());
    EXPECT_THAT(*alert(), HasSubstr("The rules cannot be saved with the project"));
    EXPECT_EQ(processor.session().processor().rules(), unwritable);
}

TEST_F(QuilloProcessorTest, ARejectedSampleRateIsReportedAndNothingIsRendered) {
    install(answer);
    processor.prepareToPlay(-1.0, 512);
    ASSERT_TRUE(alert().has_value());
    EXPECT_THAT(*alert(), HasSubstr("sample rate"));
    EXPECT_FALSE(processor.canRender());
    EXPECT_EQ(sentFor({{0, {0x90, 60, 1}}}), std::vector<ScriptMessage>());
    EXPECT_EQ(processor.session().renderer().now(), 0);
    processor.prepareToPlay(scriptSampleRate, 512);
    EXPECT_EQ(sentFor({{0, {0x90, 60, 1}}}).size(), 2U);
}

TEST_F(QuilloProcessorTest, BeforeARateIsKnownNothingIsRendered) {
    QuilloProcessor unprepared;
    juce::AudioBuffer<float> audio(2, 64);
    buffer.addEvent(juce::MidiMessage::noteOn(1, 60, 0.5F), 7);
    unprepared.processBlock(audio, buffer);
    EXPECT_TRUE(buffer.isEmpty());
    EXPECT_EQ(unprepared.session().renderer().now(), 0);
}

class QuilloProcessorEditorTest : public QuilloProcessorTest {
protected:
    std::unique_ptr<QuilloProcessorEditor> open() {
        return std::unique_ptr<QuilloProcessorEditor>(
            dynamic_cast<QuilloProcessorEditor*>(processor.createEditorIfNeeded()));
    }

    ~QuilloProcessorEditorTest() override { processor.removeListener(&host); }

    HostListener host;
};

TEST_F(QuilloProcessorEditorTest, OpensAtItsPreferredSizeAndCanBeResizedDownToItsLeast) {
    const auto editor = open();
    EXPECT_EQ(editor->getBounds(), juce::Rectangle<int>(500, 250));
    EXPECT_TRUE(editor->isResizable());
    EXPECT_EQ(editor->getConstrainer()->getMinimumWidth(), 200);
    EXPECT_EQ(editor->getConstrainer()->getMinimumHeight(), 200);
    editor->setSize(820, 640);
    EXPECT_EQ(editor->view().getBounds(), juce::Rectangle<int>(820, 640));
}

TEST_F(QuilloProcessorEditorTest, TheHostScalesIt) {
    const auto editor = open();
    editor->setScaleFactor(2.0F);
    EXPECT_EQ(editor->getLocalBounds(), juce::Rectangle<int>(500, 250));
    EXPECT_EQ(editor->getBoundsInParent(), juce::Rectangle<int>(1000, 500));
}

TEST_F(QuilloProcessorEditorTest, ShowsTheRulesThatTheHostHasRestored) {
    const auto editor = open();
    const auto document = PluginData{answer}.write();
    ASSERT_EQ(processor.session().restore(document), std::nullopt);
    processor.session().drain();
    ASSERT_EQ(editor->view().editor().rules().size(), 1U);
    EXPECT_EQ(editor->view().editor().rules()[0].rule.name, "answer");
}

TEST_F(QuilloProcessorEditorTest, AnEditReachesTheRulesAndMarksTheProjectChanged) {
    const auto editor = open();
    processor.addListener(&host);
    editor->view().editor().add(MIDIRuleType::OutputType{OutputEntryType::PitchWheel});
    EXPECT_EQ(processor.session().processor().rules().size(), 1U);
    EXPECT_EQ(host.changes, 1);
}

TEST_F(QuilloProcessorEditorTest, RestoringIsNoEdit) {
    const auto editor = open();
    processor.addListener(&host);
    install(answer);
    processor.session().drain();
    EXPECT_EQ(host.changes, 0);
}

TEST_F(QuilloProcessorEditorTest, WhatIsSentByHandLeavesInTheNextBlock) {
    install({rule(onLoad(), send(noteOn(1, 61, 5)))});
    EXPECT_EQ(sentFor({}).size(), 1U);
    const auto editor = open();
    editor->view().editor().send(editor->view().editor().rules()[0].id);
    EXPECT_EQ(sentFor({}), (std::vector<ScriptMessage>{{0, {0x91, 61, 5}}}));
}

TEST_F(QuilloProcessorEditorTest, WhatWentWrongBeforeItOpenedIsShown) {
    ASSERT_NE(processor.session().restore(Bytes{'{'}), std::nullopt);
    const auto editor = open();
    EXPECT_NE(dynamic_cast<AlertView*>(editor->view().overlay()), nullptr);
}

TEST_F(QuilloProcessorEditorTest, LogsAreKeptFromTheFirstEditorToTheNext) {
    open();
    sentFor({{7, {0x90, 60, 1}}});
    const auto editor = open();
    EXPECT_EQ(editor->view().logger().collapsedForm().inText(), "[7] 90 3c 01");
}

TEST_F(QuilloProcessorEditorTest, TheClockDrainsTheLogs) {
    const auto editor = open();
    sentFor({{7, {0x90, 60, 1}}});
    while (editor->view().logger().collapsedForm().outText().isEmpty()) {
        juce::MessageManager::getInstance()->runDispatchLoopUntil(10);
    }
    EXPECT_EQ(editor->view().logger().collapsedForm().outText(), "[7] 90 3c 01");
}

}  // namespace
}  // namespace quillo
