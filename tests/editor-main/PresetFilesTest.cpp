// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <string_view>

#include "editor-main/EditorStage.hpp"
#include "editor/AlertView.hpp"
#include "editor/PresetBrowserView.hpp"
#include "editor/PresetExchange.hpp"
#include "platform/AtomicFile.hpp"
#include "support/Pictures.hpp"
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
    PresetFiles() {
        lastPresetFolder() = folder.path();
        write("new.json", textOf(exportPreset({{UUID(), newEntry()}})));
    }
    ~PresetFiles() override { lastPresetFolder().clear(); }

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

    PresetBrowserView& browser() { return dynamic_cast<PresetBrowserView&>(*stage.view().overlay()); }
    AlertView* alert() { return dynamic_cast<AlertView*>(stage.view().overlay()); }

    void press(int code, juce::ModifierKeys modifiers = {}) {
        EXPECT_TRUE(key(stage.window, code, modifiers)) << code;
    }

    /// Opens the import, which begins in the folder, and clicks the only file there.
    void openImport() {
        click(stage.view().header().importButton());
        clickRow(0);
    }

    void clickRow(int row, int times = 1) {
        auto& list = browser().list();
        const auto area = list.getRowPosition(row, true);
        click(list, area.getCentre(), times);
    }

    /// Opens the export and types a name in the place of the one that is offered.
    void openExport(const char* name) {
        click(stage.view().header().exportButton());
        type(stage.window, name);
    }

    [[nodiscard]] bool isThere(const char* name) const { return std::filesystem::exists(folder / name); }

    TemporaryFolder folder;
    EditorStage stage{{rule(onLoad(), send(noteOn(0, 60, 100)), "old")}};
};

TEST_F(PresetFiles, ADroppedPresetReplacesTheListAndCanBeUndone) {
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

TEST_F(PresetFiles, AMenuOrTheBrowserDoesNotTakeThePlaceOfAnAlert) {
    const auto tooLong = [this] {
        stage.beginTyping(field(stage.card(0).output(), "Delay (ms)"), "9223372036854775807");
    };
    const auto expectTheAlertAndDismissIt = [this] {
        ASSERT_NE(alert(), nullptr);
        click(alert()->okButton());
        EXPECT_EQ(stage.view().overlay(), nullptr);
        EXPECT_EQ(stage.editor().alertErrorMessage(), std::nullopt);
    };
    for (auto* button : {&stage.view().header().importButton(), &stage.view().header().exportButton()}) {
        tooLong();
        click(*button);
        expectTheAlertAndDismissIt();
    }
    tooLong();
    EditorStage::openMenu(field(stage.card(0).output(), "Note"));
    expectTheAlertAndDismissIt();
    tooLong();
    EditorStage::openMenu(field(stage.card(0).output(), "Type"));
    expectTheAlertAndDismissIt();
}

TEST_F(PresetFiles, AnAlertWaitsWhileAFieldIsTypedInto) {
    stage.beginTyping(field(stage.card(0).output(), "Delay (ms)"), "25");
    stage.editor().alert("Something went wrong.");
    settle();
    EXPECT_EQ(alert(), nullptr);
    type(stage.window, "0");
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage.entry(0).output.delay.ms, 250);
    settle();
    EXPECT_NE(alert(), nullptr);
}

TEST_F(PresetFiles, AnAlertLeavesTheKeyboardToAnotherWindow) {
    stage.card(0).header().grabKeyboardFocus();
    auto& window = dynamic_cast<OffscreenPeer&>(*stage.window.getPeer());
    window.letGo();
    stage.editor().alert("Something went wrong.");
    settle();
    ASSERT_NE(alert(), nullptr);
    EXPECT_FALSE(window.isFocused());
    window.comeBack();
    settle();
    EXPECT_TRUE(alert()->hasKeyboardFocus(true));
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(alert(), nullptr);
    EXPECT_TRUE(stage.card(0).header().hasKeyboardFocus(true));
}

TEST_F(PresetFiles, AValueThatIsRefusedIsNotSteppedOn) {
    const auto before = stage.entry(0).output.delay.ms;
    stage.beginTyping(field(stage.card(0).output(), "Delay (ms)"), "99999999999999999");
    press(juce::KeyPress::upKey);
    settle();
    EXPECT_NE(alert(), nullptr);
    EXPECT_EQ(stage.entry(0).output.delay.ms, before);
}

