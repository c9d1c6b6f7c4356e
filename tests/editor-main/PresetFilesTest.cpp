// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <string_view>

#include "editor-main/EditorStage.hpp"
#include "editor/AlertView.hpp"
#include "editor/FileOverlay.hpp"
#include "editor/PresetExchange.hpp"
#include "platform/AtomicFile.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Names = std::vector<std::string>;

std::vector<std::uint8_t> bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

juce::File juceFile(const std::filesystem::path& path) {
    return juce::File(juce::String(path.string()));
}

/// An editor with the rule "old", a folder, and a preset in it with the rule "new".
class PresetFiles : public testing::Test {
protected:
    PresetFiles() { write("new.json", textOf(exportPreset({{UUID(), newEntry()}}))); }

    static RuleEntry newEntry() {
        RuleEntry entry;
        entry.name = "new";
        entry.output.type = OutputEntryType::PitchWheel;
        return entry;
    }

    static std::string textOf(const std::vector<std::uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

    void write(const char* name, std::string_view text) {
        writeWholeFile(folder / name, bytesOf(text), Existing::replace);
    }

    void drop(const char* name) {
        stage.view().filesDropped({juceFile(folder / name).getFullPathName()}, 1, 1);
    }

    FileOverlay& overlay() { return dynamic_cast<FileOverlay&>(*stage.view().overlay()); }
    AlertView* alert() { return dynamic_cast<AlertView*>(stage.view().overlay()); }

    /// Opens the import in the folder and clicks the only file there, once the toolkit's thread has found it.
    void openImport() {
        click(stage.view().header().importButton());
        overlay().browser().setRoot(juceFile(folder.path()));
        auto& files = *findBelow<juce::FileListComponent>(overlay().browser());
        while (files.getViewport()->getViewedComponent()->getHeight() == 0) {
            settle();
        }
        click(files, files.getRowPosition(0, true).getCentre());
    }

    void openExport(const char* name) {
        click(stage.view().header().exportButton());
        overlay().browser().setRoot(juceFile(folder.path()));
        overlay().browser().setFileName(name);
    }

    TemporaryFolder folder;
    EditorStage stage{{rule(onLoad(), send(noteOn(0, 60, 100)), "old")}};
};

TEST_F(PresetFiles, ADroppedPresetReplacesTheListAndCanBeUndone) {
    EXPECT_TRUE(stage.view().isInterestedInFileDrag({"a.json"}));
    EXPECT_FALSE(stage.view().isInterestedInFileDrag({"a.json", "b.json"}));
    drop("new.json");
    EXPECT_EQ(stage.installed(), std::vector{ruleFromEntry(newEntry())});
    EXPECT_EQ(stage.card(0).header().shownText(), "new");
    click(stage.view().header().undoButton());
    EXPECT_EQ(stage.names(), Names{"old"});
    EXPECT_EQ(stage.card(0).header().shownText(), "old");
    click(stage.view().header().redoButton());
    EXPECT_EQ(stage.names(), Names{"new"});
}

TEST_F(PresetFiles, DamagedFilesShowTheAlertAndLeaveTheList) {
    write("damaged.json", R"({"rules":[{"output":)");
    write("empty.json", "");
    write("other.json", R"({"songs":[]})");
    for (const auto* name : {"damaged.json", "empty.json", "other.json", "missing.json"}) {
        drop(name);
        ASSERT_NE(alert(), nullptr) << name;
        EXPECT_EQ(alert()->getTitle(), "Error");
        EXPECT_EQ(alert()->message(), juce::String(*stage.editor().alertErrorMessage()));
        EXPECT_FALSE(alert()->message().isEmpty());
        EXPECT_EQ(stage.names(), Names{"old"});
        EXPECT_EQ(stage.editor().undoName(), std::nullopt);
        click(alert()->okButton());
        EXPECT_EQ(stage.view().overlay(), nullptr);
    }
}

TEST_F(PresetFiles, TheAlertGoesAwayByItsButtonReturnSpaceAndEscapeOnly) {
    for (const int way : {juce::KeyPress::returnKey, juce::KeyPress::spaceKey, juce::KeyPress::escapeKey}) {
        stage.editor().alert("Something went wrong.");
        ASSERT_NE(alert(), nullptr);
        EXPECT_TRUE(key(stage.window, 'a'));
        EXPECT_TRUE(key(stage.window, juce::KeyPress::tabKey));
        EXPECT_TRUE(key(stage.window, {'z', juce::ModifierKeys(juce::ModifierKeys::ctrlModifier), 0}));
        click(stage.view(), {3, 3});
        click(stage.view(), stage.view().getLocalBounds().getCentre());
        ASSERT_NE(alert(), nullptr);
        EXPECT_TRUE(key(stage.window, way));
        EXPECT_EQ(stage.view().overlay(), nullptr);
        EXPECT_EQ(stage.editor().alertErrorMessage(), std::nullopt);
    }
    stage.editor().alert("Again.");
    click(alert()->okButton());
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(stage.editor().alertErrorMessage(), std::nullopt);
}

TEST_F(PresetFiles, AlertsAreShownOneAfterTheOther) {
    for (const auto* text : {"First.", "Second.", "Third."}) {
        stage.editor().alert(text);
    }
    EXPECT_EQ(alert()->message(), "First.");
    click(alert()->okButton());
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->message(), "Second.");
    EXPECT_TRUE(key(stage.window, juce::KeyPress::returnKey));
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->message(), "Third.");
    click(alert()->okButton());
    EXPECT_EQ(stage.view().overlay(), nullptr);
}

