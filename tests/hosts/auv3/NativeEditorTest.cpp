// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/NativeEditor.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "editor/AlertView.hpp"
#include "editor/PresetExchange.hpp"
#include "editor/QuilloView.hpp"
#include "hosts/auv3/MainThread.hpp"
#include "hosts/auv3/PresetPanels.hpp"
#include "platform/AtomicFile.hpp"
#include "support/JuceEvents.hpp"
#include "support/TestRules.hpp"

namespace quillo {

namespace {

/// What the panel that was opened last does when the user has chosen.
PresetToRead toRead;
PresetToWrite toWrite;
void* viewOfPanel = nullptr;
std::string suggestedName;

}  // namespace

void choosePresetToRead(void* view, PresetToRead chosen) {
    viewOfPanel = view;
    toRead = std::move(chosen);
}

void choosePresetToWrite(void* view, const std::string& name, PresetToWrite chosen) {
    viewOfPanel = view;
    suggestedName = name;
    toWrite = std::move(chosen);
}

namespace {

using namespace test;

const std::vector oneRule{rule(onNoteOn(), send(noteOn(1, 2, 3)), "one")};

/// The editor as the shell opens it, in a window that stands for the host's view.
class NativeEditorTest : public testing::Test {
protected:
    NativeEditorTest() {
        window.setBounds(10, 10, 700, 500);
        window.setVisible(true);
        window.addToDesktop(0);
        static_cast<void>(controller->createAudioUnit(midiQuilloComponent));
        editor = makeNativeEditor(*controller, window.getWindowHandle());
        controller->viewDidLoad();
    }

    static QuilloView& view() {
        return dynamic_cast<QuilloView&>(*juce::Desktop::getInstance().getComponent(1));
    }

    std::vector<Rule> installed() const { return controller->audioUnit()->processor->rules(); }

    static std::string alert() { return view().editor().alertErrorMessage().value_or("no alert"); }

    juce::Component window;
    std::shared_ptr<AudioUnitViewController> controller =
        std::make_shared<AudioUnitViewController>(processMainQueue());
    std::unique_ptr<NativeEditor> editor;
};

TEST_F(NativeEditorTest, OpensInItsPreferredSizeAndIsGoneWithItsOwner) {
    ASSERT_EQ(juce::Desktop::getInstance().getNumComponents(), 2);
    EXPECT_TRUE(view().isVisible());
    EXPECT_EQ(view().getLocalBounds(), juce::Rectangle<int>(500, 250));
    editor.reset();
    EXPECT_EQ(juce::Desktop::getInstance().getNumComponents(), 1);
}

TEST_F(NativeEditorTest, TakesTheSizeOfItsView) {
    editor->setSize(640, 480);
    EXPECT_EQ(view().getLocalBounds(), juce::Rectangle<int>(640, 480));
}

TEST_F(NativeEditorTest, ShowsTheModelsAlert) {
    controller->model()->alert("something");
    EXPECT_NE(dynamic_cast<AlertView*>(view().overlay()), nullptr);
    EXPECT_EQ(alert(), "something");
}

TEST_F(NativeEditorTest, EditsAndMessagesSentByHandReachTheUnit) {
    view().editor().add(MIDIRuleType::OutputType{OutputEntryType::PitchWheel});
    ASSERT_EQ(installed().size(), 1U);
    view().editor().send(view().editor().rules()[0].id);
    EXPECT_EQ(controller->audioUnit()->processor->pendingInstantMessages(), 1U);
}

TEST_F(NativeEditorTest, DrainsTheMainQueueByItself) {
    bool drained = false;
    const auto poll = processMainQueue().onDrain([&drained] { drained = true; });
    while (!drained) {
        settle();
    }
}

TEST_F(NativeEditorTest, ImportsWhatThePlatformsPanelBrings) {
    view().showImporter();
    EXPECT_EQ(viewOfPanel, window.getWindowHandle());
    toRead("mine.json", [] { return exportPreset({{UUID(), entryFromRule(oneRule[0])}}); });
    EXPECT_EQ(installed(), oneRule);
    EXPECT_EQ(view().editor().undoName(), "Import mine.json");
}

TEST_F(NativeEditorTest, AFileThatCannotBeReadIsToldAndTheRulesStay) {
    controller->onRulesChanged(oneRule);
    view().showImporter();
    toRead("mine.json", []() -> Data { throw FileError("it is not there"); });
    EXPECT_EQ(alert(), "it is not there\nThe rules are as they were. Choose another file.");
    EXPECT_EQ(installed(), oneRule);
}

TEST_F(NativeEditorTest, ExportsToWhatThePlatformsPanelBrings) {
    view().editor().add(MIDIRuleType::OutputType{OutputEntryType::NoteOn});
    viewOfPanel = nullptr;
    view().showExporter();
    EXPECT_EQ(viewOfPanel, window.getWindowHandle());
    EXPECT_EQ(suggestedName, "midi-quillo-preset.json");
    Data written;
    toWrite([&written](std::span<const std::uint8_t> bytes) { written.assign(bytes.begin(), bytes.end()); });
    EXPECT_EQ(written, exportPreset(view().editor().rules()));
}

TEST_F(NativeEditorTest, AFileThatCannotBeWrittenIsTold) {
    view().showExporter();
    toWrite([](std::span<const std::uint8_t>) { throw FileError("the disk is full"); });
    EXPECT_EQ(alert(), "the disk is full");
}

TEST_F(NativeEditorTest, PanelsThatAreAnsweredAfterTheEditorIsGoneDoNothing) {
    controller->onRulesChanged(oneRule);
    view().showImporter();
    view().showExporter();
    editor.reset();
    bool touched = false;
    toRead("mine.json", [&touched] {
        touched = true;
        return Data();
    });
    toWrite([&touched](std::span<const std::uint8_t>) { touched = true; });
    EXPECT_FALSE(touched);
    EXPECT_EQ(installed(), oneRule);
}

}  // namespace
}  // namespace quillo
