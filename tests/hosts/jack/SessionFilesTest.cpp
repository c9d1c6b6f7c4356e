// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SessionFiles.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

#include "persistence/PluginData.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/Data.hpp"
#include "support/FileSizeLimit.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
namespace fs = std::filesystem;

/// A document with so many rules.
Data documentOf(std::size_t rules) {
    return PluginData{std::vector<Rule>(rules, rule(onNoteOn(), send(noteOn(0, 60, 1))))}.write();
}

class SessionFilesTest : public testing::Test {
protected:
    /// How many rules each version has, newest first.
    std::vector<std::size_t> ruleCounts() {
        std::vector<std::size_t> counts;
        for (const auto& version : files.versions()) {
            counts.push_back(version.read().rules.size());
        }
        return counts;
    }

    TemporaryFolder folder;
    SessionFiles files{folder / "state" / "midi-quillo", "midi-quillo"};
};

TEST_F(SessionFilesTest, AFirstSessionHasNoVersions) {
    EXPECT_TRUE(files.versions().empty());
}

TEST_F(SessionFilesTest, TheNewestVersionIsAPresetFileOfTheSessionsName) {
    files.add(documentOf(2));
    EXPECT_EQ(readWholeFile(folder / "state" / "midi-quillo" / "midi-quillo.json"), documentOf(2));
    EXPECT_EQ(ruleCounts(), (std::vector<std::size_t>{2}));
}

TEST_F(SessionFilesTest, TheLastTenVersionsAreKept) {
    for (std::size_t rules = 1; rules <= 13; ++rules) {
        files.add(documentOf(rules));
    }
    EXPECT_EQ(ruleCounts(), (std::vector<std::size_t>{13, 12, 11, 10, 9, 8, 7, 6, 5, 4}));
    EXPECT_EQ(readWholeFile(files.file(9)), documentOf(4));
    EXPECT_EQ(std::distance(fs::directory_iterator(files.file(0).parent_path()), {}), 10);
}

TEST_F(SessionFilesTest, WritingOverTheNewestLeavesTheOthers) {
    files.add(documentOf(1));
    files.add(documentOf(2));
    files.replaceNewest(documentOf(3));
    EXPECT_EQ(ruleCounts(), (std::vector<std::size_t>{3, 1}));
}

TEST_F(SessionFilesTest, AMissingVersionIsNoHarm) {
    for (std::size_t rules = 1; rules <= 4; ++rules) {
        files.add(documentOf(rules));
    }
    fs::remove(files.file(2));
    EXPECT_EQ(ruleCounts(), (std::vector<std::size_t>{4, 3, 1}));
    EXPECT_EQ(files.versions()[2].age, 3U);
    files.add(documentOf(5));
    EXPECT_EQ(ruleCounts(), (std::vector<std::size_t>{5, 4, 3, 1}));
}

TEST_F(SessionFilesTest, ADamagedVersionIsListedAndKept) {
    files.add(documentOf(1));
    files.add(documentOf(2));
    const std::string_view damaged = R"({"rules":[)";
    writeWholeFile(files.file(0), {reinterpret_cast<const std::uint8_t*>(damaged.data()), damaged.size()},
                   Existing::replace);
    ASSERT_EQ(files.versions().size(), 2U);
    EXPECT_THROW(static_cast<void>(files.versions()[0].read()), std::runtime_error);
    files.add(documentOf(3));
    EXPECT_EQ(readWholeFile(files.file(1)), Data(damaged.begin(), damaged.end()));
}

TEST_F(SessionFilesTest, NoVersionIsWaitedFor) {
    files.add(documentOf(1));
    fs::remove(files.file(0));
    ASSERT_EQ(::mkfifo(files.file(0).c_str(), 0600), 0);
    ASSERT_EQ(files.versions().size(), 1U);
    EXPECT_THROW(static_cast<void>(files.versions()[0].read()), FileError);
}

TEST_F(SessionFilesTest, AVersionKeepsTheTimeAtWhichItWasSaved) {
    files.add(documentOf(1));
    constexpr timespec longAgo{1'000'000'000, 0};
    const std::array<timespec, 2> times{longAgo, longAgo};
    ASSERT_EQ(::utimensat(AT_FDCWD, files.file(0).c_str(), times.data(), 0), 0);
    files.add(documentOf(2));
    EXPECT_EQ(std::chrono::system_clock::to_time_t(files.versions()[1].saved), longAgo.tv_sec);
}

TEST_F(SessionFilesTest, TheFolderIsTheUsersAlone) {
    files.add(documentOf(1));
    for (const auto& made : {folder / "state", folder / "state" / "midi-quillo"}) {
        EXPECT_EQ(fs::status(made).permissions(), fs::perms::owner_all) << made;
    }
}

TEST_F(SessionFilesTest, WhereNothingCanBeWrittenTheReasonIsNamed) {
    writeWholeFile(folder / "state", Data{1}, Existing::keep);
    try {
        files.add(documentOf(1));
        FAIL() << "written where no folder can be";
    } catch (const FileError& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr((folder / "state").string()));
    }
}

