// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ProblemInWords.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "persistence/PluginData.hpp"
#include "rules/RuleLabel.hpp"

namespace quillo {
namespace {

std::string wordsFor(std::string_view text) {
    const std::vector<std::uint8_t> document(text.begin(), text.end());
    try {
        static_cast<void>(PluginData::read(document));
    } catch (const DecodingError& error) {
        return problemInWords(error, document);
    }
    return "it can be read";
}

/// What is said of a rule "Echo" with this output and this trigger, behind an empty rule.
std::string wordsFor(const std::string& output, const std::string& trigger) {
    return wordsFor(R"({"rules":[{"output":{"message":{"SystemExclusive":{"_0":[]}},"delay":{"ms":0}},)"
                    R"("trigger":{"OnLoad":{}},"name":""},{"output":)" +
                    output + R"(,"trigger":)" + trigger + R"(,"name":"Echo"}]})");
}

std::string sending(const std::string& message) {
    return wordsFor(R"({"message":)" + message + R"(,"delay":{"ms":0}})", R"({"OnLoad":{}})");
}

std::string waitingFor(const std::string& voice, const std::string& channel = R"({"AnyValue":{}})",
                       const std::string& policy = R"("passTrough":{"PassThrough":{}})") {
    return wordsFor(R"({"message":{"SystemExclusive":{"_0":[]}},"delay":{"ms":0}})",
                    R"({"MessageBased":{"_0":{"variants":{"VoiceCategory":{"_0":{"variants":)" + voice +
                        R"(,"channel":)" + channel + "}}}," + policy + "}}}");
}

const std::string tooGreat = R"({"Value":{"_0":300}})";
const std::string any = R"({"AnyValue":{}})";
const std::string status = R"({"WithChannel":{"_0":144,"_1":{"Value":{"_0":0}}}})";
const std::string outOfRange = "expected a whole number from 0 to 255, found 300.";

TEST(RuleLabel, IsTheNumberFromOneAndTheNameFitForALine) {
    EXPECT_EQ(ruleLabel(0), "Rule 1");
    EXPECT_EQ(ruleLabel(3, "Echo"), R"(Rule 4 "Echo")");
    EXPECT_EQ(ruleLabel(3, "a\n\"b\""), R"(Rule 4 "a\n\"b\"")");
    EXPECT_EQ(ruleLabel(0, std::string(100, 'x')), "Rule 1 \"" + std::string(37, 'x') + "…\"");
}

TEST(ProblemInWords, SaysThatADocumentHoldsNoRulesAtAll) {
    for (const auto* document : {"{}", "5", R"({"rules":5})", ""}) {
        EXPECT_EQ(wordsFor(document), "This is not a preset of MIDI Quillo, or it is damaged.");
    }
}

TEST(ProblemInWords, NamesTheRuleAndTheFieldsOfItsMessageAsTheEditorDoes) {
    const std::string value = R"({"Value":{"_0":1}})";
    const auto protocol = [](const std::string& first, const std::string& second, const std::string& third) {
        return sending(R"({"Protocol":{"_0":)" + first + R"(,"_1":)" + second + R"(,"_2":)" + third + "}}");
    };
    EXPECT_EQ(protocol(status, tooGreat, value),
              "Rule 2 \"Echo\", first value of the message: " + outOfRange);
    EXPECT_EQ(protocol(status, value, tooGreat),
              "Rule 2 \"Echo\", second value of the message: " + outOfRange);
    EXPECT_EQ(protocol(R"({"WithChannel":{"_0":144,"_1":{"Value":{"_0":300}}}})", value, value),
              "Rule 2 \"Echo\", Ch of the message: " + outOfRange);
    EXPECT_EQ(protocol(R"({"JustStatus":{"_0":1}})", value, value),
              "Rule 2 \"Echo\", Type of the message: expected one of 144, 128, 176, 192, 208, 224, found 1.");
    EXPECT_EQ(sending(R"({"ProgramChange":{"_0":{"Value":{"_0":0}},"_1":300,"_2":{"Value":{"_0":0}}}})"),
              "Rule 2 \"Echo\", Bank: " + outOfRange);
    EXPECT_EQ(sending(R"({"SystemExclusive":{"_0":[300]}})"), "Rule 2 \"Echo\", Bytes (hex): " + outOfRange);
    EXPECT_EQ(wordsFor(R"({"message":{"SystemExclusive":{"_0":[]}},"delay":{}})", R"({"OnLoad":{}})"),
              R"(Rule 2 "Echo", Delay (ms): missing key "ms".)");
}

TEST(ProblemInWords, NamesTheFieldsOfItsTrigger) {
    EXPECT_EQ(waitingFor(R"({"NoteOn":{"_0":)" + tooGreat + "}}"),
              "Rule 2 \"Echo\", Note of the trigger: " + outOfRange);
    EXPECT_EQ(waitingFor(R"({"ControlChange":{"_0":300,"_1":)" + any + "}}"),
              "Rule 2 \"Echo\", Controller of the trigger: " + outOfRange);
    EXPECT_EQ(waitingFor(R"({"ControlChange":{"_0":1,"_1":)" + tooGreat + "}}"),
              "Rule 2 \"Echo\", Value of the trigger: " + outOfRange);
    EXPECT_EQ(waitingFor(R"({"ProgramChange":{"_0":)" + tooGreat + "}}"),
              "Rule 2 \"Echo\", Program of the trigger: " + outOfRange);
    EXPECT_EQ(waitingFor(R"({"NoteOn":{"_0":)" + any + "}}", tooGreat),
              "Rule 2 \"Echo\", Ch of the trigger: " + outOfRange);
    EXPECT_EQ(waitingFor(R"({"NoteOn":{"_0":)" + any + "}}", any, R"("passThrough":{"PassThrough":{}})"),
              R"(Rule 2 "Echo", Incoming: missing key "passTrough".)");
}

TEST(ProblemInWords, KeepsTheDecodersOwnTextBehindRuleAndField) {
    EXPECT_EQ(
        sending(R"({"Bell":{}})"),
        "Rule 2 \"Echo\", message: Invalid number of keys found, expected one. expected \"Protocol\" or "
        "\"ProgramChange\" or \"SystemExclusive\".");
}

TEST(ProblemInWords, NamesWhatTheWholeRuleLacks) {
    EXPECT_EQ(wordsFor(R"({"rules":[{"name":"Echo","trigger":{"OnLoad":{}}}]})"),
              R"(Rule 1 "Echo", message: missing key "output".)");
}

TEST(ProblemInWords, GivesTheNumberAloneWhereThereIsNoName) {
    EXPECT_EQ(wordsFor(R"({"rules":[5]})"), "Rule 1: expected an object, found 5.");
    EXPECT_EQ(wordsFor(R"({"rules":[{"name":5,"output":{}}]})").substr(0, 16), "Rule 1, message:");
    EXPECT_EQ(wordsFor("[5]"), "Rule 1: expected an object, found 5.");
}

TEST(ProblemInWords, NamesARuleThatIsSwitchedOff) {
    const std::string rule = R"({"output":{"message":{"SystemExclusive":{"_0":[]}},"delay":{"ms":0}},)"
                             R"("trigger":{"OnLoad":{}},"name":"Echo"})";
    const auto shelved = [](const std::string& element) {
        return wordsFor(R"({"rules":[],"shelf":[)" + element + "]}");
    };
    EXPECT_EQ(shelved(R"({"place":7,"rule":)" + rule + "}"),
              R"(Switched-off rule 1 "Echo": expected a place from 0 to 0, found 7.)");
    EXPECT_EQ(shelved(R"({"place":0,"rule":{"name":"Echo","trigger":{"OnLoad":{}}}})"),
              R"(Switched-off rule 1 "Echo", message: missing key "output".)");
    EXPECT_EQ(
        shelved(R"({"place":0,"rule":{"name":"Echo","output":{"message":{},"delay":{}}}})").substr(0, 36),
        "Switched-off rule 1 \"Echo\", message:");
    EXPECT_EQ(shelved(R"({"place":0})"), R"(Switched-off rule 1: missing key "rule".)");
    EXPECT_EQ(shelved("5"), "Switched-off rule 1: expected an object, found 5.");
    EXPECT_EQ(wordsFor(R"({"rules":[],"shelf":5})"),
              "The list of the switched-off rules: expected an array, found 5.");
}

TEST(ProblemInWords, CountsARuleAmongAllAsTheEditorDoes) {
    const auto behind = [](const std::string& shelf) {
        return wordsFor(R"({"rules":[{"output":{"message":{"SystemExclusive":{"_0":[]}},"delay":{"ms":1.5}},)"
                        R"("trigger":{"OnLoad":{}},"name":"Echo"}],"shelf":)" +
                        shelf + "}")
            .substr(0, 13);
    };
    EXPECT_EQ(behind(R"([{"place":0},{"place":0}])"), R"(Rule 3 "Echo")");
    EXPECT_EQ(behind(R"([{"place":0},{"place":1}])"), R"(Rule 2 "Echo")");
    EXPECT_EQ(behind(R"([{"place":-1},{"place":"0"},5,{}])"), R"(Rule 1 "Echo")");
    EXPECT_EQ(behind("{}"), R"(Rule 1 "Echo")");
}

/// Whether the error of a document that cannot be read is about one of its rules.
bool isAboutRuleOf(std::string_view text) {
    const std::vector<std::uint8_t> document(text.begin(), text.end());
    try {
        static_cast<void>(PluginData::read(document));
    } catch (const DecodingError& error) {
        return isAboutRule(error);
    }
    throw std::logic_error("it can be read");
}

TEST(ProblemInWords, IsAboutARuleOrAboutTheWholeDocument) {
    EXPECT_TRUE(isAboutRuleOf(R"({"rules":[{"name":5,"output":{}}]})"));
    EXPECT_TRUE(isAboutRuleOf(R"({"rules":[],"shelf":[5]})"));
    EXPECT_TRUE(isAboutRuleOf(R"({"rules":[],"shelf":5})"));
    EXPECT_FALSE(isAboutRuleOf(R"({"rules":5})"));
    EXPECT_FALSE(isAboutRuleOf("{"));
}

}  // namespace
}  // namespace quillo