TEST_F(PresetFiles, AFileThatIsDroppedTakesWhatIsBeingTypedFirst) {
    stage.beginTyping(stage.card(0).header(), "typed");
    drop("missing.json");
    EXPECT_EQ(stage.names(), Names{"typed"});
    EXPECT_NE(alert(), nullptr);
}

TEST_F(PresetFiles, AnAlertLetsTheBrowserStayAndIsShownOnceThatIsClosed) {
    openExport("my name");
    stage.editor().alert("Something went wrong.");
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(browser().nameField().getText(), "my name");
    press(juce::KeyPress::escapeKey);
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->message(), "Something went wrong.");
    EXPECT_TRUE(alert()->hasKeyboardFocus(true));
}

TEST_F(PresetFiles, AnAlertLetsAMenuStayAndIsShownOnceARowIsPicked) {
    EditorStage::openMenu(field(stage.card(0).output(), "Type"));
    stage.editor().alert("Something went wrong.");
    stage.pickInMenu("CC");
    EXPECT_EQ(stage.entry(0).output.type, OutputEntryType::ControlChange);
    EXPECT_NE(alert(), nullptr);
}

TEST_F(PresetFiles, AnAlertThatIsTakenBackWhileItWaitsIsNotShown) {
    EditorStage::openMenu(field(stage.card(0).output(), "Type"));
    stage.editor().alert("Something went wrong.");
    stage.editor().dismissAlert();
    EXPECT_NO_THROW(static_cast<void>(stage.menu()));
    press(juce::KeyPress::escapeKey);
    EXPECT_EQ(stage.view().overlay(), nullptr);
}

TEST_F(PresetFiles, AFileDroppedOnAnAlertLeavesItOpen) {
    stage.editor().alert("First.");
    drop("new.json");
    EXPECT_EQ(stage.names(), Names{"new"});
    ASSERT_NE(alert(), nullptr);
    click(alert()->okButton());
    stage.editor().alert("Second.");
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->message(), "Second.");
}

TEST_F(PresetFiles, AnEditorThatOpensLaterShowsTheAlertThatWaits) {
    Session session;
    session.model()->alert("The saved rules cannot be restored.");
    const QuilloView later(session);
    EXPECT_NE(dynamic_cast<AlertView*>(later.overlay()), nullptr);
}

TEST_F(PresetFiles, WhatCannotBeSeenIsEscapedInAlerts) {
    stage.editor().alert("One \x1B[31m\u202E\nline and two.");
    EXPECT_EQ(alert()->message(), "One \\u001b[31m\\u202e\nline and two.");
}

TEST_F(PresetFiles, ALongAlertIsReadByKeys) {
    stage.view().setSize(500, 250);
    juce::String lines;
    for (int line = 0; line < 40; ++line) {
        lines += "Line " + juce::String(line) + "\n";
    }
    stage.editor().alert(lines.toStdString());
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->getDescription(), alert()->message()) << "What is read to those who do not see it.";
    const auto& text = *findBelow<juce::Viewport>(*alert());
    int before = 0;
    for (const int code : {juce::KeyPress::downKey, juce::KeyPress::pageDownKey, juce::KeyPress::endKey}) {
        press(code);
        settle();
        EXPECT_GT(text.getViewPositionY(), before) << code;
        before = text.getViewPositionY();
    }
    for (const int code : {juce::KeyPress::upKey, juce::KeyPress::pageUpKey, juce::KeyPress::homeKey}) {
        press(code);
        settle();
        EXPECT_LT(text.getViewPositionY(), before) << code;
        before = text.getViewPositionY();
    }
    EXPECT_EQ(before, 0);
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(alert(), nullptr);
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
    EXPECT_EQ(browser().confirmButton().getButtonText(), "Import");
    EXPECT_EQ(browser().nameField().getText(), "new.json");
    click(browser().confirmButton());
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(stage.names(), Names{"new"});
    EXPECT_EQ(stage.editor().undoName(), "Import new.json");
}

TEST_F(PresetFiles, TheTitleIsSeenInEveryEditorHoweverNarrow) {
    const auto title = Palette().primaryText;
    for (const int width : {200, 260, 320, 500, 820}) {
        stage.view().setSize(width, 200);
        for (const bool import : {true, false}) {
            import ? stage.view().showImporter() : stage.view().showExporter();
            const auto above = browser().leaveButton().getY();
            const auto left = browser().placeButton(0).getX();
            const auto top = browser().placeButton(0).getY();
            const juce::Rectangle<int> beside(0, 0, left, above);
            const juce::Rectangle<int> over(0, 0, width, top);
            const auto image = picture(browser());
            EXPECT_GE(std::max(pixelsLike(image, title, beside), pixelsLike(image, title, over)), 40)
                << width << (import ? " import" : " export");
            press(juce::KeyPress::escapeKey);
        }
    }
}

