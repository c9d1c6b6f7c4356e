// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PresetBrowser.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sys/stat.h>

#include "support/TemporaryFolder.hpp"

namespace quillo {
namespace {

namespace fs = std::filesystem;
using Mode = PresetBrowser::Mode;
using Names = std::vector<std::string>;

/// A home with the presets "Echo.json", "bass.json" and "song v1.2.json", and the folder "takes" with
/// "one.json".
class PresetBrowserTest : public testing::Test {
protected:
    PresetBrowserTest() {
        fs::create_directory(home / "takes");
        for (const auto* name : {"Echo.json", "bass.json", "song v1.2.json", "takes/one.json"}) {
            make(name);
        }
    }

    void make(const fs::path& name) const { std::ofstream(home.path() / name) << "preset"; }

    [[nodiscard]] PresetBrowser browser(Mode mode) const { return {mode, {.home = home.path()}}; }

    static Names names(const PresetBrowser& browser) {
        Names names;
        for (const auto& entry : browser.entries()) {
            names.push_back(entry.name);
        }
        return names;
    }

    static std::string pickedName(const PresetBrowser& browser) {
        return browser.picked() ? browser.entries()[*browser.picked()].name : "";
    }

    /// What is chosen when this is typed and confirmed.
    [[nodiscard]] std::optional<fs::path> typed(Mode mode, const std::string& name) const {
        auto open = browser(mode);
        open.type(name);
        return open.confirm();
    }

