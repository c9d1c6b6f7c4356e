// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <nlohmann/json.hpp>

#include "analysis/AskedEvent.hpp"
#include "persistence/PluginData.hpp"
#include "programs/CommandLineFixture.hpp"
#include "programs/HelpText.hpp"
#include "support/TestRules.hpp"
#include "words/PlainWords.hpp"

namespace quillo {
namespace {

using namespace test;
using fixture::CommandLineTest;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Transport = HostTransportTriggerVariantsV2;

class ExplainCommandTest : public CommandLineTest {
protected:
    /// Explains events to a preset of these rules.
    Run explain(std::vector<Rule> rules, std::vector<std::string> events) {
        events.insert(events.begin(),
                      {"explain", "--preset", folder.with("p.json", PluginData{std::move(rules)}.write())});
        return run(events);
    }

    std::string explained(std::vector<Rule> rules, const std::string& event) {
        const auto result = explain(std::move(rules), {event});
        EXPECT_EQ(result.status, exitSuccess);
        EXPECT_THAT(result.err, IsEmpty());
        return result.out;
    }
};

TEST_F(ExplainCommandTest, SaysOfEachRuleWhatItDoesOrWhatKeepsItFromIt) {
    EXPECT_EQ(
        explained({rule(onLoad(), send(noteOn(0, 1, 1)), "Reset"),
                   rule(onNoteOn(exactly(61)), send(noteOn(0, 1, 1)), "C sharp only"),
                   rule(onNoteOn(), send(protocol(StatusV2::noteOn, channel(1), triggerByte, byte(9)), 300),
                        "Echo"),
                   rule(onNoteOn(), send(programChange(triggerChannel, 2, byte(5))), "Sound")},
                  "90 3c 64"),
        "90 3c 64: note-on 60 (C3), velocity 100, channel 1\n"
        "  1  \"Reset\"         not asked    it fires only when the plug-in is loaded\n"
        "  2  \"C sharp only\"  passed over  it waits for note 61 (C♯3), this is note 60 (C3)\n"
        "  3  \"Echo\"          fired        sent 91 3c 09 after 300 ms\n"
        "                                  91 3c 09: note-on 60 (C3), velocity 9, channel 2\n"
        "  4  \"Sound\"         fired        sent b0 00 02, c0 05 at once\n"
        "                                  b0 00 02: controller 0 (Bank MSB), value 2, channel 1\n"
        "                                  c0 05: program 5, channel 1\n"
        "Result: no rule swallowed it: it is forwarded, after what the rules send at once.\n");
}

TEST_F(ExplainCommandTest, SaysWhereAPolicyStoppedTheEventAndWhoWasNeverTried) {
    EXPECT_EQ(explained({rule(onNoteOn(any, any, eatMatching), send(noteOn(1, 2, 3), 10), "Eat"),
                         rule(onNoteOn(), send(noteOn(0, 1, 1)), "Late")},
                        "903c64"),
              "90 3c 64: note-on 60 (C3), velocity 100, channel 1\n"
              "  1  \"Eat\"   fired        sent 91 02 03 after 10 ms, and consumed it\n"
              "                          91 02 03: note-on 2 (D-2), velocity 3, channel 2\n"
              "                          Consume matching: the event matched this rule\n"
              "  2  \"Late\"  not reached  rule 1 \"Eat\" consumed it\n"
              "Result: swallowed by rule 1 \"Eat\" (Consume matching). Only what the rules send goes out.\n");
}

TEST_F(ExplainCommandTest, SaysThatARuleSwallowsWhatItDoesNotMatch) {
    EXPECT_THAT(
        explained({rule(onNoteOn(any, any, eatNonMatching), send(noteOn(0, 1, 1)), "Only notes")}, "f8"),
        AllOf(HasSubstr("consumed it  it waits for Note On, this is timing clock\n"),
              HasSubstr("  Consume non-matching: the event did not match this rule\n"),
              HasSubstr("Result: swallowed by rule 1 \"Only notes\" (Consume non-matching). Nothing goes "
                        "out.\n")));
}

TEST_F(ExplainCommandTest, SaysThatAHostRuleCanSwallowAllMIDI) {
    EXPECT_THAT(
        explained({rule(onHost(Transport::Stop, eatNonMatching), send(noteOn(0, 1, 1)), "Reset"),
                   rule(onNoteOn(), send(noteOn(0, 1, 1)), "Echo")},
                  "90 3c 64"),
        AllOf(HasSubstr("consumed it  it waits for the host's transport to stop, this is a Note On\n"),
              HasSubstr("  Consume non-matching: a rule for the host's transport matches no "
                        "MIDI, so it swallows all of it\n"),
              HasSubstr("not reached  rule 1 \"Reset\" consumed it\n"),
              HasSubstr("Result: swallowed by rule 1 \"Reset\" (Consume non-matching). Nothing goes "
                        "out.\n")));
}

TEST_F(ExplainCommandTest, SaysThatAHostRuleStopsTheHostEventsThatItDoesNotMatch) {
    EXPECT_THAT(
        explained({rule(onHost(Transport::Stop, eatNonMatching), send(noteOn(0, 1, 1)), "Reset")},
                  "host start"),
        AllOf(HasSubstr("consumed it  it waits for the host's transport to stop, this is its start\n"),
              HasSubstr("  Consume non-matching: the event did not match this rule\n")));
}

TEST_F(ExplainCommandTest, DoesNotCountADelayedOutputAmongThoseAtOnce) {
    EXPECT_THAT(explained({rule(onMIDIStart(), send(noteOn(0, 1, 1), 5))}, "fa"),
                HasSubstr("velocity 1, channel 1\nResult: no rule swallowed it: it is forwarded.\n"));
}

TEST_F(ExplainCommandTest, SaysThatAMIDIRuleCanStopAllHostEvents) {
    EXPECT_THAT(
        explained({rule(onNoteOn(any, any, eatNonMatching), send(noteOn(0, 1, 1)), "Only notes"),
                   rule(onHost(Transport::Stop), send(noteOn(0, 1, 1)), "Reset")},
                  "host stop"),
        AllOf(HasSubstr("consumed it  it waits for Note On, this is the host's transport\n"),
              HasSubstr("  Consume non-matching: a rule for MIDI matches no host event, so it "
                        "stops all of them\n"),
              HasSubstr("not reached  rule 1 \"Only notes\" consumed it\n"),
              HasSubstr("Result: stopped by rule 1 \"Only notes\" (Consume non-matching). Nothing goes "
                        "out.\n")));
}

TEST_F(ExplainCommandTest, ExplainsHostEventsThatPassEveryRule) {
    const std::vector<Rule> rules{rule(onHost(Transport::Start), send(noteOn(0, 1, 1)), "Go")};
    EXPECT_THAT(explained(rules, "host start"),
                AllOf(StartsWith("host start: the host's transport starts\n"), HasSubstr("fired "),
                      HasSubstr("Result: it passed every rule. Only what the rules send goes out.\n")));
    EXPECT_THAT(
        explained(rules, "host stop"),
        AllOf(HasSubstr("passed over "), HasSubstr("Result: it passed every rule. Nothing goes out.\n")));
}

TEST_F(ExplainCommandTest, ExplainsLoading) {
    const std::vector<Rule> rules{rule(onLoad(), send(systemExclusive({0x7E})), "Reset"),
                                  rule(onNoteOn(any, any, eatNonMatching), send(noteOn(0, 1, 1)), "Echo")};
    EXPECT_EQ(explained(rules, "load"), "load: the plug-in is loaded\n"
                                        "  1  \"Reset\"  fired        sent f0 7e f7 at once\n"
                                        "                           f0 7e f7: system exclusive\n"
                                        "  2  \"Echo\"   not asked    it waits for MIDI, this is loading\n"
                                        "Result: each rule that waits for loading fires once.\n");
    EXPECT_THAT(explained({rules[1]}, "load"),
                HasSubstr("Result: no rule waits for loading. Nothing goes out.\n"));
}

TEST_F(ExplainCommandTest, ExplainsThatSystemExclusiveNeverComesToTheRules) {
    EXPECT_EQ(
        explained({rule(onNoteOn(), send(noteOn(0, 1, 1)))}, "f0 7e f7"),
        "f0 7e f7: system exclusive\n"
        "Result: dropped: incoming system exclusive is never shown to the rules and never forwarded.\n");
}

TEST_F(ExplainCommandTest, ExplainsAPresetWithoutRules) {
    EXPECT_EQ(explained({}, "fa"), "fa: MIDI Start\n"
                                   "  There are no rules.\n"
                                   "Result: no rule swallowed it: it is forwarded.\n");
}

TEST_F(ExplainCommandTest, ShowsAnOutputThatIsNoCompleteMessage) {
    EXPECT_THAT(
        explained({rule(onMIDIStart(), send(protocol(StatusV2::noteOn, channel(0), byte(60))))}, "fa"),
        HasSubstr("  90 3c: an incomplete or damaged MIDI message\n"));
}

TEST_F(ExplainCommandTest, AlignsNumbersAndShortensLongNames) {
    std::vector<Rule> rules(10, rule(onMIDIStart(), send(noteOn(0, 1, 1)), "♯"));
    rules[9].name = std::string(1000, 'n');
    const auto out = explained(rules, "f8");
    EXPECT_THAT(out, HasSubstr("\n   1  \"♯\"" + std::string(29, ' ') + "passed over  it waits"));
    EXPECT_THAT(out, HasSubstr("\n  10  \"" + std::string(27, 'n') + "…\"  passed over  it waits"));
}

TEST_F(ExplainCommandTest, ExplainsEventsInTheOrderGivenAndParted) {
    const auto result = explain({}, {"fa", "host stop", "load"});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(
        result.out,
        "fa: MIDI Start\n  There are no rules.\nResult: no rule swallowed it: it is forwarded.\n\n"
        "host stop: the host's transport stops\n  There are no rules.\nResult: it passed every rule. "
        "Nothing goes out.\n\n"
        "load: the plug-in is loaded\n  There are no rules.\nResult: no rule waits for loading. Nothing "
        "goes out.\n");
}

TEST_F(ExplainCommandTest, RejectsABadEventByItsNumberShowsTheFormsAndExplainsNothing) {
    const auto result = explain({}, {"fa", "90 3c"});
    EXPECT_EQ(result.status, exitUsage);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(
        result.err,
        AllOf(StartsWith("midi-quillo: event 2, \"90 3c\": a message that begins with 90 has 3 bytes; "
                         "here are 2\n"),
              HasSubstr(std::string(askedEventForms)), HasSubstr(std::string(usageOf("explain")))));
}

TEST_F(ExplainCommandTest, WantsAPresetAndAnEvent) {
    EXPECT_EQ(run({"explain", "fa"}).status, exitUsage);
    const auto result = explain({}, {});
    EXPECT_EQ(result.status, exitUsage);
    EXPECT_THAT(result.err, HasSubstr(std::string(askedEventForms)));
}

TEST_F(ExplainCommandTest, FailsAsTheOtherVerbsDo) {
    EXPECT_EQ(run({"explain", "--preset", folder / "none.json", "fa"}).status, exitNoInput);
    EXPECT_EQ(run({"explain", "--preset", folder.with("bad.json", std::string("{")), "fa"}).status,
              exitBadData);
}

TEST_F(ExplainCommandTest, NamesThePresetThatCannotRun) {
    const auto result = explain({rule(onLoad(), send(noteOn(0, 1, 1), -5))}, {"fa"});
    EXPECT_EQ(result.status, exitBadData);
    EXPECT_THAT(result.err, StartsWith("midi-quillo: " + (folder / "p.json") +
                                       ": Rule 1: a delay is negative: -5 ms. Choose 0 or more.\n"));
}

/// The words of a text, each parted by one blank from the next.
std::string unwrapped(const std::string& text) {
    std::istringstream in(text);
    std::string words;
    for (std::string word; in >> word;) {
        words += word + " ";
    }
    return words;
}

TEST_F(ExplainCommandTest, AnswersAsItsHelpSays) {
    const auto answer =
        explained({rule(onHost(Transport::Stop, eatNonMatching), send(noteOn(0, 1, 1)), "Reset"),
                   rule(onNoteOn(), send(noteOn(0, 1, 1)), "Echo")},
                  "90 3c 64");
    EXPECT_THAT(unwrapped(run({"explain", "--help"}).out), HasSubstr(unwrapped(answer)));
}

TEST_F(ExplainCommandTest, SaysOfARuleThatIsSwitchedOffThatItIs) {
    const auto answer = rule(onNoteOn(), send(noteOn(1, 2, 3)), "on");
    auto off = answer;
    off.name = "Silence at stop";
    const auto preset = folder.with("p.json", PluginData{{answer}, {{0, off}, {1, off}}}.write());
    EXPECT_EQ(run({"explain", "--preset", preset, "90 3c 64"}).out,
              "90 3c 64: note-on 60 (C3), velocity 100, channel 1\n"
              "  -  \"Silence at stop\"  switched off\n"
              "  1  \"on\"               fired        sent 91 02 03 at once\n"
              "                                     91 02 03: note-on 2 (D-2), velocity 3, channel 2\n"
              "  -  \"Silence at stop\"  switched off\n"
              "Result: no rule swallowed it: it is forwarded, after what the rules send at once.\n");
}

TEST_F(ExplainCommandTest, TellsScriptsWhichRulesAreSwitchedOff) {
    const auto off = rule(onNoteOn(), send(noteOn(1, 2, 3)), "Silence at stop");
    const auto preset = folder.with("p.json", PluginData{{}, {{0, off}}}.write());
    const auto answer = nlohmann::json::parse(run({"explain", "--preset", preset, "--json", "load"}).out);
    EXPECT_EQ(answer["switchedOff"],
              (nlohmann::json::array(
                  {{{"behindRule", 0}, {"name", "Silence at stop"}, {"words", inPlainWords(off)}}})));
}

TEST_F(ExplainCommandTest, ReadsThePresetFromStandardInput) {
    const auto document = PluginData{{rule(onNoteOn(), send(noteOn(1, 2, 3)), "on")}}.write();
    EXPECT_THAT(run({"explain", "--preset", "-", "90 3c 64"}, {document.begin(), document.end()}).out,
                HasSubstr("\n  1  \"on\"  fired "));
}

TEST_F(ExplainCommandTest, AnswersScriptsInJSON) {
    const auto result = explain({rule(onNoteOn(exactly(1)), send(noteOn(0, 1, 1)), "Other"),
                                 rule(onNoteOn(any, any, eatMatching), send(noteOn(1, 2, 3), 10), "Eat")},
                                {"90 3c 64", "--json", "load"});
    EXPECT_EQ(result.status, exitSuccess);
    const auto answer = nlohmann::json::parse(result.out);
    ASSERT_EQ(answer["events"].size(), 2U);
    EXPECT_EQ(answer["events"][0],
              (nlohmann::json{{"event", "90 3c 64: note-on 60 (C3), velocity 100, channel 1"},
                              {"forwarded", false},
                              {"consumedByRule", 2},
                              {"rules",
                               {{{"number", 1},
                                 {"name", "Other"},
                                 {"verdict", "passed over"},
                                 {"why", "it waits for note 1 (C♯-2), this is note 60 (C3)"}},
                                {{"number", 2},
                                 {"name", "Eat"},
                                 {"verdict", "fired"},
                                 {"why", "sent 91 02 03 after 10 ms, and consumed it"},
                                 {"afterMs", 10},
                                 {"sent", {"91 02 03"}}}}}}));
    EXPECT_EQ(answer["events"][1]["consumedByRule"], nullptr);
}

}  // namespace
}  // namespace quillo
