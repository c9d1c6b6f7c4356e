// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SessionRules.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "commandline/CommandFailure.hpp"
#include "persistence/PluginData.hpp"
#include "platform/AtomicFile.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using namespace std::chrono_literals;
using testing::HasSubstr;

Data documentOf(const std::string& name) {
    return PluginData{rulesCalled(name)}.write();
}

/// A program that has a session.
struct Program {
    explicit Program(const std::filesystem::path& folder) { rules.keepIn(folder, "band"); }

    /// The name of the rule that it has; empty without rules.
    std::string ruleName() {
        const auto installed = session.processor().rules();
        return installed.empty() ? "" : installed.front().name;
    }
    void edit(const std::string& name) {
        session.onRulesChanged(rulesCalled(name));
        rules.changed(SessionKeeper::Time());
    }
    std::optional<std::string> alert() {
        session.drain();
        return session.model()->alertErrorMessage();
    }

    std::ostringstream err;
    Session session;
    UserMessages messages{err, session};
    SessionRules rules{session, messages};
};

class SessionRulesTest : public testing::Test {
protected:
    void damage(std::size_t age) { writeWholeFile(files.file(age), Data{'{'}, Existing::replace); }

    TemporaryFolder folder;
    SessionFiles files{folder.path(), "band"};
};

TEST_F(SessionRulesTest, AFirstSessionHasNoRulesAndNothingToSay) {
    Program program(folder.path());
    program.rules.load();
    EXPECT_EQ(program.ruleName(), "");
    EXPECT_EQ(program.err.str(), "");
}

TEST_F(SessionRulesTest, TheLastSessionsRulesComeBack) {
    {
        Program program(folder.path());
        program.rules.load();
        program.edit("swap");
        program.rules.keepNow(SessionKeeper::Time());
    }
    Program program(folder.path());
    program.rules.load();
    EXPECT_EQ(program.ruleName(), "swap");
    EXPECT_EQ(program.err.str(), "");
}

TEST_F(SessionRulesTest, WhatIsSwitchedOffIsKeptAndCounted) {
    const auto document = PluginData{rulesCalled("on"), {{1, rulesCalled("off").front()}}}.write();
    files.add(document);
    Program program(folder.path());
    program.rules.load();
    EXPECT_EQ(program.session.save(), document);
    EXPECT_THAT(historyText(files), HasSubstr("   1 rule, 1 switched off   "));
}

TEST_F(SessionRulesTest, AnEditIsSavedSoon) {
    Program program(folder.path());
    program.edit("swap");
    program.rules.keepUp(SessionKeeper::Time(1s));
    EXPECT_EQ(readWholeFile(files.file(0)), documentOf("swap"));
    EXPECT_EQ(program.rules.file(), files.file(0));
}

TEST_F(SessionRulesTest, WhenTheNewestVersionIsDamagedTheOneBeforeIsTakenAndTheUserIsTold) {
    files.add(documentOf("old"));
    files.add(documentOf("new"));
    damage(0);
    Program program(folder.path());
    program.rules.load();
    EXPECT_EQ(program.ruleName(), "old");
    EXPECT_THAT(program.err.str(), HasSubstr(files.file(0).string() + " cannot be used: "));
    EXPECT_THAT(program.err.str(), HasSubstr("The rules are those of "));
    EXPECT_THAT(program.alert().value_or(""), HasSubstr(files.file(0).string()));
    EXPECT_THAT(program.alert().value_or(""), HasSubstr(files.file(1).string()));
    program.session.model()->dismissAlert();
    EXPECT_EQ(program.alert(), std::nullopt);
    EXPECT_EQ(readWholeFile(files.file(0)), Data{'{'});
}

TEST_F(SessionRulesTest, RulesThatCannotBeCompiledAreAsGoodAsDamaged) {
    files.add(documentOf("old"));
    files.add(PluginData{{rule(onLoad(), send(noteOn(0, 1, 1), -1))}}.write());
    Program program(folder.path());
    program.rules.load();
    EXPECT_EQ(program.ruleName(), "old");
}

TEST_F(SessionRulesTest, WhenNoVersionCanBeUsedThereAreNoRulesAndNothingIsLost) {
    files.add(documentOf("old"));
    files.add(documentOf("new"));
    damage(0);
    damage(1);
    Program program(folder.path());
    program.rules.load();
    EXPECT_EQ(program.ruleName(), "");
    EXPECT_THAT(program.alert().value_or(""),
                HasSubstr("No version of the last session's rules can be used"));
    program.edit("fresh");
    program.rules.keepNow(SessionKeeper::Time());
    EXPECT_EQ(readWholeFile(files.file(1)), Data{'{'});
    EXPECT_EQ(readWholeFile(files.file(2)), Data{'{'});
}

TEST_F(SessionRulesTest, OneGoesBackToAVersionWhichBecomesTheNewestWhenItIsToBeKept) {
    for (const auto* name : {"first", "second", "third"}) {
        files.add(documentOf(name));
    }
    Program program(folder.path());
    program.rules.goBack(2);
    EXPECT_EQ(program.ruleName(), "first");
    program.rules.keepNow(SessionKeeper::Time());
    EXPECT_EQ(readWholeFile(files.file(0)), documentOf("third"));
    program.rules.changed(SessionKeeper::Time());
    program.rules.keepNow(SessionKeeper::Time());
    EXPECT_EQ(readWholeFile(files.file(0)), documentOf("first"));
    EXPECT_EQ(readWholeFile(files.file(1)), documentOf("third"));
    EXPECT_EQ(readWholeFile(files.file(3)), documentOf("first"));
}

