// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/GuideLocation.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/AtomicFile.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillo {
namespace {

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
    EXPECT_EQ(firstThere({folder.path() / "none.html", page, folder.path()}), page);
    EXPECT_EQ(firstThere({folder.path() / "none.html", folder.path()}), std::nullopt);
}

TEST(GuideLocation, AnAddressHoldsNoByteThatABrowserWouldMisread) {
    EXPECT_EQ(fileAddress("/usr/share/a b/100%/ü?#.html"),
              "file:///usr/share/a%20b/100%25/%C3%BC%3F%23.html");
}

}  // namespace
}  // namespace quillo