TEST_F(PresetFiles, OnlyTheButtonReplaceAllowsToReplaceAFile) {
    std::vector<Existing> chosen;
    const auto onChosen = [&chosen](const std::filesystem::path&, Existing existing) {
        chosen.push_back(existing);
    };
    const PresetFolders folders{.home = folder.path()};
    PresetBrowserView view({PresetBrowser::Mode::save, folders}, onChosen, [] {});
    OffscreenWindow window(500, 250);
    window.show(view, window.getLocalBounds());
    click(view.confirmButton());
    view.nameField().setText("new");
    click(view.confirmButton());
    click(view.confirmButton());
    EXPECT_EQ(chosen, (std::vector{Existing::keep, Existing::replace}));
}

TEST_F(PresetFiles, AFolderFromWhichNothingCameIsNotTheLastUsed) {
    std::filesystem::create_directory(folder / "other");
    write("other/damaged.json", "damaged");
    for (const auto& file : {folder / "other/damaged.json", folder / "other/missing.json"}) {
        stage.view().filesDropped({juceFile(file).getFullPathName()}, 1, 1);
        EXPECT_EQ(lastPresetFolder(), folder.path());
        click(alert()->okButton());
    }
    stage.view().showImporter();
    type(stage.window, "other/damaged");
    press(juce::KeyPress::returnKey);
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(lastPresetFolder(), folder.path());
    click(alert()->okButton());
    openExport("/proc/new");
    press(juce::KeyPress::returnKey);
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(lastPresetFolder(), folder.path());
    click(alert()->okButton());
    openExport("other/new");
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(lastPresetFolder(), folder / "other");
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
    click(browser().confirmButton());
    EXPECT_EQ(browser().browser().message(), "Choose a preset, or type its name.");
    EXPECT_EQ(stage.names(), Names{"old"});
}

TEST_F(PresetFiles, ADoubleClickImports) {
    click(stage.view().header().importButton());
    clickRow(0, 2);
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(stage.names(), Names{"new"});
}

TEST_F(PresetFiles, ImportIsDoneByKeyboardAlone) {
    stage.view().showImporter();
    EXPECT_TRUE(browser().nameField().hasKeyboardFocus(false));
    press(juce::KeyPress::downKey);
    EXPECT_EQ(browser().nameField().getText(), "new.json");
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(stage.names(), Names{"new"});
}

TEST_F(PresetFiles, APathIsTypedIntoTheImport) {
    lastPresetFolder() = "/";
    stage.view().showImporter();
    type(stage.window, (folder / "new").string());
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage.names(), Names{"new"});
    EXPECT_EQ(lastPresetFolder(), folder.path());
}

TEST_F(PresetFiles, TypingNarrowsTheListOfTheImport) {
    write("bass.json", "[]");
    stage.view().showImporter();
    EXPECT_EQ(browser().browser().entries().size(), 2U);
    type(stage.window, "ne");
    settle();
    EXPECT_EQ(browser().browser().entries().size(), 1U);
    EXPECT_EQ(browser().list().getSelectedRow(), 0);
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage.names(), Names{"new"});
}

TEST_F(PresetFiles, TabGoesRoundInTheBrowserAndNowhereElse) {
    stage.view().showExporter();
    std::vector<juce::Component*> visited;
    do {
        press(juce::KeyPress::tabKey);
        visited.push_back(juce::Component::getCurrentlyFocusedComponent());
    } while (visited.back() != &browser().nameField() && visited.size() < 20);
    EXPECT_EQ(visited, (std::vector<juce::Component*>{&browser().cancelButton(), &browser().confirmButton(),
                                                      &browser().placeButton(0), &browser().placeButton(1),
                                                      &browser().leaveButton(), &browser().list(),
                                                      &browser().nameField()}));
    press(juce::KeyPress::tabKey, juce::ModifierKeys(juce::ModifierKeys::shiftModifier));
    EXPECT_TRUE(browser().list().hasKeyboardFocus(false));
}

