// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PresetExchange.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <fstream>

#include "persistence/PluginData.hpp"
#include "platform/AtomicFile.hpp"
#include "support/EditorDesk.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Names = std::vector<std::string>;

std::string textOf(const std::vector<std::uint8_t>& bytes) {
    return {bytes.begin(), bytes.end()};
}

constexpr std::string_view twoNamelessRules =
    R"([{"output":{"message":{"SystemExclusive":{"_0":[1]}},"delay":{"ms":0}},"trigger":{"OnLoad":{}}},)"
    R"({"output":{"message":{"Prime":{"_0":{"SystemExclusive":{"_0":[2]}}}},"delay":{"ms":0}},)"
    R"("trigger":{"OnLoad":{}}}])";

const std::string chooseAnother = "The rules are as they were. Choose another file.";

constexpr std::string_view copiedPressure =
    R"({"rules":[{"output":{"message":{"Protocol":{"_0":{"JustStatus":{"_0":208}},)"
    R"("_1":{"RespectiveTriggerByte":{}}}},"delay":{"ms":0}},"trigger":{"OnLoad":{}},"name":"Odd"}]})";

/// An editor with one rule, and a folder of its own.
class PresetExchangeTest : public testing::Test {
protected:
    PresetExchangeTest() { desk.addNoteOn(); }

    std::filesystem::path write(std::string_view text) {
        const auto path = folder / "preset.json";
        std::ofstream(path) << text;
        return path;
    }

    /// Imports a file that must be refused, and returns what the alert says.
    std::string refusal(const std::filesystem::path& path) {
        const auto before = desk.editor.rules();
        EXPECT_FALSE(importPresetFile(path, desk.editor));
        EXPECT_EQ(desk.editor.rules(), before);
        EXPECT_EQ(desk.editor.undoName(), "Add Message #1");
        const auto alert = desk.editor.alertErrorMessage().value_or("no alert");
        desk.editor.dismissAlert();
        return alert;
    }

    const TemporaryFolder temporary;
    const std::filesystem::path folder = temporary.path();
    EditorDesk desk;
};

TEST_F(PresetExchangeTest, AnEmptyListIsTwelveBytesAndEmptiesTheEditor) {
    EXPECT_EQ(textOf(exportPreset({})), R"({"rules":[]})");
    EXPECT_TRUE(importPresetFile(write(R"({"rules":[]})"), desk.editor));
    EXPECT_TRUE(desk.editor.rules().empty());
    EXPECT_TRUE(desk.installed.empty());
}

TEST_F(PresetExchangeTest, AnExportedListComesBackUnderNewIdentifiersEachTime) {
    const auto preset = exportPreset(desk.editor.rules());
    const auto first = importPreset(preset);
    const auto second = importPreset(preset);
    EXPECT_EQ(rulesOf(first), rulesOf(desk.editor.rules()));
    EXPECT_EQ(rulesOf(second), rulesOf(first));
    EXPECT_NE(first[0].id, second[0].id);
    EXPECT_NE(first[0].id, desk.idOf(0));
}

TEST_F(PresetExchangeTest, APresetKeepsWhatIsSwitchedOffInItsPlace) {
    desk.addNoteOns(2);
    desk.editor.setOff({desk.idOf(1)}, true);
    const auto preset = exportPreset(desk.editor.rules());
    EXPECT_EQ(PluginData::read(preset), (PluginData{desk.installed, desk.shelf}));
    std::vector<std::uint8_t> exported;
    ASSERT_TRUE(exportPreset(
        [&](std::span<const std::uint8_t> bytes) { exported.assign(bytes.begin(), bytes.end()); },
        desk.editor));
    EXPECT_EQ(exported, preset);
    desk.editor.replaceAll({}, "Clear");
    ASSERT_TRUE(importPresetFile(write(textOf(preset)), desk.editor));
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #2", "Message #3"}));
    EXPECT_TRUE(desk.editor.rules()[1].off);
    EXPECT_EQ(desk.installed.size(), 2U);
}

