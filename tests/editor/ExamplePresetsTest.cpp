// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ExamplePresets.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TemporaryFolder.hpp"

namespace quillo {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

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