TEST_F(SessionRulesTest, AVersionThatIsNotThereOrDamagedCannotBeGoneBackTo) {
    files.add(documentOf("first"));
    files.add(documentOf("second"));
    damage(1);
    Program program(folder.path());
    try {
        program.rules.goBack(5);
        FAIL();
    } catch (const CommandFailure& failure) {
        EXPECT_EQ(failure.status(), exitNoInput);
        EXPECT_EQ(failure.what(),
                  files.file(5).string() + ": there is no such version; --history lists them");
    }
    try {
        program.rules.goBack(1);
        FAIL();
    } catch (const CommandFailure& failure) {
        EXPECT_EQ(failure.status(), exitBadData);
    }
    EXPECT_EQ(program.ruleName(), "");
}

TEST_F(SessionRulesTest, ASecondProgramHasASessionOfItsOwnAndAThirdOneToo) {
    files.add(documentOf("swap"));
    Program first(folder.path());
    Program second(folder.path());
    Program third(folder.path());
    second.rules.load();
    EXPECT_EQ(second.ruleName(), "");
    second.edit("other");
    second.rules.keepNow(SessionKeeper::Time());
    EXPECT_EQ(second.rules.file(), SessionFiles(folder.path(), "band-2").file(0));
    EXPECT_EQ(third.rules.file(), SessionFiles(folder.path(), "band-3").file(0));
    EXPECT_EQ(second.err.str(),
              "midi-quillo-jack: another \"band\" is running; this one keeps its rules as \"band-2\"\n");
    EXPECT_EQ(readWholeFile(files.file(0)), documentOf("swap"));
}

TEST_F(SessionRulesTest, ASessionIsFreeAgainWhenItsProgramHasEnded) {
    {
        const Program first(folder.path());
    }
    const Program second(folder.path());
    EXPECT_EQ(second.rules.file(), files.file(0));
}

TEST_F(SessionRulesTest, WithoutAPlaceToKeepThemTheRulesStillRunAndTheUserIsTold) {
    writeWholeFile(folder / "file", Data{1}, Existing::keep);
    Program program(folder / "file" / "state");
    program.rules.load();
    program.edit("swap");
    program.rules.keepNow(SessionKeeper::Time());
    EXPECT_EQ(program.ruleName(), "swap");
    EXPECT_EQ(program.rules.file(), std::nullopt);
    EXPECT_THAT(program.alert().value_or(""), HasSubstr("Changed rules are not kept: "));
    EXPECT_THROW(program.rules.goBack(1), CommandFailure);
}

TEST_F(SessionRulesTest, WhereNothingMayBeWrittenTheRulesAreReadAllTheSame) {
    files.add(documentOf("first"));
    files.add(documentOf("second"));
    std::filesystem::create_directory(files.lockFile());
    Program program(folder.path());
    program.rules.load();
    EXPECT_EQ(program.ruleName(), "second");
    EXPECT_THAT(program.alert().value_or(""), HasSubstr("Changed rules are not kept: "));
    program.rules.goBack(1);
    EXPECT_EQ(program.ruleName(), "first");
    program.rules.changed(SessionKeeper::Time());
    program.rules.keepNow(SessionKeeper::Time());
    EXPECT_EQ(program.rules.file(), std::nullopt);
    EXPECT_EQ(readWholeFile(files.file(0)), documentOf("second"));
}

TEST_F(SessionRulesTest, AFolderThatCannotBeLookedIntoIsNoPlaceToKeepThem) {
    const auto endless = folder / "endless";
    std::filesystem::create_symlink(endless, endless);
    for (const auto& state : {endless, endless / "state", folder.path() / std::string(300, 'n')}) {
        Program program(state);
        program.rules.load();
        program.edit("swap");
        EXPECT_EQ(program.ruleName(), "swap");
        EXPECT_THAT(program.err.str(), HasSubstr("Changed rules are not kept: " + state.string()));
    }
}

TEST_F(SessionRulesTest, WithoutAHomeTheUserIsTold) {
    std::ostringstream err;
    Session session;
    UserMessages messages(err, session);
    SessionRules rules(session, messages);
    rules.keepIn(std::nullopt, "band");
    EXPECT_THAT(err.str(), HasSubstr("Neither XDG_STATE_HOME nor HOME is set"));
}

TEST_F(SessionRulesTest, TheHistoryNamesEachVersionAndWhatIsInIt) {
    EXPECT_EQ(historyText(files), "No rules have been kept yet.\n");
    files.add(documentOf("first"));
    files.add(documentOf("second"));
    damage(1);
    const auto text = historyText(files);
    EXPECT_THAT(text, testing::MatchesRegex("    newest   [0-9-]+ [0-9:]+   1 rule   .*band\\.json\n"
                                            "--go-back 1   [0-9-]+ [0-9:]+   damaged: .*band\\.1\\.json\n"));
}

}  // namespace
}  // namespace quillo