TEST_F(PresetExchangeTest, ADamagedShelfImportsNothingAndTheAlertSaysWhat) {
    desk.editor.setOff({desk.idOf(0)}, true);
    auto text = textOf(exportPreset(desk.editor.rules()));
    const std::string place = R"("place":0)";
    text.replace(text.find(place), place.size(), R"("place":9)");
    desk.editor.undo();
    EXPECT_EQ(
        refusal(write(text)),
        "\"preset.json\" cannot be imported. Switched-off rule 1 \"Message #1\": expected a place from 0 "
        "to 0, found 9.\n"
        "The rules are as they were. Choose another file, or export this one again where its rules work.");
}

TEST_F(PresetExchangeTest, NamelessRulesOfOlderFilesReplaceTheListUnderNumberedNames) {
    importPresetFile(write(twoNamelessRules), desk.editor);
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #2"}));
    EXPECT_EQ(desk.installed, (std::vector{rule(onLoad(), send(systemExclusive({1})), "Message #1"),
                                           rule(onLoad(), send(systemExclusive({2})), "Message #2")}));
}

TEST_F(PresetExchangeTest, AnImportIsOneStepThatCanBeUndone) {
    const auto before = desk.editor.rules();
    importPresetFile(write(twoNamelessRules), desk.editor);
    EXPECT_EQ(desk.editor.undoName(), "Import preset.json");
    desk.editor.undo();
    EXPECT_EQ(desk.editor.rules(), before);
    EXPECT_EQ(desk.installed, rulesOf(before));
}

TEST_F(PresetExchangeTest, AFileWithOneMalformedRuleImportsNothingAndTheAlertSaysWhichAndWhy) {
    const auto good = textOf(exportPreset(desk.editor.rules()));
    const auto path = write(good.substr(0, good.size() - 2) + R"(,{"name":"Echo","output":3}]})");
    EXPECT_EQ(
        refusal(path),
        "\"preset.json\" cannot be imported. Rule 2 \"Echo\", message: expected an object, found 3.\n"
        "The rules are as they were. Choose another file, or export this one again where its rules work.");
}

TEST_F(PresetExchangeTest, AFileThatIsNoPresetIsSaidToBeNone) {
    for (const auto* text : {"MThd", R"({"songs":[]})", "", R"({"rules":[{)"}) {
        EXPECT_EQ(
            refusal(write(text)),
            "\"preset.json\" cannot be imported. This is not a preset of MIDI Quillo, or it is damaged.\n"
            "The rules are as they were. Choose another file.");
    }
}

TEST_F(PresetExchangeTest, AMissingFileAndAFolderAreRefusedByName) {
    EXPECT_EQ(refusal(folder / "none.json"),
              "\"none.json\" cannot be opened: No such file or directory.\n" + chooseAnother);
    EXPECT_EQ(refusal(folder), '"' + folder.filename().string() +
                                   "\" cannot be read: it is not a regular file.\n" + chooseAnother);
}

TEST_F(PresetExchangeTest, APipeAndADeviceAreRefusedAndNotWaitedFor) {
    const auto pipe = folder / "pipe.json";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const auto& path : {pipe, std::filesystem::path("/dev/zero")}) {
        EXPECT_EQ(refusal(path), '"' + path.filename().string() +
                                     "\" cannot be read: it is not a regular file.\n" + chooseAnother);
    }
}

TEST_F(PresetExchangeTest, AFileThatIsFarTooLargeIsRefused) {
    const auto path = write("");
    std::filesystem::resize_file(path, std::uintmax_t{6} << 30U);
    EXPECT_EQ(refusal(path), "\"preset.json\" cannot be read: it is larger than 64 MiB.\n" + chooseAnother);
}

TEST_F(PresetExchangeTest, APitchThatTheOldestFormCannotHoldIsRefused) {
    EXPECT_THAT(refusal(write(R"([{"output":{"message":{"Prime":{"_0":{"PitchWheel":{"_0":{"value":0},)"
                              R"("_1":{"value":256}}}}},"delay":{"ms":0}},"trigger":{"OnLoad":{}}}])")),
                testing::HasSubstr("Rule 1: pitch 256 of a V1 rule is above 255."));
}

TEST_F(PresetExchangeTest, ARuleThatTheEditorCannotHoldIsRefused) {
    EXPECT_THAT(
        refusal(write(copiedPressure)),
        testing::HasSubstr("Rule 1 \"Odd\" cannot be edited: its pressure is copied from the trigger."));
}

