// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SessionKeeper.hpp"

#include <gtest/gtest.h>

#include <string_view>

#include "platform/AtomicFile.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

class SessionKeeperTest : public testing::Test {
protected:
    /// The rules become these bytes, at this time of the program.
    void change(std::string_view bytes, std::chrono::milliseconds at) {
        rules = {bytes.begin(), bytes.end()};
        keeper.changed(SessionKeeper::Time(at));
    }

    /// What the versions hold after the keeper has looked at this time, newest first.
    std::string keptAt(std::chrono::milliseconds at) {
        EXPECT_EQ(keeper.keepUp(SessionKeeper::Time(at)), std::nullopt);
        return kept();
    }

    std::string kept() {
        std::string text;
        for (const auto& version : files.versions()) {
            const auto document = readWholeFile(version.file);
            text += std::string(document.begin(), document.end()) + " ";
        }
        return text;
    }

    TemporaryFolder folder;
    Data rules;
    const SessionFiles files{folder / "state", "test"};
    SessionKeeper keeper{files, [this] { return rules; }};
};

TEST_F(SessionKeeperTest, WithoutAChangeNothingIsSaved) {
    EXPECT_EQ(keptAt(1h), "");
    EXPECT_EQ(keeper.keepNow(SessionKeeper::Time(2h)), std::nullopt);
    EXPECT_EQ(kept(), "");
}

TEST_F(SessionKeeperTest, AChangeIsSavedWhenItHasRested) {
    change("a", 1000ms);
    EXPECT_EQ(keptAt(1499ms), "");
    EXPECT_EQ(keptAt(1500ms), "a ");
}

TEST_F(SessionKeeperTest, ChangesWithoutRestAreSavedAllTheSame) {
    for (auto at = 0ms; at < 2000ms; at += 100ms) {
        change("a", at);
        EXPECT_EQ(keptAt(at), "");
    }
    change("b", 2000ms);
    EXPECT_EQ(keptAt(2000ms), "b ");
}

TEST_F(SessionKeeperTest, AtTheEndWhatIsNotSavedIsSavedAtOnce) {
    change("a", 1000ms);
    EXPECT_EQ(keeper.keepNow(SessionKeeper::Time(1000ms)), std::nullopt);
    EXPECT_EQ(kept(), "a ");
}

TEST_F(SessionKeeperTest, BeforehandWhatIsNotSavedIsSavedAtOnceButWhatFailedIsNotTriedAgain) {
    change("a", 1000ms);
    EXPECT_EQ(keeper.keepBeforehand(SessionKeeper::Time(1000ms)), std::nullopt);
    EXPECT_EQ(kept(), "a ");
    std::filesystem::remove_all(folder / "state");
    writeWholeFile(folder / "state", Data{1}, Existing::keep);
    change("b", 2000ms);
    EXPECT_TRUE(keeper.keepBeforehand(SessionKeeper::Time(2000ms)).has_value());
    EXPECT_FALSE(keeper.keepBeforehand(SessionKeeper::Time(3000ms)).has_value());
    change("c", 4000ms);
    EXPECT_TRUE(keeper.keepBeforehand(SessionKeeper::Time(4000ms)).has_value());
}

TEST_F(SessionKeeperTest, ChangesWithinAMinuteAreOneVersion) {
    change("a", 0s);
    keptAt(1s);
    change("b", 30s);
    EXPECT_EQ(keptAt(31s), "b ");
    change("c", 60s);
    EXPECT_EQ(keptAt(60'999ms), "c ");
    change("d", 70s);
    EXPECT_EQ(keptAt(71s), "d c ");
}

TEST_F(SessionKeeperTest, TheFirstChangeOfARunBeginsANewVersion) {
    change("a", 0s);
    keptAt(1s);
    SessionKeeper later(files, [] { return Data{'z'}; });
    later.changed(SessionKeeper::Time(2s));
    EXPECT_EQ(later.keepUp(SessionKeeper::Time(3s)), std::nullopt);
    EXPECT_EQ(kept(), "z a ");
}

TEST_F(SessionKeeperTest, ARunThatSavesWhatTheLastOneHasSavedBeginsNoVersion) {
    change("a", 0s);
    keptAt(1s);
    change("b", 100s);
    keptAt(101s);
    Data edited{'b'};
    SessionKeeper later(files, [&] { return edited; });
    later.changed(SessionKeeper::Time(2s));
    EXPECT_EQ(later.keepNow(SessionKeeper::Time(2s)), std::nullopt);
    EXPECT_EQ(kept(), "b a ");
    edited = {'c'};
    later.changed(SessionKeeper::Time(3s));
    EXPECT_EQ(later.keepNow(SessionKeeper::Time(3s)), std::nullopt);
    EXPECT_EQ(kept(), "c b a ");
}

TEST_F(SessionKeeperTest, AChangeThatIsTakenBackIsNoVersion) {
    change("a", 0s);
    keptAt(1s);
    change("b", 100s);
    change("a", 100s);
    EXPECT_EQ(keptAt(101s), "a ");
    change("c", 102s);
    EXPECT_EQ(keptAt(103s), "c a ");
}

TEST_F(SessionKeeperTest, AnUnchangedSessionIsSavedAgainWhenItsFileIsGoneOrHoldsSomethingElse) {
    change("a", 0s);
    keptAt(1s);
    std::filesystem::remove(files.file(0));
    change("a", 2s);
    EXPECT_EQ(keptAt(3s), "a ");
    writeWholeFile(files.file(0), Data{'z'}, Existing::replace);
    change("a", 100s);
    EXPECT_EQ(keptAt(101s), "a z ");
}

TEST_F(SessionKeeperTest, WhatCannotBeSavedIsToldOnceAndTriedAgainAfterTheNextChangeAndAtTheEnd) {
    writeWholeFile(folder / "state", Data{1}, Existing::keep);
    change("a", 0s);
    ASSERT_TRUE(keeper.keepUp(SessionKeeper::Time(1s)).has_value());
    EXPECT_EQ(keptAt(5s), "");
    change("b", 6s);
    const auto problem = keeper.keepUp(SessionKeeper::Time(7s));
    ASSERT_TRUE(problem.has_value());
    EXPECT_EQ(problem->find("The rules cannot be saved: " + (folder / "state").string()), 0U) << *problem;
    std::filesystem::remove(folder / "state");
    EXPECT_EQ(keeper.keepNow(SessionKeeper::Time(8s)), std::nullopt);
    EXPECT_EQ(kept(), "b ");
}

}  // namespace
}  // namespace quillo
