// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/InstalledFiles.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/AtomicFile.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillo {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;

TEST(GuideLocation, LooksBesideTheBinaryAndInTheDataFoldersOnly) {
    EXPECT_THAT(guidePlaces("/home/me/midi-quillo/build/midi-quillo-editor", {"/home/me/data", "/usr/share"}),
                ElementsAre("/home/me/midi-quillo/build/guide/index.html",
                            "/home/me/data/doc/midi-quillo/guide/index.html",
                            "/usr/share/doc/midi-quillo/guide/index.html"));
}

TEST(GuideLocation, AProgramThatWasUnpackedSomewhereFindsThePageInItsOwnTree) {
    EXPECT_THAT(guidePlaces("/opt/quillo/bin/midi-quillo-jack", {}),
                ElementsAre("/opt/quillo/bin/guide/index.html",
                            "/opt/quillo/share/doc/midi-quillo/guide/index.html"));
}

TEST(GuideLocation, KnowsTheDataFoldersOfTheUserAndTheSystem) {
    EXPECT_THAT(dataFolders("/home/me/data", "/home/me", "/opt/share:/usr/share"),
                ElementsAre("/home/me/data", "/opt/share", "/usr/share", QUILLO_DATA_FOLDER));
}

TEST(GuideLocation, KnowsTheUsualDataFoldersWhereNothingIsSaid) {
    for (const char* unset : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_THAT(
            dataFolders(unset, "/home/me", unset),
            ElementsAre("/home/me/.local/share", "/usr/local/share", "/usr/share", QUILLO_DATA_FOLDER));
    }
}

TEST(GuideLocation, IgnoresADataFolderThatDependsOnTheWorkingFolder) {
    EXPECT_THAT(dataFolders("data", nullptr, ".:share:/usr/share"),
                ElementsAre("/usr/share", QUILLO_DATA_FOLDER));
    EXPECT_THAT(dataFolders(nullptr, nullptr, "/usr/share"), ElementsAre("/usr/share", QUILLO_DATA_FOLDER));
}

TEST(GuideLocation, TheFirstPlaceWithAFileIsTaken) {
    const TemporaryFolder folder;
    const auto page = folder.path() / "page.html";
    writeWholeFile(page, {}, Existing::keep);
    EXPECT_EQ(firstFile({folder.path() / "none.html", page, folder.path()}), page);
    EXPECT_EQ(firstFile({folder.path() / "none.html", folder.path()}), std::nullopt);
}

TEST(GuideLocation, AnAddressHoldsNoByteThatABrowserWouldMisread) {
    EXPECT_EQ(fileAddress("/usr/share/a b/100%/ü?#.html"),
              "file:///usr/share/a%20b/100%25/%C3%BC%3F%23.html");
}

TEST(ExamplePresets, OfAnInstalledProgramAreBesideItsFolderThenInTheDataFolders) {
    EXPECT_THAT(examplePlaces("/opt/quillo/bin/midi-quillo-jack", {"/home/me/.local/share", "/usr/share"}),
                ElementsAre("/opt/quillo/bin/share/midi-quillo/presets",
                            "/opt/quillo/share/midi-quillo/presets",
                            "/home/me/.local/share/midi-quillo/presets", "/usr/share/midi-quillo/presets"));
}

TEST(ExamplePresets, OfAnInstalledPlugInAreBesideItsLibraries) {
    for (const auto* binary :
         {"/usr/lib/lv2/midi-quillo.lv2/midi-quillo-ui.so", "/usr/lib/clap/midi-quillo.clap",
          "/usr/lib/x86_64-linux-gnu/lv2/midi-quillo.lv2/midi-quillo-ui.so",
          "/usr/lib/vst3/MIDI Quillo.vst3/Contents/x86_64-linux/MIDI Quillo.so"}) {
        EXPECT_THAT(examplePlaces(binary, {}), Contains("/usr/share/midi-quillo/presets")) << binary;
    }
}

TEST(ExamplePresets, OfATreeAsItWasBuiltAreBesideItsProgramsAndBundles) {
    for (const auto* binary :
         {"/src/build/midi-quillo-jack", "/src/build/midi-quillo.clap", "/src/build/midi-quillo.lv2/ui.so",
          "/src/build/MIDI Quillo.vst3/Contents/x86_64-linux/MIDI Quillo.so"}) {
        EXPECT_THAT(examplePlaces(binary, {}), Contains("/src/build/share/midi-quillo/presets")) << binary;
    }
}

TEST(ExamplePresets, AreNotLookedForInEveryFolderAround) {
    EXPECT_THAT(examplePlaces("/home/me/.vst3/MIDI Quillo.vst3/Contents/x86_64-linux/q.so", {}),
                ElementsAre("/home/me/.vst3/MIDI Quillo.vst3/Contents/x86_64-linux/share/midi-quillo/presets",
                            "/home/me/.vst3/share/midi-quillo/presets"));
}

TEST(ExamplePresets, AreTheFirstFolderThatIsThere) {
    const TemporaryFolder place;
    fs::create_directory(place / "two");
    fs::create_directory(place / "three");
    EXPECT_EQ(firstFolder({place / "one", place / "two", place / "three"}), place / "two");
    EXPECT_EQ(firstFolder({place / "one"}), std::nullopt);
    EXPECT_EQ(firstFolder({}), std::nullopt);
}

}  // namespace
}  // namespace quillo