TEST_F(PresetExchangeTest, RulesThatTheEngineRefusesAreNotImported) {
    EXPECT_EQ(
        refusal(write(R"({"rules":[{"output":{"message":{"SystemExclusive":{"_0":[]}},"delay":{"ms":-1}},)"
                      R"("trigger":{"OnLoad":{}},"name":"late\u001b"}]})")),
        R"(Rule 1 "late\u001b": a delay is negative: -1 ms. Choose 0 or more.)");
}

TEST_F(PresetExchangeTest, AnExportKeepsAFileThatItMayNotReplace) {
    const auto path = write("old");
    EXPECT_FALSE(exportPresetFile(path, Existing::keep, desk.editor));
    EXPECT_EQ(textOf(readWholeFile(path)), "old");
    EXPECT_EQ(desk.editor.alertErrorMessage(), "\"preset.json\" cannot be written: File exists.");
    EXPECT_TRUE(exportPresetFile(folder / "another.json", Existing::keep, desk.editor));
    EXPECT_EQ(readWholeFile(folder / "another.json"), exportPreset(desk.editor.rules()));
}

TEST_F(PresetExchangeTest, AnExportReplacesTheFileThatItMayReplace) {
    const auto path = write("old");
    EXPECT_TRUE(exportPresetFile(path, Existing::replace, desk.editor));
    EXPECT_EQ(readWholeFile(path), exportPreset(desk.editor.rules()));
    EXPECT_EQ(desk.editor.alertErrorMessage(), std::nullopt);
}

TEST_F(PresetExchangeTest, AFailedExportIsToldByTheAlert) {
    EXPECT_FALSE(exportPresetFile(folder / "none" / "preset.json", Existing::keep, desk.editor));
    EXPECT_EQ(desk.editor.alertErrorMessage(),
              "\"preset.json\" cannot be written in this folder: No such file or directory.");
}

TEST_F(PresetExchangeTest, APresetMayComeFromAnywhereAndGoAnywhere) {
    const auto before = desk.names();
    std::vector<std::uint8_t> kept;
    exportPreset([&kept](std::span<const std::uint8_t> bytes) { kept.assign(bytes.begin(), bytes.end()); },
                 desk.editor);
    desk.addNoteOn();
    importPreset("elsewhere", [&kept] { return kept; }, desk.editor);
    EXPECT_EQ(desk.names(), before);
    EXPECT_EQ(desk.editor.undoName(), "Import elsewhere");
}

TEST_F(PresetExchangeTest, APlaceThatFailsIsToldByTheAlertInItsWords) {
    importPreset(
        "elsewhere", []() -> std::vector<std::uint8_t> { throw FileError("not there"); }, desk.editor);
    EXPECT_EQ(desk.editor.alertErrorMessage(), "not there\n" + chooseAnother);
    desk.editor.dismissAlert();
    exportPreset([](std::span<const std::uint8_t>) { throw FileError("no room"); }, desk.editor);
    EXPECT_EQ(desk.editor.alertErrorMessage(), "no room");
    EXPECT_EQ(desk.names(), Names{"Message #1"});
}

TEST_F(PresetExchangeTest, RulesThatAreNotShownAreNotExportedAsNone) {
    desk.model->setNotEditable("not shown");
    const auto path = write("old");
    EXPECT_FALSE(exportPresetFile(path, Existing::replace, desk.editor));
    EXPECT_EQ(textOf(readWholeFile(path)), "old");
    EXPECT_EQ(desk.editor.alertErrorMessage(), "not shown");
}

TEST_F(PresetExchangeTest, RulesThatRunAndAreNotShownAreExported) {
    const std::vector rules{
        rule(onNoteOn(), send(protocol(StatusV2::channelPressure, channel(0), triggerByte)), "odd")};
    desk.model->setNotEditable("not shown", PluginData{rules});
    const auto path = write("old");
    exportPresetFile(path, Existing::replace, desk.editor);
    EXPECT_EQ(PluginData::read(readWholeFile(path)).rules, rules);
    EXPECT_EQ(desk.editor.alertErrorMessage(), std::nullopt);
}

