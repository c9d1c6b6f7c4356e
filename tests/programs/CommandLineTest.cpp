// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/CommandLine.hpp"

#include "programs/CommandLineFixture.hpp"
#include "programs/HelpText.hpp"

namespace quillo {
namespace {

using fixture::CommandLineTest;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::array allVerbs{"render",  "check",  "explain", "diff", "test",
                              "presets", "schema", "import",  "host"};

TEST_F(CommandLineTest, WithoutAVerbShowsTheUsageOnTheErrorStream) {
    const auto result = run({});
    EXPECT_EQ(result.status, exitUsage);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err,
                AllOf(StartsWith("midi-quillo: no verb given\n"), HasSubstr("Usage: midi-quillo VERB")));
}

TEST_F(CommandLineTest, WithAnUnknownVerbNamesItAndShowsTheUsage) {
    const auto result = run({"sing"});
    EXPECT_EQ(result.status, exitUsage);
    EXPECT_THAT(result.err, AllOf(StartsWith("midi-quillo: there is no verb \"sing\"\n"),
                                  HasSubstr("Usage: midi-quillo VERB")));
}

TEST_F(CommandLineTest, WithWrongArgumentsShowsTheUsageOfTheVerb) {
    const auto result = run({"render", "--frobnicate"});
    EXPECT_EQ(result.status, exitUsage);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "midi-quillo: unknown option --frobnicate\n" + std::string(usageOf("render")) +
                              "Try: midi-quillo help render\n");
}

TEST_F(CommandLineTest, ExplainsItselfOnTheOutputStream) {
    for (const auto& words : {std::vector<std::string>{"--help"}, {"help"}}) {
        const auto result = run(words);
        EXPECT_EQ(result.status, exitSuccess);
        EXPECT_THAT(result.out, AllOf(StartsWith("Usage: midi-quillo VERB"), HasSubstr("render"),
                                      HasSubstr("check"), HasSubstr("Example")));
        EXPECT_THAT(result.err, IsEmpty());
    }
}

TEST_F(CommandLineTest, ExplainsEachVerbWithExamples) {
    for (const std::string verb : allVerbs) {
        for (const auto& words :
             {std::vector<std::string>{"help", verb}, {verb, "--help"}, {verb, "a", "--help", "b"}}) {
            const auto result = run(words);
            EXPECT_EQ(result.status, exitSuccess);
            EXPECT_THAT(result.out, AllOf(StartsWith("Usage: midi-quillo " + verb), HasSubstr("\nExample"),
                                          HasSubstr("\n  midi-quillo " + verb)));
        }
    }
}

TEST_F(CommandLineTest, CannotExplainWhatIsNoVerb) {
    const auto result = run({"help", "sing"});
    EXPECT_EQ(result.status, exitUsage);
    EXPECT_THAT(result.err, HasSubstr("there is no verb \"sing\""));
}

TEST_F(CommandLineTest, PlaysAScriptFromStandardInput) {
    const auto result = run({"host"}, "{\"do\":\"queue\"}\n");
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(result.out, "{\"delayed\":0}\n");
}

TEST_F(CommandLineTest, PlaysAScriptFromAFile) {
    const auto script = folder.with("script", std::string("{\"do\":\"queue\"}\n{\"do\":\"deallocate\"}\n"));
    const auto result = run({"host", script}, "not a script");
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(result.out, "{\"delayed\":0}\n{\"deallocated\":true}\n");
}

TEST_F(CommandLineTest, ReturnsTheStatusOfAScript) {
    EXPECT_EQ(run({"host"}, "not a script\n").status, exitBadData);
    EXPECT_EQ(run({"host"}, "{\"do\":\"restore\",\"dictionary\":{}}\n").status, exitFatal);
}

TEST_F(CommandLineTest, CannotPlayAScriptThatCannotBeRead) {
    const auto result = run({"host", folder / "none"});
    EXPECT_EQ(result.status, exitNoInput);
    EXPECT_THAT(result.err, HasSubstr(folder / "none"));
    EXPECT_EQ(run({"host", folder / "."}).status, exitNoInput);
}

TEST_F(CommandLineTest, PlaysOneScriptWithoutOptions) {
    EXPECT_EQ(run({"host", "a", "b"}).status, exitUsage);
    EXPECT_EQ(run({"host", "--trace"}).status, exitUsage);
}

TEST_F(CommandLineTest, FailsWhenItsOutputIsNotTaken) {
    std::istringstream in;
    std::ostream nowhere(nullptr);
    std::ostringstream err;
    const std::vector<std::string> words{"--version"};
    EXPECT_EQ(runCommandLine(words, Console{in, nowhere, err}), exitCannotCreate);
    EXPECT_EQ(err.str(), "midi-quillo: standard output cannot be written\n");
}

TEST_F(CommandLineTest, ItsHelpFitsATerminal) {
    std::vector<std::string_view> texts{generalHelp()};
    for (const auto* verb : allVerbs) {
        texts.push_back(helpFor(verb).value());
    }
    for (const auto text : texts) {
        std::istringstream lines{std::string(text)};
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(line.size(), 80U) << line;
        }
    }
}

/// The lines of the help for `host` that are a script.
std::string scriptOfTheHelp() {
    std::istringstream lines{std::string(*helpFor("host"))};
    std::string script;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("  {")) {
            script += line + '\n';
        }
    }
    return script;
}

TEST_F(CommandLineTest, TheScriptThatItsHelpShowsWorks) {
    const auto result = run({"host"}, scriptOfTheHelp());
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(result.out, R"({"allocated":true}
{"transport":true}
{"in":"[0] AU Host Start"}
{"in":"[4] fa"}
{"midi":{"time":4,"cable":0,"bytes":[250]}}
{"out":"[4] fa"}
{"status":0}
)");
}

TEST_F(CommandLineTest, NamesItsVersion) {
    const auto result = run({"--version"});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_THAT(result.out, testing::MatchesRegex("midi-quillo [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

}  // namespace
}  // namespace quillo
