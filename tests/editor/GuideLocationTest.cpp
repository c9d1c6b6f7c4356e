// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/GuideLocation.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/AtomicFile.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillo {
namespace {

using testing::Contains;

TEST(GuideLocation, AnInstalledProgramFindsThePageInItsOwnTree) {
    EXPECT_THAT(guidePlaces("/opt/quillo/bin/midi-quillo-jack", ""),
                Contains("/opt/quillo/share/doc/midi-quillo/guide/index.html"));
}

TEST(GuideLocation, APlugInDeepInItsBundleFindsItToo) {
    EXPECT_THAT(guidePlaces("/usr/lib/vst3/MIDI Quillo.vst3/Contents/x86_64-linux/MIDI Quillo.so", ""),
                Contains("/usr/share/doc/midi-quillo/guide/index.html"));
}

TEST(GuideLocation, AProgramThatWasOnlyBuiltFindsTheBuiltPage) {
    EXPECT_THAT(guidePlaces("/home/me/midi-quillo/build/midi-quillo-editor", ""),
                Contains("/home/me/midi-quillo/build/guide/index.html"));
}

TEST(GuideLocation, APlugInInTheUsersFoldersFindsItInTheUsersData) {
    EXPECT_THAT(guidePlaces("/home/me/.lv2/midi-quillo.lv2/ui.so", "/home/me/.local/share"),
                Contains("/home/me/.local/share/doc/midi-quillo/guide/index.html"));
}

TEST(GuideLocation, TheFirstPlaceWithAFileIsTaken) {
    const TemporaryFolder folder;
    const auto page = folder.path() / "page.html";
    writeWholeFile(page, {}, Existing::keep);
    EXPECT_EQ(firstThere({folder.path() / "none.html", page, folder.path()}), page);
    EXPECT_EQ(firstThere({folder.path() / "none.html", folder.path()}), std::nullopt);
}

TEST(GuideLocation, AnAddressHoldsNoByteThatABrowserWouldMisread) {
    EXPECT_EQ(fileAddress("/usr/share/a b/100%/ü?#.html"),
              "file:///usr/share/a%20b/100%25/%C3%BC%3F%23.html");
}

}  // namespace
}  // namespace quillo