    TemporaryFolder home;
};

TEST(PresetFileName, EndsInJSONWhateverItIs) {
    EXPECT_EQ(presetFileName("song"), "song.json");
    EXPECT_EQ(presetFileName("song v1.2"), "song v1.2.json");
    EXPECT_EQ(presetFileName("song.txt"), "song.txt.json");
    EXPECT_EQ(presetFileName("json"), "json.json");
    EXPECT_EQ(presetFileName("song.json"), "song.json");
    EXPECT_EQ(presetFileName("SONG.JSON"), "SONG.JSON");
}

TEST_F(PresetBrowserTest, ListsFoldersThenPresetsWithoutRegardToCase) {
    EXPECT_EQ(names(browser(Mode::open)), (Names{"takes", "bass.json", "Echo.json", "song v1.2.json"}));
    EXPECT_EQ(names(browser(Mode::save)), names(browser(Mode::open)));
}

TEST_F(PresetBrowserTest, OffersTheRulesOfOtherToolsToImportOnly) {
    make("stage.bmtp");
    make("pads.cfg");
    EXPECT_THAT(names(browser(Mode::open)), testing::IsSupersetOf({"pads.cfg", "stage.bmtp"}));
    EXPECT_EQ(names(browser(Mode::save)), (Names{"takes", "bass.json", "Echo.json", "song v1.2.json"}));
    EXPECT_EQ(typed(Mode::open, "stag"), home.path() / "stage.bmtp");
    EXPECT_EQ(typed(Mode::open, "pads"), home.path() / "pads.cfg");
}

TEST_F(PresetBrowserTest, LeavesOutWhatIsNoPresetAndWhatIsHidden) {
    make("notes.txt");
    make(".hidden.json");
    make("LOUD.JSON");
    fs::create_directory(home / ".cache");
    ASSERT_EQ(::mkfifo((home / "pipe.json").c_str(), 0600), 0);
    fs::create_symlink("nowhere", home / "broken.json");
    EXPECT_EQ(names(browser(Mode::open)),
              (Names{"takes", "bass.json", "Echo.json", "LOUD.JSON", "song v1.2.json"}));
}

TEST_F(PresetBrowserTest, SaysWhenAFileWasChanged) {
    const std::chrono::sys_seconds then =
        std::chrono::sys_days(std::chrono::year(2024) / 2 / 29) + std::chrono::hours(12);
    fs::last_write_time(home / "Echo.json", std::chrono::file_clock::from_sys(then));
    EXPECT_EQ(browser(Mode::open).entries()[2].changed, then);
}

TEST_F(PresetBrowserTest, EscapesWhatCannotBeSeenInNamesAndOpensTheirFilesAllTheSame) {
    make("a\x1B[31m\xFF.json");
    auto open = browser(Mode::open);
    EXPECT_EQ(names(open)[1], R"(a\u001b[31m\xff.json)");
    open.pick(1);
    EXPECT_EQ(open.confirm(), home / "a\x1B[31m\xFF.json");
}

TEST_F(PresetBrowserTest, BeginsInTheLastFolderAndAtHomeWhereThatIsGone) {
    const PresetFolders folders{.home = home.path(), .last = home / "takes"};
    EXPECT_EQ(PresetBrowser(Mode::open, folders).folder(), home / "takes");
    fs::remove_all(home / "takes");
    EXPECT_EQ(PresetBrowser(Mode::open, folders).folder(), home.path());
    EXPECT_EQ(PresetBrowser(Mode::open, {.home = home / "none"}).folder(), "/");
}

TEST_F(PresetBrowserTest, PlacesAreThoseThatThereAre) {
    const auto placeNames = [](const PresetBrowser& browser) {
        Names names;
        for (const auto& place : browser.places()) {
            names.push_back(place.name);
        }
        return names;
    };
    EXPECT_EQ(placeNames(browser(Mode::open)), Names{"Home"});
    const PresetFolders all{.home = home.path(), .last = home / "takes", .examples = home / "takes"};
    EXPECT_EQ(placeNames({Mode::open, all}), (Names{"Home", "Last used", "Examples"}));
    EXPECT_EQ(placeNames({Mode::save, all}), (Names{"Home", "Last used"}));
}

TEST_F(PresetBrowserTest, AnExampleHasItsSentenceFromTheListBesideItAndIsFoundByIt) {
    std::ofstream(home / "library.txt") << "# What the lines are\n"
                                           "Echoes | Echo | Notes come again.\n"
                                           "Splits | bass | The left hand\x01 plays a bass.\n"
                                           "Splits | gone | No such file.\n"
                                           "no line of the list\n";
    PresetBrowser open(Mode::open, {.home = home.path(), .examples = home.path()});
    const auto sentences = [&open] {
        Names found;
        std::ranges::transform(open.entries(), std::back_inserter(found), &PresetBrowserEntry::sentence);
        return found;
    };
    EXPECT_EQ(names(open), (Names{"takes", "bass.json", "Echo.json", "song v1.2.json"}));
    EXPECT_EQ(sentences(),
              (Names{"", R"(Splits: The left hand\u0001 plays a bass.)", "Echoes: Notes come again.", ""}));
    open.type("LEFT hand");
    EXPECT_EQ(names(open), Names{"bass.json"});
    EXPECT_EQ(open.confirm(), home / "bass.json");
}

TEST_F(PresetBrowserTest, AListOfSentencesCountsAmongTheExamplesOnly) {
    std::ofstream(home / "library.txt") << "Echoes | Echo | Notes come again.\n";
    const auto open = browser(Mode::open);
    ASSERT_FALSE(open.entries().empty());
    for (const auto& entry : open.entries()) {
        EXPECT_EQ(entry.sentence, "");
    }
}

TEST_F(PresetBrowserTest, ArrowsPickEntriesAndStopAtTheEnds) {
    auto open = browser(Mode::open);
    EXPECT_EQ(open.picked(), std::nullopt);
    open.step(1);
    EXPECT_EQ(pickedName(open), "takes");
    EXPECT_EQ(open.action(), "Open");
    open.step(2);
    EXPECT_EQ(pickedName(open), "Echo.json");
    EXPECT_EQ(open.name(), "Echo.json");
    EXPECT_EQ(open.action(), "Import");
    EXPECT_EQ(open.confirm(), home / "Echo.json");
    open.step(100);
    EXPECT_EQ(pickedName(open), "song v1.2.json");
    open.step(-100);
    EXPECT_EQ(pickedName(open), "takes");
    open.pick(std::nullopt);
    open.step(-1);
    EXPECT_EQ(pickedName(open), "song v1.2.json");
}

TEST_F(PresetBrowserTest, ArrowsInAnEmptyFolderPickNothing) {
    fs::remove(home / "takes/one.json");
    PresetBrowser open(Mode::open, {.home = home / "takes"});
    open.step(1);
    open.pick(0);
    EXPECT_EQ(open.picked(), std::nullopt);
}

TEST_F(PresetBrowserTest, NothingIsOpenedBeforeAnythingWasChosen) {
    auto open = browser(Mode::open);
    EXPECT_EQ(open.confirm(), std::nullopt);
    EXPECT_EQ(open.message(), "Choose a preset, or type its name.");
    open.step(1);
    EXPECT_EQ(open.message(), "");
}

TEST_F(PresetBrowserTest, ATypedPartOfANameLeavesTheEntriesThatHoldItAndPicksTheFirstFile) {
    auto open = browser(Mode::open);
    open.type("S");
    EXPECT_EQ(names(open), (Names{"takes", "bass.json", "song v1.2.json"}));
    EXPECT_EQ(pickedName(open), "bass.json");
    EXPECT_EQ(open.action(), "Import");
    open.type("so");
    EXPECT_EQ(names(open), Names{"song v1.2.json"});
    open.type("ecH");
    EXPECT_EQ(names(open), Names{"Echo.json"});
    EXPECT_EQ(open.name(), "ecH");
    EXPECT_EQ(open.confirm(), home / "Echo.json");
    open.type("");
    EXPECT_EQ(names(open).size(), 4U);
    EXPECT_EQ(open.picked(), std::nullopt);
}

TEST_F(PresetBrowserTest, AFolderIsPickedByAPartOfItsNameWhereNoFileHoldsItAndByItsWholeName) {
    make("old takes.json");
    fs::create_directory(home / "tapes");
    auto open = browser(Mode::open);
    open.type("tape");
    EXPECT_EQ(pickedName(open), "tapes");
    EXPECT_EQ(open.action(), "Open");
    open.type("takes");
    EXPECT_EQ(pickedName(open), "takes");
    EXPECT_EQ(open.action(), "Open");
    EXPECT_EQ(open.confirm(), std::nullopt);
    EXPECT_EQ(open.folder(), home / "takes");
}

TEST_F(PresetBrowserTest, WhatIsPickedWhileTypingIsWhatIsOpened) {
    make("anew.json");
    make("new.json");
    make("new");
    for (const auto* name : {"new", " new.json "}) {
        auto open = browser(Mode::open);
        open.type(name);
        EXPECT_EQ(pickedName(open), "new.json");
        EXPECT_EQ(open.confirm(), home / "new.json");
    }
    EXPECT_EQ(typed(Mode::open, "ne"), home / "anew.json");
}

TEST_F(PresetBrowserTest, ATildeInANameIsALetterLikeAnyOther) {
    make("take~2.json");
    make("~draft.json");
    auto open = browser(Mode::open);
    open.type("e~2");
    EXPECT_EQ(names(open), Names{"take~2.json"});
    open.type("~d");
    EXPECT_EQ(names(open), Names{"~draft.json"});
    for (const auto* path : {"~", "~/take", " ~/"}) {
        open.type(path);
        EXPECT_EQ(names(open).size(), 6U) << path;
        EXPECT_EQ(open.picked(), std::nullopt) << path;
    }
}

TEST_F(PresetBrowserTest, ArrowsGoOnAmongTheEntriesThatTypingHasLeft) {
    auto open = browser(Mode::open);
    open.type(".json");
    open.step(1);
    EXPECT_EQ(pickedName(open), "Echo.json");
    EXPECT_EQ(names(open).size(), 3U);
    EXPECT_EQ(open.confirm(), home / "Echo.json");
}

TEST_F(PresetBrowserTest, AWholeNameIsOpenedWithOrWithoutItsEnding) {
    EXPECT_EQ(typed(Mode::open, "song v1.2"), home / "song v1.2.json");
    EXPECT_EQ(typed(Mode::open, "  song v1.2.json "), home / "song v1.2.json");
    make("other.txt");
    EXPECT_EQ(typed(Mode::open, "other.txt"), home / "other.txt");
    auto open = browser(Mode::open);
    open.type("nothing");
    EXPECT_EQ(open.confirm(), std::nullopt);
    EXPECT_EQ(open.message(), "There is no preset \"nothing\".");
}

TEST_F(PresetBrowserTest, APathIsOpenedFromTheRootFromHomeAndFromTheFolder) {
    for (const auto& path : {(home / "takes/one.json").string(), std::string("~/takes/one.json"),
                             std::string("takes/one"), std::string("./takes/../takes/one.json")}) {
        EXPECT_EQ(typed(Mode::open, path), home / "takes/one.json") << path;
    }
    EXPECT_EQ(typed(Mode::open, "takes/two"), std::nullopt);
}

TEST_F(PresetBrowserTest, ATypedFolderIsEntered) {
    for (const auto mode : {Mode::open, Mode::save}) {
        for (const auto& path : {(home / "takes").string(), std::string("~/takes/"), std::string("takes/")}) {
            auto open = browser(mode);
            open.type(path);
            EXPECT_EQ(open.confirm(), std::nullopt);
            EXPECT_EQ(open.folder(), home / "takes") << path;
            EXPECT_EQ(names(open), Names{"one.json"});
            EXPECT_EQ(open.name(), mode == Mode::save ? "midi-quillo-preset" : "");
            open.type("..");
            EXPECT_EQ(open.confirm(), std::nullopt);
            EXPECT_EQ(open.folder(), home.path());
            open.type("~");
            EXPECT_EQ(open.confirm(), std::nullopt);
            EXPECT_EQ(open.folder(), home.path());
        }
    }
}

TEST_F(PresetBrowserTest, AFolderIsEnteredAndLeftAndThenItIsPicked) {
    auto open = browser(Mode::open);
    open.pick(0);
    EXPECT_EQ(open.confirm(), std::nullopt);
    EXPECT_EQ(open.folder(), home / "takes");
    EXPECT_EQ(open.picked(), std::nullopt);
    open.leave();
    EXPECT_EQ(open.folder(), home.path());
    EXPECT_EQ(pickedName(open), "takes");
    open.enter("/");
    open.leave();
    EXPECT_EQ(open.folder(), "/");
}

TEST_F(PresetBrowserTest, WhereAFolderWasLeftToSaveAroundItConfirmingSavesThere) {
    PresetBrowser save(Mode::save, {.home = home / "takes"});
    save.type("mine");
    save.leave();
    EXPECT_EQ(save.picked(), std::nullopt);
    EXPECT_EQ(save.action(), "Export");
    EXPECT_EQ(save.confirm(), home / "mine.json");
}

TEST_F(PresetBrowserTest, AFolderThatCannotBeReadIsNamedAndNothingChanges) {
    auto open = browser(Mode::open);
    open.type("bass");
    open.enter(home / "none\n");
    EXPECT_EQ(open.folder(), home.path());
    EXPECT_EQ(open.message(), "The folder \"" + (home / "none").string() + "\\n\" cannot be read.");
    EXPECT_EQ(names(open), Names{"bass.json"});
}

TEST_F(PresetBrowserTest, TheSameNameIsOfferedToEveryExport) {
    auto save = browser(Mode::save);
    EXPECT_EQ(save.name(), "midi-quillo-preset");
    EXPECT_EQ(save.action(), "Export");
    EXPECT_EQ(save.confirm(), home / "midi-quillo-preset.json");
}

TEST_F(PresetBrowserTest, EveryNameToSaveUnderGetsTheEnding) {
    EXPECT_EQ(typed(Mode::save, "song v1.3"), home / "song v1.3.json");
    EXPECT_EQ(typed(Mode::save, " new.json "), home / "new.json");
    EXPECT_EQ(typed(Mode::save, "takes"), home / "takes.json");
    EXPECT_EQ(typed(Mode::save, "takes/two"), home / "takes/two.json");
    EXPECT_EQ(typed(Mode::save, "~/takes/two"), home / "takes/two.json");
}

TEST_F(PresetBrowserTest, SavingSaysWhyItCannotBeDone) {
    const auto reason = [this](const std::string& name) {
        auto save = browser(Mode::save);
        save.type(name);
        EXPECT_EQ(save.confirm(), std::nullopt);
        EXPECT_FALSE(save.asksToReplace());
        return save.message();
    };
    fs::create_directory(home / "folder.json");
    EXPECT_EQ(reason("  "), "Type a name for the preset.");
    EXPECT_EQ(reason("none/new"), "There is no folder \"" + (home / "none").string() + "\".");
    EXPECT_EQ(reason("folder"), "\"folder.json\" is a folder. Type another name.");
}

TEST_F(PresetBrowserTest, AFileInTheWayIsNamedAndReplacedOnlyWhenThatIsWanted) {
    auto save = browser(Mode::save);
    save.type("Echo");
    EXPECT_EQ(save.replace(), std::nullopt);
    EXPECT_EQ(save.confirm(), std::nullopt);
    EXPECT_EQ(save.message(), "\"Echo.json\" is there already. Replace it, or type another name.");
    EXPECT_EQ(save.action(), "Replace");
    EXPECT_EQ(save.confirm(), std::nullopt);
    EXPECT_EQ(save.replace(), home / "Echo.json");
}

TEST_F(PresetBrowserTest, TheQuestionIsForgottenWithTheNameThatItWasAbout) {
    auto save = browser(Mode::save);
    const auto ask = [&save] {
        save.type("Echo");
        EXPECT_EQ(save.confirm(), std::nullopt);
        EXPECT_TRUE(save.asksToReplace());
    };
    ask();
    save.type("Echo2");
    EXPECT_EQ(save.replace(), std::nullopt);
    ask();
    save.step(1);
    EXPECT_EQ(save.replace(), std::nullopt);
    ask();
    save.enter(home / "takes");
    EXPECT_EQ(save.replace(), std::nullopt);
    EXPECT_EQ(save.action(), "Export");
}

TEST_F(PresetBrowserTest, ALinkThatLeadsNowhereIsInTheWayToo) {
    fs::create_symlink("nowhere", home / "link.json");
    auto save = browser(Mode::save);
    save.type("link");
    EXPECT_EQ(save.confirm(), std::nullopt);
    EXPECT_TRUE(save.asksToReplace());
}

TEST_F(PresetBrowserTest, WhileSavingAFileGivesItsNameAndAFolderLeavesTheOneThatWasTyped) {
    auto save = browser(Mode::save);
    save.type("mine");
    save.pick(0);
    EXPECT_EQ(save.name(), "mine");
    EXPECT_EQ(save.action(), "Open");
    EXPECT_EQ(save.confirm(), std::nullopt);
    EXPECT_EQ(save.folder(), home / "takes");
    EXPECT_EQ(save.confirm(), home / "takes/mine.json");
    save.pick(0);
    EXPECT_EQ(save.name(), "one.json");
    EXPECT_EQ(save.confirm(), std::nullopt);
    EXPECT_EQ(save.replace(), home / "takes/one.json");
}

TEST_F(PresetBrowserTest, TypingANameToSaveUnderHidesNothing) {
    auto save = browser(Mode::save);
    save.type("zzz");
    EXPECT_EQ(names(save).size(), 4U);
    EXPECT_EQ(save.picked(), std::nullopt);
}

}  // namespace
}  // namespace quillo
