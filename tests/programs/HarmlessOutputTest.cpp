// SPDX-License-Identifier: GPL-3.0-or-later
// Nothing from outside acts on the terminal that a verb writes to.
#include <string>
#include <vector>

#include "persistence/PluginData.hpp"
#include "platform/QuotedText.hpp"
#include "programs/CommandLineFixture.hpp"
#include "support/MIDIFileBytes.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using namespace std::string_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

/// Clears the screen, cuts the text, breaks the line and turns its direction.
const std::string attack = "a\x1b[2J\0b\nc\x7f\u009b2J\u202e\u2066\u2028"s;
const std::string shown = R"(a\u001b[2J\u0000b\nc\u007f\u009b2J\u202e\u2066\u2028)";

/// The same without what no path and no argument can hold.
const std::string attackingPath = "a\x1b[2Jb\nc\x7f\u009b2J\u202e\u2066\u2028\xff";
const std::string shownPath = R"(a\u001b[2Jb\nc\u007f\u009b2J\u202e\u2066\u2028\xff)";

class HarmlessOutput : public fixture::CommandLineTest {
protected:
    std::string presetOf(const Rule& rule) { return folder.with(attackingPath, PluginData{{rule}}.write()); }

    /// All that a run writes; no line of it may hold anything that has to be escaped.
    std::string written(const std::vector<std::string>& words, const std::string& input = {}) {
        const auto result = run(words, input);
        const auto text = result.out + result.err;
        EXPECT_EQ(text, escapedLines(text));
        return text;
    }
};

Rule harmlessRule() {
    return rule(onNoteOn(), send(noteOn(0, 1, 1)), attack);
}

/// The unit refuses to install it.
Rule fatalRule() {
    return rule(onLoad(), send(protocol(StatusV2::noteOn, channel(1), triggerByte, byte(1))), attack);
}

TEST_F(HarmlessOutput, NamesOfRulesInCheck) {
    EXPECT_THAT(written({"check", "--advice", presetOf(harmlessRule())}),
                AllOf(HasSubstr("/" + shownPath + ": generation 3"), HasSubstr("1. \"" + shown + "\": ")));
}

TEST_F(HarmlessOutput, NamesOfRulesInFatalErrors) {
    const auto preset = presetOf(fatalRule());
    const auto midi = folder.with("in.mid", fixture::oneTrackFile("00 ff 2f 00"));
    EXPECT_THAT(written({"check", "--advice", preset}), HasSubstr(R"("a\u001b[2J\u0000b\nc\u007f)"));
    EXPECT_THAT(written({"explain", "--preset", preset, "90 3c 64"}),
                HasSubstr(R"("a\u001b[2J\u0000b\nc\u007f)"));
    EXPECT_THAT(written({"render", midi, folder / "out.mid", "--preset", preset}),
                HasSubstr(R"("a\u001b[2J\u0000b\nc\u007f)"));
}

TEST_F(HarmlessOutput, NamesOfRulesInExplain) {
    EXPECT_THAT(written({"explain", "--preset", presetOf(harmlessRule()), "90 3c 64"}),
                HasSubstr("a\\u001b[2J"));
}

TEST_F(HarmlessOutput, NamesOfRulesAndFilesInTestAndDiffAndInJSON) {
    const auto preset = folder.with(attackingPath + ".json", PluginData{{harmlessRule()}}.write());
    const auto empty = folder.with("empty.json", PluginData{}.write());
    const auto midi = folder.with("in.mid", fixture::oneTrackFile("00 90 3c 64 00 ff 2f 00"));
    static_cast<void>(folder.with(attackingPath + ".test", std::string("at 0 ms: 90 3c 64")));
    for (const auto& words :
         std::vector<std::vector<std::string>>{{"test", preset},
                                               {"test", preset, "--json"},
                                               {"diff", preset, empty, "--with", midi},
                                               {"diff", preset, empty, "--with", midi, "--json"},
                                               {"check", preset, "--json"},
                                               {"explain", "--preset", preset, "90 3c 64", "--json"}}) {
        EXPECT_THAT(written(words), HasSubstr(R"(a\u001b[2J\u0000b\nc\u007f)")) << words.front();
    }
}

TEST_F(HarmlessOutput, NamesOfFiles) {
    const auto path = folder / attackingPath;
    const auto preset = folder.with("p.json", PluginData{}.write());
    const auto midi = folder.with("in.mid", fixture::oneTrackFile("00 ff 2f 00"));
    for (const auto& words :
         std::vector<std::vector<std::string>>{{"check", path},
                                               {"check", preset, "--write", path},
                                               {"check", preset, "--write", path},
                                               {"explain", "--preset", path + "?", "load"},
                                               {"render", path, "out.mid", "--preset", preset},
                                               {"render", midi, path, "--preset", preset},
                                               {"render", midi, path, "--preset", preset, "--force"},
                                               {"host", path + "?"}}) {
        EXPECT_THAT(written(words), HasSubstr("/" + shownPath)) << words.front();
    }
}

TEST_F(HarmlessOutput, WordsThatAreNotUnderstood) {
    EXPECT_THAT(written({attackingPath}),
                StartsWith("midi-quillo: there is no verb \"" + shownPath + "\"\n"));
    EXPECT_THAT(written({"help", attackingPath}), HasSubstr("\"" + shownPath + "\""));
    EXPECT_THAT(written({"check", "--" + attackingPath}), HasSubstr("unknown option --" + shownPath));
    EXPECT_THAT(written({"render", "a", "b", "--preset=c", "--tail=" + attackingPath}),
                HasSubstr("\"" + shownPath + "\""));
    EXPECT_THAT(written({"explain", "--preset=c", attackingPath}), HasSubstr("\"" + shownPath + "\""));
}

TEST_F(HarmlessOutput, ActionsOfAScript) {
    EXPECT_THAT(written({"host"}, R"({"do":"a\u001b[2J\u0000b\nc\u007f\u009b2J\u202e\u2066\u2028"})"),
                AllOf(StartsWith("line 1: "), HasSubstr("\"" + shown + "\"")));
}

/// The escapes are those of JSON: a reader of the answer gets what was sent.
TEST_F(HarmlessOutput, AnswersOfAScript) {
    const auto document = PluginData{{harmlessRule()}}.write();
    const auto text = std::string(document.begin(), document.end());
    const auto answers = written({"host"}, R"({"do":"install","rules":)" + text.substr(9, text.size() - 10) +
                                               "}\n{\"do\":\"save\"}\n");
    EXPECT_THAT(answers, HasSubstr(R"(\u007f\u009b2J\u202e\u2066\u2028)"));
    EXPECT_THAT(written({"host"}, answers.substr(answers.find('\n') + 1).replace(1, 0, R"("do":"restore",)")),
                StartsWith(R"({"restored":1})"));
}

}  // namespace
}  // namespace quillo