TEST_F(SessionFilesTest, AVersionThatCannotBeWrittenCostsNoOther) {
    for (std::size_t rules = 1; rules <= 3; ++rules) {
        files.add(documentOf(rules));
    }
    {
        const FileSizeLimit full(1);
        EXPECT_THROW(files.add(documentOf(4)), FileError);
        EXPECT_THROW(files.add(documentOf(5)), FileError);
    }
    EXPECT_EQ(ruleCounts(), (std::vector<std::size_t>{3, 2, 1}));
    EXPECT_EQ(std::distance(fs::directory_iterator(files.file(0).parent_path()), {}), 3);
}

TEST_F(SessionFilesTest, WhatCannotBePutInItsPlaceLeavesNothingBehind) {
    const auto where = folder / "state" / "midi-quillo";
    fs::create_directories(where / "midi-quillo.json" / "in the way");
    try {
        files.add(documentOf(1));
        FAIL() << "a folder has a second name";
    } catch (const FileError& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr((where / "midi-quillo.tmp-before").string()));
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(where), fs::directory_iterator()), 1);
}

TEST_F(SessionFilesTest, WhatAProgramThatWasKilledHasLeftGoesAndNothingElse) {
    files.add(documentOf(1));
    files.add(documentOf(2));
    const auto where = folder / "state" / "midi-quillo";
    const auto put = [&](const char* name) { writeWholeFile(where / name, Data{1}, Existing::keep); };
    const std::array leftovers{"midi-quillo.tmp-next", "midi-quillo.tmp-before",
                               "midi-quillo.json.tmp-4711-0", "midi-quillo.tmp-next.tmp-4711-12",
                               "midi-quillo.settings.tmp-4711-3"};
    const std::array others{"midi-quillo.settings",
                            "midi-quillo.lock",
                            "midi-quillo.9.json",
                            "midi-quillo-2.tmp-next",
                            "midi-quillo-2.json.tmp-4711-0",
                            "midi-quillo.json.bak",
                            "midi-quillo.json.tmp-4711",
                            "my midi-quillo.json.tmp-4711-0",
                            "other.json.tmp-4711-0",
                            "midi-quillo.json.tmp-4711-0-1",
                            "midi-quillo.json.tmp-",
                            "midi-quillo.json.tmp--0"};
    std::ranges::for_each(leftovers, put);
    std::ranges::for_each(others, put);
    files.removeLeftovers();
    for (const auto* name : leftovers) {
        EXPECT_FALSE(fs::exists(where / name)) << name;
    }
    for (const auto* name : others) {
        EXPECT_TRUE(fs::exists(where / name)) << name;
    }
    EXPECT_EQ(readWholeFile(files.file(0)), documentOf(2));
    EXPECT_EQ(readWholeFile(files.file(1)), documentOf(1));
}

TEST_F(SessionFilesTest, CopiesThatTheUserHasMadeStay) {
    files.add(documentOf(1));
    const auto where = folder / "state" / "midi-quillo";
    const std::array copies{
        "midi-quillo.json.2026-11-20", "midi-quillo.stage.20261120-1", "midi-quillo.settings.2026-11-20",
        "midi-quillo.old.json",        "midi-quillo.new.json",         "midi-quillo.json.4711-0"};
    for (const auto* name : copies) {
        writeWholeFile(where / name, Data{1}, Existing::keep);
    }
    files.removeLeftovers();
    files.add(documentOf(2));
    for (const auto* name : copies) {
        EXPECT_TRUE(fs::exists(where / name)) << name;
    }
}

TEST_F(SessionFilesTest, NoTwoNamesShareAFile) {
    std::set<fs::path> seen;
    const fs::path home = folder.path();
    for (const auto* name : {"a", "A", "a.1", "a/b", "a%2Fb", "..", "", "a b", "\xC3\xA4", "a\\b"}) {
        const SessionFiles session(home, name);
        for (std::size_t age = 0; age < SessionFiles::keptVersions; ++age) {
            EXPECT_EQ(session.file(age).parent_path(), home) << name;
            EXPECT_TRUE(seen.insert(session.file(age)).second) << session.file(age);
        }
        EXPECT_TRUE(seen.insert(session.lockFile()).second) << name;
        EXPECT_TRUE(seen.insert(session.settingsFile()).second) << name;
    }
}

TEST(StateFolder, IsWhereTheDesktopsConventionsPutIt) {
    EXPECT_EQ(stateFolder("/x/state", "/home/me"), "/x/state/midi-quillo");
    EXPECT_EQ(stateFolder(nullptr, "/home/me"), "/home/me/.local/state/midi-quillo");
    EXPECT_EQ(stateFolder("", "/home/me"), "/home/me/.local/state/midi-quillo");
    EXPECT_EQ(stateFolder("relative", "/home/me"), "/home/me/.local/state/midi-quillo");
    EXPECT_EQ(stateFolder(nullptr, nullptr), std::nullopt);
    EXPECT_EQ(stateFolder(nullptr, ""), std::nullopt);
}

}  // namespace
}  // namespace quillo