TEST_F(PresetFiles, TheListIsUsedByKeyboardToo) {
    std::filesystem::create_directory(folder / "inside");
    write("inside/deep.json", textOf(exportPreset({})));
    stage.view().showImporter();
    browser().list().grabKeyboardFocus();
    press(juce::KeyPress::downKey);
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(browser().browser().folder(), folder / "inside");
    EXPECT_TRUE(browser().nameField().hasKeyboardFocus(false));
    browser().list().grabKeyboardFocus();
    press(juce::KeyPress::backspaceKey);
    EXPECT_EQ(browser().browser().folder(), folder.path());
    EXPECT_EQ(browser().list().getSelectedRow(), 0);
    browser().list().grabKeyboardFocus();
    type(stage.window, "new");
    EXPECT_EQ(browser().nameField().getText(), "new");
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage.names(), Names{"new"});
}

TEST_F(PresetFiles, TheFolderAroundIsAKeyAndAClickAway) {
    stage.view().showImporter();
    press(juce::KeyPress::upKey, juce::ModifierKeys(juce::ModifierKeys::altModifier));
    EXPECT_EQ(browser().browser().folder(), folder.path().parent_path());
    EXPECT_EQ(browser().nameField().getText(), juce::String(folder.path().filename().string()));
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(browser().browser().folder(), folder.path());
    click(browser().leaveButton());
    EXPECT_EQ(browser().browser().folder(), folder.path().parent_path());
}

TEST_F(PresetFiles, PlacesAreAClickAwayAndThenTheArrowsChoose) {
    stage.view().showImporter();
    EXPECT_EQ(browser().placeButton(0).getButtonText(), "Home");
    EXPECT_EQ(browser().placeButton(1).getButtonText(), "Last used");
    click(browser().placeButton(0));
    EXPECT_NE(browser().browser().folder(), folder.path());
    click(browser().placeButton(1));
    EXPECT_EQ(browser().browser().folder(), folder.path());
    EXPECT_TRUE(browser().nameField().hasKeyboardFocus(false));
    press(juce::KeyPress::downKey);
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage.names(), Names{"new"});
}

TEST_F(PresetFiles, AClickBesideThePartsLeavesTheKeyboardInTheField) {
    stage.view().showExporter();
    click(browser(), {2, 2});
    type(stage.window, "x");
    EXPECT_TRUE(browser().nameField().getText().contains("x"));
}

TEST_F(PresetFiles, EscapeAndCancelImportNothing) {
    openImport();
    EXPECT_TRUE(key(stage.window, juce::KeyPress::escapeKey));
    EXPECT_EQ(stage.view().overlay(), nullptr);
    openImport();
    click(browser().cancelButton());
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(stage.names(), Names{"old"});
}

TEST_F(PresetFiles, ExportWritesExactlyTheStateDocument) {
    openExport("out.json");
    EXPECT_EQ(browser().confirmButton().getButtonText(), "Export");
    click(browser().confirmButton());
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(textOf(readWholeFile(folder / "out.json")),
              R"({"rules":[{"output":{"message":{"Protocol":{"_0":{"WithChannel":{"_0":144,"_1":{"Value":)"
              R"({"_0":0}}}},"_1":{"Value":{"_0":60}},"_2":{"Value":{"_0":100}}}},"delay":{"ms":0}},)"
              R"("trigger":{"OnLoad":{}},"name":"old"}]})");
}

TEST_F(PresetFiles, EveryExportOffersTheSameName) {
    openImport();
    click(browser().confirmButton());
    for (int time = 0; time < 2; ++time) {
        click(stage.view().header().exportButton());
        EXPECT_TRUE(browser().nameField().hasKeyboardFocus(false));
        EXPECT_EQ(browser().nameField().getText(), "midi-quillo-preset");
        EXPECT_EQ(browser().nameField().getHighlightedText(), "midi-quillo-preset");
        type(stage.window, "another");
        press(juce::KeyPress::returnKey);
        std::filesystem::remove(folder / "another.json");
    }
    drop("new.json");
    stage.view().showExporter();
    press(juce::KeyPress::returnKey);
    EXPECT_TRUE(isThere("midi-quillo-preset.json"));
}

TEST_F(PresetFiles, ExportAddsTheEndingToEveryNameThatDoesNotEndSo) {
    openExport("song v1.2");
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_TRUE(isThere("song v1.2.json"));
    EXPECT_FALSE(isThere("song v1.2"));
}

TEST_F(PresetFiles, ExportNamesTheFileInTheWayAndReplacesItByTheButtonAlone) {
    write("there.json", "precious");
    openExport("there");
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(browser().confirmButton().getButtonText(), "Replace");
    EXPECT_EQ(browser().browser().message(),
              "\"there.json\" is there already. Replace it, or type another name.");
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(textOf(readWholeFile(folder / "there.json")), "precious");
    press(juce::KeyPress::tabKey);
    press(juce::KeyPress::tabKey);
    EXPECT_TRUE(browser().confirmButton().hasKeyboardFocus(false));
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(readWholeFile(folder / "there.json"), exportPreset(stage.editor().rules()));
}