TEST_F(PresetFiles, AnEditorThatOpensLaterShowsTheAlertThatWaits) {
    const auto model = std::make_shared<QuilloModel>();
    model->alert("The saved rules cannot be restored.");
    const QuilloView later(model, [](const std::vector<Rule>&) {}, [](const RuleOutputVariantsV2&) {});
    EXPECT_NE(dynamic_cast<AlertView*>(later.overlay()), nullptr);
}

TEST_F(PresetFiles, NothingBelowTheAlertTakesClicks) {
    const auto target =
        stage.window.getLocalPoint(&stage.card(0).buttons().deleteButton(), juce::Point(5, 5));
    stage.editor().alert("Wait.");
    click(stage.window, target);
    EXPECT_EQ(stage.names(), Names{"old"});
}

TEST_F(PresetFiles, ImportTakesTheChosenFile) {
    openImport();
    EXPECT_EQ(overlay().confirmButton().getButtonText(), "Import");
    EXPECT_TRUE(overlay().confirmButton().isEnabled());
    click(overlay().confirmButton());
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(stage.names(), Names{"new"});
    EXPECT_EQ(stage.editor().undoName(), "Import new.json");
}

TEST_F(PresetFiles, PanelsOfThePlatformOpenInThePlaceOfTheBrowser) {
    int imports = 0;
    int exports = 0;
    stage.view().setFilePanels({[&imports] { ++imports; }, [&exports] { ++exports; }});
    click(stage.view().header().importButton());
    click(stage.view().header().exportButton());
    EXPECT_EQ(imports, 1);
    EXPECT_EQ(exports, 1);
    EXPECT_EQ(stage.view().overlay(), nullptr);
}

TEST_F(PresetFiles, NothingIsImportedBeforeAFileIsChosen) {
    click(stage.view().header().importButton());
    EXPECT_FALSE(overlay().confirmButton().isEnabled());
    click(overlay().confirmButton());
    EXPECT_NE(stage.view().overlay(), nullptr);
    EXPECT_EQ(stage.names(), Names{"old"});
}

TEST_F(PresetFiles, EscapeAndCancelImportNothing) {
    openImport();
    EXPECT_TRUE(key(stage.window, juce::KeyPress::escapeKey));
    EXPECT_EQ(stage.view().overlay(), nullptr);
    openImport();
    click(overlay().cancelButton());
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(stage.names(), Names{"old"});
}

TEST_F(PresetFiles, ExportWritesExactlyTheStateDocument) {
    openExport("out.json");
    EXPECT_EQ(overlay().confirmButton().getButtonText(), "Export");
    click(overlay().confirmButton());
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(textOf(readWholeFile(folder / "out.json")),
              R"({"rules":[{"output":{"message":{"Protocol":{"_0":{"WithChannel":{"_0":144,"_1":{"Value":)"
              R"({"_0":0}}}},"_1":{"Value":{"_0":60}},"_2":{"Value":{"_0":100}}}},"delay":{"ms":0}},)"
              R"("trigger":{"OnLoad":{}},"name":"old"}]})");
}

TEST_F(PresetFiles, ExportAddsTheExtensionToANameWithoutOne) {
    openExport("plain");
    click(overlay().confirmButton());
    EXPECT_TRUE(std::filesystem::exists(folder / "plain.json"));
    EXPECT_FALSE(std::filesystem::exists(folder / "plain"));
}

TEST_F(PresetFiles, ExportOverAFileAsksOnceMore) {
    write("there.json", "precious");
    openExport("there.json");
    click(overlay().confirmButton());
    EXPECT_EQ(overlay().confirmButton().getButtonText(), "Replace");
    EXPECT_EQ(textOf(readWholeFile(folder / "there.json")), "precious");
    click(overlay().confirmButton());
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(readWholeFile(folder / "there.json"), exportPreset(stage.editor().rules()));
}

TEST_F(PresetFiles, EscapeExportsNothing) {
    write("there.json", "precious");
    openExport("there.json");
    click(overlay().confirmButton());
    EXPECT_TRUE(key(stage.window, juce::KeyPress::escapeKey));
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(textOf(readWholeFile(folder / "there.json")), "precious");
}

TEST_F(PresetFiles, AnExportThatCannotBeWrittenShowsTheAlert) {
    openExport("missing-folder/out.json");
    click(overlay().confirmButton());
    ASSERT_NE(alert(), nullptr);
    EXPECT_TRUE(alert()->message().contains("missing-folder"));
}

TEST_F(PresetFiles, WhatWasExportedIsImportedAsItWas) {
    const auto before = stage.installed();
    openExport("new.json");
    click(overlay().confirmButton());
    click(overlay().confirmButton());
    click(stage.card(0).buttons().deleteButton());
    EXPECT_TRUE(stage.installed().empty());
    openImport();
    click(overlay().confirmButton());
    EXPECT_EQ(stage.installed(), before);
}

}  // namespace
}  // namespace quillo