TEST_F(PresetExchangeTest, AMessageThatTheEditorCannotHoldIsExportedAsItWasImported) {
    const std::vector rules{
        rule(onLoad(), send(protocol(StatusV2::programChange, channel(3), byte(9))), "old")};
    const auto path = write(textOf(PluginData{rules}.write()));
    importPresetFile(path, desk.editor);
    EXPECT_EQ(desk.installed, rules);
    exportPresetFile(path, Existing::replace, desk.editor);
    EXPECT_EQ(PluginData::read(readWholeFile(path)).rules, rules);
}

TEST_F(PresetExchangeTest, DroppingSaysWhatItDoes) {
    const auto one = effectOfDropping({folder / "a\nb.json"});
    EXPECT_TRUE(one.works);
    EXPECT_EQ(one.words, R"(Import "a\nb.json" in the place of all rules)");
    const auto two = effectOfDropping({folder / "a.json", folder / "b.json"});
    EXPECT_FALSE(two.works);
    EXPECT_EQ(two.words,
              "2 files cannot be imported at once, because a preset takes the place of all rules. Drop one "
              "preset file.");
    const auto aFolder = effectOfDropping({folder});
    EXPECT_FALSE(aFolder.works);
    EXPECT_EQ(aFolder.words, '"' + folder.filename().string() + "\" is a folder. Drop one preset file.");
}

TEST_F(PresetExchangeTest, ChosenRulesAreATextThatIsAPresetInTheListsOrder) {
    desk.addNoteOns(2);
    desk.editor.setOff({desk.idOf(0)}, true);
    const auto text = textOfRules(desk.editor, {desk.idOf(2), desk.idOf(0)});
    EXPECT_EQ(PluginData::read(std::vector<std::uint8_t>(text.begin(), text.end())),
              (PluginData{{desk.installed[1]}, desk.shelf}));
}

TEST_F(PresetExchangeTest, ACopiedTextIsPastedBehindOtherRulesAnywhere) {
    desk.addNoteOns(1);
    const auto text = textOfRules(desk.editor, {desk.idOf(0), desk.idOf(1)});
    EditorDesk other;
    other.editor.add(MIDIRuleType::OutputType{OutputEntryType::SystemExclusive});
    other.editor.add(MIDIRuleType::OutputType{OutputEntryType::SystemExclusive});
    EXPECT_TRUE(pasteText(text, {other.idOf(0)}, other.editor));
    EXPECT_EQ(other.names(), (Names{"Message #1", "Message #1", "Message #2", "Message #2"}));
    EXPECT_NE(other.idOf(1), desk.idOf(0));
    EXPECT_TRUE(pasteText(std::string(twoNamelessRules), {}, other.editor)) << "A preset of any form.";
    EXPECT_EQ(other.names().size(), 6U);
}

TEST_F(PresetExchangeTest, ATextThatIsNoPresetIsRefusedWithTheReadersReason) {
    const auto refused = [this](std::string_view text) {
        const auto before = desk.editor.rules();
        EXPECT_FALSE(pasteText(std::string(text), {desk.idOf(0)}, desk.editor));
        EXPECT_EQ(desk.editor.rules(), before);
        const auto alert = desk.editor.alertErrorMessage().value_or("no alert");
        desk.editor.dismissAlert();
        return alert;
    };
    const std::string rest = "\nThe rules are as they were. Copy cards, or the text of a preset.";
    EXPECT_EQ(refused("see you at eight"),
              "What the clipboard holds cannot be pasted. This is not a preset of MIDI Quillo, or it is "
              "damaged." +
                  rest);
    EXPECT_EQ(
        refused(R"({"rules":[{"name":"Echo","output":3}]})"),
        "What the clipboard holds cannot be pasted. Rule 1 \"Echo\", message: expected an object, found 3." +
            rest);
    EXPECT_EQ(
        refused(copiedPressure),
        "What the clipboard holds cannot be pasted. Rule 1 \"Odd\" cannot be edited: its pressure is copied "
        "from the trigger." +
            rest);
    EXPECT_EQ(refused(std::string(64UL * 1024 * 1024 + 1, ' ')),
              "What the clipboard holds cannot be pasted. It is longer than 64 MiB." + rest);
}

