// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <nlohmann/json.hpp>

#include "programs/CommandLineFixture.hpp"
#include "support/MIDIFileBytes.hpp"
#include "support/Presets.hpp"

namespace quillo {
namespace {

using namespace fixture;
using testing::HasSubstr;
using testing::IsEmpty;

class TestCommandTest : public CommandLineTest {
protected:
    /// A preset that sends controller 7 a while after each note, and its test.
    [[nodiscard]] std::string preset(const std::string& name, const std::string& test) const {
        static_cast<void>(folder.with(name + ".test", test));
        return folder.with(name + ".json", presetOf({controllerRule(onAnyNote(), 7, 300)}));
    }
};

const std::string right = "at 100 ms: 90 3c 64 \u2192 at 100 ms: 90 3c 64, at 400 ms: b0 07 01\n";
const std::string wrong = "# too loud\nat 0 ms: 90 3c 64 -> at 0 ms: 90 3c 64, at 300 ms: b0 07 7f\n";

TEST_F(TestCommandTest, PassesWhereWhatIsExpectedLeavesAndNothingElse) {
    const auto path = preset("p", right);
    const auto result = run({"test", path});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(result.out, path + ": passed\n1 passed, 0 different, 0 could not be read\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(TestCommandTest, ShowsWhatIsExpectedAndWhatLeavesSideBySideAndWhoSentIt) {
    const auto path = preset("p", wrong + "at 500 ms: fa\nat 600 ms: f8 -> at 600 ms: f8, at 600 ms: fc");
    const auto result = run({"test", path});
    const auto test = folder / "p.test";
    EXPECT_EQ(result.status, exitDifferent);
    EXPECT_EQ(
        result.out,
        path + ": different\n  " + test +
            ", line 2, at 300 ms: expected b0 07 7f  got b0 07 01, sent by rule 1 \"controller 7\"\n  " +
            test + ", line 3, at 500 ms: expected nothing   got fa, passed through\n  " + test +
            ", line 4, at 600 ms: expected fc        got nothing\n"
            "0 passed, 1 different, 0 could not be read\n");
}

TEST_F(TestCommandTest, SaysThatLoadingSentWhatWasNotExpected) {
    static_cast<void>(folder.with("p.test", std::string("at 0 ms: fa -> at 0 ms: fa")));
    EXPECT_THAT(run({"test", folder.with("p.json", presetOf({controllerRule(onLoad(), 7)}))}).out,
                HasSubstr("p.test, on load, at 0 ms: expected nothing   got b0 07 01, sent by rule 1"));
}

TEST_F(TestCommandTest, TestsThemAllAndEndsWithTheWorst) {
    const auto good = preset("good", right);
    const auto bad = preset("bad", wrong);
    const auto none = folder.with("none.json", presetOf({}));
    const auto both = run({"test", bad, good});
    EXPECT_EQ(both.status, exitDifferent);
    EXPECT_THAT(both.out, HasSubstr("1 passed, 1 different, 0 could not be read\n"));
    const auto all = run({"test", none, bad, good});
    EXPECT_EQ(all.status, exitTrouble);
    EXPECT_THAT(all.out, HasSubstr("1 passed, 1 different, 1 could not be read\n"));
    EXPECT_THAT(all.err, HasSubstr("none.test: cannot be opened"));
}

TEST_F(TestCommandTest, NamesTheLineThatIsNoTest) {
    const auto result = run({"test", preset("p", right + "at 500 ms: 90 3c -> nothing")});
    EXPECT_EQ(result.status, exitTrouble);
    EXPECT_EQ(result.err, "midi-quillo: " + (folder / "p.test") +
                              ": line 2: \"90 3c\": a message that begins with 90 has 3 bytes; here are 2\n");
}

TEST_F(TestCommandTest, NamesTheRuleThatNoProgramCouldRun) {
    const auto path = folder.with("p.json", presetOf({controllerRule(onLoad(), 7, -1)}));
    const auto result = run({"test", path});
    EXPECT_EQ(result.status, exitTrouble);
    EXPECT_EQ(result.err, "midi-quillo: " + path +
                              ": Rule 1 \"controller 7\": a delay is negative: -1 ms. Choose 0 or more.\n");
}

TEST_F(TestCommandTest, RecordsATestThatPasses) {
    const auto path = folder.with("p.json", presetOf({controllerRule(onAnyNote(), 7, 300)}));
    const auto take = folder.with("take.mid", oneTrackFile("83 60 90 3c 64 83 60 80 3c 40 00 ff 2f 00"));
    const auto recorded = run({"test", path, "--record", take});
    EXPECT_EQ(recorded.status, exitSuccess);
    EXPECT_EQ(recorded.err, (folder / "p.test") + ": 5 events recorded\n");
    const auto text = folder.read("p.test");
    EXPECT_EQ(std::string(text.begin(), text.end()), "on load \u2192 nothing\n"
                                                     "at 0 ms: transport start \u2192 nothing\n"
                                                     "at 500 ms: 90 3c 64\n"
                                                     "    \u2192 at 500 ms: 90 3c 64\n"
                                                     "    \u2192 at 800 ms: b0 07 01\n"
                                                     "at 1000 ms: 80 3c 40 \u2192 at 1000 ms: 80 3c 40\n"
                                                     "at 1001 ms: transport stop \u2192 nothing\n");
    EXPECT_EQ(run({"test", path}).status, exitSuccess);
}

TEST_F(TestCommandTest, SaysWhatOfTheRecordingNoRuleSees) {
    const auto path = folder.with("p.json", presetOf({}));
    const auto take = folder.with("take.mid", oneTrackFile("00 f0 02 43 f7 00 ff 2f 00"));
    EXPECT_EQ(run({"test", path, "--record", take}).err,
              "1 SysEx or escape event was left out, 3 bytes: rules never see them\n" + (folder / "p.test") +
                  ": 3 events recorded\n");
}

TEST_F(TestCommandTest, NeverReplacesATestWithoutForce) {
    const auto path = preset("p", wrong);
    const auto take = folder.with("take.mid", oneTrackFile("00 ff 2f 00"));
    const auto refused = run({"test", path, "--record", take});
    EXPECT_EQ(refused.status, exitTrouble);
    EXPECT_THAT(refused.err, HasSubstr("is there already; --force replaces it"));
    EXPECT_EQ(folder.readText("p.test"), wrong);
    EXPECT_EQ(run({"test", path, "--record", take, "--force"}).status, exitSuccess);
    EXPECT_EQ(run({"test", path}).status, exitSuccess);
}

TEST_F(TestCommandTest, AnswersScriptsInJSON) {
    const auto bad = preset("bad", wrong);
    const auto none = folder.with("none.json", presetOf({}));
    const auto result = run({"test", "--json", bad, none});
    EXPECT_EQ(result.status, exitTrouble);
    EXPECT_THAT(result.err, IsEmpty());
    const auto answer = nlohmann::json::parse(result.out);
    EXPECT_EQ(answer["unreadable"], 1);
    EXPECT_EQ(answer["different"], 1);
    EXPECT_EQ(answer["tests"][0],
              (nlohmann::json{{"preset", bad},
                              {"test", folder / "bad.test"},
                              {"result", "different"},
                              {"differences",
                               {{{"line", 2},
                                 {"ms", 300},
                                 {"expected", "b0 07 7f"},
                                 {"got", "b0 07 01"},
                                 {"rule", {{"number", 1}, {"name", "controller 7"}}}}}}}));
    EXPECT_EQ(answer["tests"][1]["result"], "unreadable");
    EXPECT_THAT(answer["tests"][1]["why"].get<std::string>(), HasSubstr("none.test: cannot be opened"));
}

TEST_F(TestCommandTest, WantsPresetsAndRecordsForOne) {
    EXPECT_EQ(run({"test"}).status, exitUsage);
    EXPECT_EQ(run({"test", "a.json", "b.json", "--record", "take.mid"}).status, exitUsage);
    EXPECT_EQ(run({"test", "a.json", "--record", "take.mid", "--json"}).status, exitUsage);
}

TEST_F(TestCommandTest, TakesNoTestForAPreset) {
    const auto path = folder.with("p.test", presetOf({}));
    const auto take = folder.with("take.mid", oneTrackFile("00 ff 2f 00"));
    const auto refused = run({"test", path, "--record", take, "--force"});
    EXPECT_EQ(refused.status, exitUsage);
    EXPECT_THAT(refused.err, HasSubstr("test takes presets, and " + path + " is a test"));
    EXPECT_EQ(folder.read("p.test"), presetOf({}));
}

/// The test that the verb's help shows, its lines behind two blanks.
TEST_F(TestCommandTest, ReadsTheTestThatItsHelpShows) {
    const auto text = run({"test", "--help"}).out;
    std::istringstream help(text.substr(text.find("A test is a text:\n")));
    std::string test;
    for (std::string line; std::getline(help, line) && !line.starts_with("Before");) {
        test += line.starts_with("  ") ? line + '\n' : "";
    }
    const auto path = folder.with("p.json", presetOf({}));
    static_cast<void>(folder.with("p.test", test));
    const auto result = run({"test", path});
    EXPECT_EQ(result.status, exitDifferent) << result.err;
    EXPECT_THAT(result.out, HasSubstr("line 6, at 450 ms: expected 81 3c 40  got nothing\n"));
}

}  // namespace
}  // namespace quillo