TEST_F(PresetFiles, AnotherNameTakesTheQuestionBack) {
    write("there.json", "precious");
    openExport("there");
    click(browser().confirmButton());
    type(stage.window, "2");
    settle();
    EXPECT_EQ(browser().confirmButton().getButtonText(), "Export");
    EXPECT_EQ(browser().browser().message(), "");
    click(browser().confirmButton());
    EXPECT_TRUE(isThere("there2.json"));
    EXPECT_EQ(textOf(readWholeFile(folder / "there.json")), "precious");
}

TEST_F(PresetFiles, EscapeExportsNothing) {
    write("there.json", "precious");
    openExport("there.json");
    click(browser().confirmButton());
    press(juce::KeyPress::escapeKey);
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(textOf(readWholeFile(folder / "there.json")), "precious");
    openExport("there.json");
    press(juce::KeyPress::tabKey);
    press(juce::KeyPress::escapeKey);
    EXPECT_EQ(stage.view().overlay(), nullptr);
}

TEST_F(PresetFiles, AnExportThatCannotBeWrittenShowsTheAlert) {
    openExport("new");
    std::filesystem::remove_all(folder.path());
    click(browser().confirmButton());
    EXPECT_EQ(browser().browser().message(), "There is no folder \"" + folder.path().string() + "\".");
    lastPresetFolder() = "/proc";
    stage.view().showExporter();
    press(juce::KeyPress::returnKey);
    ASSERT_NE(alert(), nullptr);
    EXPECT_TRUE(
        alert()->message().startsWith("\"midi-quillo-preset.json\" cannot be written in this folder: "));
}

TEST_F(PresetFiles, WhatIsDraggedOverSaysWhereItWouldGo) {
    auto& hint = stage.view().dropHint();
    const auto path = [this](const char* name) { return juceFile(folder / name).getFullPathName(); };
    EXPECT_TRUE(stage.view().isInterestedInFileDrag({path("new.json")}));
    stage.view().fileDragEnter({path("new.json")}, 1, 1);
    EXPECT_TRUE(hint.isVisible());
    EXPECT_EQ(hint.getBounds(), stage.view().list().getBounds());
    EXPECT_EQ(hint.words(), "Import \"new.json\" in the place of all rules");
    stage.view().fileDragExit({path("new.json")});
    EXPECT_FALSE(hint.isVisible());
    stage.view().fileDragEnter({path("new.json")}, 1, 1);
    drop("new.json");
    EXPECT_FALSE(hint.isVisible());
    EXPECT_EQ(stage.names(), Names{"new"});
}

TEST_F(PresetFiles, TwoFilesAtOnceAndFoldersAreRefusedInWords) {
    const auto path = [](const std::filesystem::path& file) { return juceFile(file).getFullPathName(); };
    const juce::StringArray two{path(folder / "new.json"), path(folder / "other.json")};
    const juce::StringArray aFolder{path(folder.path())};
    for (const auto& files : {two, aFolder}) {
        EXPECT_TRUE(stage.view().isInterestedInFileDrag(files));
        stage.view().fileDragEnter(files, 1, 1);
        EXPECT_TRUE(stage.view().dropHint().words().endsWith("Drop one preset file."));
        stage.view().filesDropped(files, 1, 1);
        ASSERT_NE(alert(), nullptr);
        EXPECT_EQ(alert()->message(), stage.view().dropHint().words());
        EXPECT_EQ(stage.names(), Names{"old"});
        click(alert()->okButton());
    }
    EXPECT_FALSE(stage.view().isInterestedInFileDrag({}));
}

TEST_F(PresetFiles, AFileDroppedOnTheBrowserClosesIt) {
    stage.view().showExporter();
    drop("new.json");
    EXPECT_EQ(stage.view().overlay(), nullptr);
    EXPECT_EQ(stage.names(), Names{"new"});
}

TEST_F(PresetFiles, WhatWasExportedIsImportedAsItWas) {
    const auto before = stage.installed();
    openExport("new.json");
    click(browser().confirmButton());
    click(browser().confirmButton());
    click(stage.card(0).buttons().deleteButton());
    EXPECT_TRUE(stage.installed().empty());
    openImport();
    click(browser().confirmButton());
    EXPECT_EQ(stage.installed(), before);
}

}  // namespace
}  // namespace quillo