TEST_F(PresetExchangeTest, TheRulesOfAnotherToolTakeThePlaceOfTheList) {
    EXPECT_TRUE(importPresetFile(write("midimap v1\nforward-unmatched\nNoteOn 36 ANY | SAME 48 SAME\n"),
                                 desk.editor));
    ASSERT_EQ(desk.editor.rules().size(), 1U);
    EXPECT_EQ(desk.editor.rules().front().rule.name, "midimap");
    EXPECT_EQ(desk.editor.undoName(), "Import preset.json");
    EXPECT_EQ(desk.editor.alertErrorMessage(), std::nullopt);
}

TEST_F(PresetExchangeTest, AControllerThatBendsThePitchIsARuleForEachOfItsValues) {
    EXPECT_TRUE(
        importPresetFile(write("midimap v1\nforward-unmatched\nCC 1 ANY | 0xE0/0x0f 0 SAME\n"), desk.editor));
    EXPECT_EQ(desk.editor.rules().size(), 128U);
}

TEST_F(PresetExchangeTest, ATranslatorThatIsNotActiveIsARuleThatIsSwitchedOff) {
    EXPECT_TRUE(importPresetFile(write("[Project]\nVersion=1\n[Preset.0]\nActive=0\n"
                                       "Incoming0=MID1B040pp\nOutgoing0=MID1B007pp\n"),
                                 desk.editor));
    ASSERT_EQ(desk.editor.rules().size(), 1U);
    EXPECT_TRUE(desk.installed.empty());
    EXPECT_EQ(desk.shelf.size(), 1U);
}

TEST_F(PresetExchangeTest, WhatOfAnotherToolsRulesIsLostIsNamed) {
    std::string text = "midimap v1\nforward-unmatched\nNoteOn 36 ANY | SAME 48 SAME\n";
    EXPECT_TRUE(importPresetFile(write(text + "Pitch ANY ANY | CHN1 SAME SAME\n"), desk.editor));
    EXPECT_EQ(desk.editor.alertErrorMessage(), "\"preset.json\" was imported, but not all of it:\n"
                                               "line 4: left out: no rule can wait for pitch bend");
    desk.editor.dismissAlert();
    for (int i = 0; i < 8; ++i) {
        text += "Pitch ANY ANY | CHN1 SAME SAME\n";
    }
    EXPECT_TRUE(importPresetFile(write(text), desk.editor));
    EXPECT_THAT(*desk.editor.alertErrorMessage(), testing::EndsWith("pitch bend\n... and 2 more lines."));
}

TEST_F(PresetExchangeTest, AFileOfAnotherToolFromWhichNothingCanBeTakenLeavesTheRulesAsTheyAre) {
    EXPECT_EQ(refusal(write("midimap v1\nforward-unmatched\nPitch ANY ANY | CHN1 SAME SAME\n")),
              "\"preset.json\" cannot be imported. It holds no rule that can be taken.\n"
              "line 3: left out: no rule can wait for pitch bend\n" +
                  chooseAnother);
}

TEST_F(PresetExchangeTest, AFileOfAnotherToolIsReadUpToFourMebibytes) {
    std::string text = "midimap v1\nforward-unmatched\nNoteOn 36 ANY | SAME 48 SAME\n";
    text.resize(std::size_t{4} << 20U, '#');
    EXPECT_EQ(refusal(write(text + "#")),
              "\"preset.json\" cannot be imported. It is longer than 4 MiB. On the command line, midi-quillo "
              "import makes a preset of it.\n" +
                  chooseAnother);
    desk.editor.dismissAlert();
    EXPECT_TRUE(importPresetFile(write(text), desk.editor));
}

TEST_F(PresetExchangeTest, ADamagedFileOfAnotherToolIsRefusedWithItsLine) {
    EXPECT_EQ(
        refusal(write("midimap v1\nhello\n")),
        "\"preset.json\" cannot be imported. In line 2: \"hello\" is neither a rule nor forward-unmatched or "
        "match-all.\n" +
            chooseAnother);
}

}  // namespace
}  // namespace quillo
