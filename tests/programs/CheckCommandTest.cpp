// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <nlohmann/json.hpp>

#include "programs/CommandLineFixture.hpp"
#include "support/Presets.hpp"
#include "words/PlainWords.hpp"

namespace quillo {
namespace {

using namespace fixture;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using CheckCommandTest = CommandLineTest;

const std::string nameless =
    R"({"output":{"message":{"SystemExclusive":{"_0":[]}},"delay":{"ms":0}},"trigger":{"OnLoad":{}}})";

Data twoRules() {
    return presetOf({controllerRule(onLoad(), 7), controllerRule(onAnyNote(), 8, 250)});
}

TEST_F(CheckCommandTest, SaysWhatThePresetIsAndOneRuleALine) {
    const auto path = folder.with("p.json", twoRules());
    const auto result = run({"check", path});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(
        result.out,
        path + ": generation 3 (current), 2 rules\n"
               "1. \"controller 7\": when the plug-in is loaded, send controller 7 (Volume) with value 1 on "
               "channel 1 "
               "at once.\n"
               "2. \"controller 8\": when any note-on arrives on any channel (pass through), send controller "
               "8 (Balance) with value 1 on channel 1 after 250 ms.\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(CheckCommandTest, SaysARunOfRulesInOneLineUnlessAskedToUnfoldIt) {
    using namespace test;
    const auto split = [](std::uint8_t note) {
        return rule(onNoteOn(exactly(note), exactly(0), PassThroughV2::EatMatching),
                    send(noteOn(1, static_cast<std::uint8_t>(note + 12), 100)), "split");
    };
    const auto path = folder.with("p.json", presetOf({controllerRule(onLoad(), 7), split(36), split(37),
                                                      controllerRule(onAnyNote(), 8)}));
    const auto folded = run({"check", path}).out;
    EXPECT_THAT(folded,
                HasSubstr("\n2-3. \"split\", notes C1 to C\u266F1, 2 rules: when note-on 36 (C1) to 37 "
                          "(C\u266F1) arrives on channel 1 (consume matching), send note-on 48 (C2) to 49 "
                          "(C\u266F2) with velocity 100 on channel 2 at once.\n4. \"controller 8\""));
    const auto unfolded = run({"check", "--unfold", path}).out;
    EXPECT_THAT(unfolded, AllOf(HasSubstr("\n2. \"split\": when note-on 36 (C1) arrives"),
                                HasSubstr("\n3. \"split\": when note-on 37 (C\u266F1) arrives"),
                                HasSubstr("\n4. \"controller 8\"")));
}

TEST_F(CheckCommandTest, NamesTheRulesThatAreSwitchedOffAndSaysWhereTheyStand) {
    const auto volume = controllerRule(onLoad(), 7);
    const auto document = PluginData{{volume}, {{0, controllerRule(onLoad(), 8)}, {1, volume}}}.write();
    const auto path = folder.with("p.json", document);
    EXPECT_EQ(
        run({"check", path}).out,
        path + ": generation 3 (current), 1 rule, 2 switched off\n"
               "1. \"controller 7\": when the plug-in is loaded, send controller 7 (Volume) with value 1 on "
               "channel 1 at once.\n"
               "Switched off:\n"
               "  at the beginning: \"controller 8\": when the plug-in is loaded, send controller 8 "
               "(Balance) with value 1 on channel 1 at once.\n"
               "  behind rule 1: \"controller 7\": when the plug-in is loaded, send controller 7 (Volume) "
               "with value 1 on channel 1 at once.\n");
    const std::string copy = folder / "copy.json";
    EXPECT_EQ(run({"check", path, "--write", copy}).status, exitSuccess);
    EXPECT_EQ(folder.read("copy.json"), document);
}

TEST_F(CheckCommandTest, SaysARunThatIsSwitchedOffInOneLineUnlessItsRulesStandApart) {
    using namespace test;
    const auto split = [](std::uint8_t note) {
        return rule(onNoteOn(exactly(note), exactly(0), PassThroughV2::EatMatching),
                    send(noteOn(1, static_cast<std::uint8_t>(note + 12), 100)), "split");
    };
    const auto path = folder.with(
        "p.json",
        PluginData{{controllerRule(onLoad(), 7)}, {{0, split(36)}, {1, split(37)}, {1, split(38)}}}.write());
    EXPECT_THAT(run({"check", path}).out,
                AllOf(HasSubstr("\n  at the beginning: \"split\": when note-on 36 (C1) arrives"),
                      HasSubstr("\n  behind rule 1: \"split\", notes C♯1 to D1, 2 rules: ")));
    EXPECT_THAT(run({"check", "--unfold", path}).out,
                HasSubstr("\n  behind rule 1: \"split\": when note-on 38 (D1) arrives"));
}

TEST_F(CheckCommandTest, ADamagedShelfIsABadPreset) {
    const auto result =
        run({"check", folder.with("p.json", std::string(R"({"rules":[],"shelf":[{"place":1}]})"))});
    EXPECT_EQ(result.status, exitBadPreset);
    EXPECT_THAT(result.err, HasSubstr(R"(shelf[0]: missing key "rule")"));
}

TEST_F(CheckCommandTest, NamesOlderGenerations) {
    const auto result = run({"check", folder.with("p.json", "[" + nameless + "]")});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_THAT(result.out, AllOf(HasSubstr(": generation 2 (rules without names), 1 rule\n"),
                                  HasSubstr("1. \"Message #1\": when the plug-in is loaded")));
}

TEST(PresetDescription, CountsTheRulesOfTheOldestGeneration) {
    const std::vector<Rule> rules{controllerRule(onLoad(), 1), controllerRule(onLoad(), 2)};
    const auto described = [&](ReadDocument::Form form, std::size_t migrated) {
        return describe({{rules}, form, migrated});
    };
    EXPECT_EQ(described(ReadDocument::Form::current, 0), "generation 3 (current), 2 rules");
    EXPECT_EQ(described(ReadDocument::Form::bareArray, 0), "generation 2 (rules without names), 2 rules");
    EXPECT_EQ(described(ReadDocument::Form::bareArray, 1),
              "generations 1 and 2 mixed (1 of the oldest), 2 rules");
    EXPECT_EQ(described(ReadDocument::Form::bareArray, 2), "generation 1 (the oldest), 2 rules");
}

/// A rule called "odd" whose message has a status of its own and these data bytes.
Rule oddRule(StatusV2 status, GenericByteV2 byte1) {
    auto odd =
        loadRule(RuleOutputVariantsV2::Protocol{StatusByteV2::JustStatus{status}, byte1, std::nullopt});
    odd.trigger = onAnyNote();
    odd.name = "odd";
    return odd;
}

TEST_F(CheckCommandTest, NamesARuleThatTheEditorCannotHoldAsItIs) {
    const auto path =
        folder.with("p.json", presetOf({controllerRule(onLoad(), 7),
                                        oddRule(StatusV2::programChange, GenericByteV2::Value{5}),
                                        controllerRule(onLoad(), 8)}));
    const auto result = run({"check", path});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_THAT(result.out,
                HasSubstr("\n   Editing the message of \"odd\" changes more than the editor shows: "
                          "its program change has no bank, and gets bank 0.\n3. "));
}

TEST_F(CheckCommandTest, NamesARuleThatTheEditorCannotShow) {
    const auto rule = oddRule(StatusV2::channelPressure, GenericByteV2::RespectiveTriggerByte{});
    const auto result = run({"check", folder.with("p.json", presetOf({rule}))});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_THAT(result.out,
                EndsWith("\n   The editor cannot show \"odd\": its pressure is copied from the trigger.\n"));
}

TEST_F(CheckCommandTest, ShowsAnEmptyPreset) {
    const auto path = folder.with("p.json", std::string(R"({"rules":[]})"));
    EXPECT_EQ(run({"check", path}).out, path + ": generation 3 (current), 0 rules\n");
}

TEST_F(CheckCommandTest, SaysWhatIsWrongWhereInABadPreset) {
    const auto path = folder.with("p.json", R"({"rules":[)" + nameless + "]}");
    const auto result = run({"check", path});
    EXPECT_EQ(result.status, exitBadPreset);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(StartsWith("midi-quillo: " + path + ": "), HasSubstr("rules[0]"),
                                  HasSubstr("\"name\"")));
}

TEST_F(CheckCommandTest, FindsTextThatIsNoJSONBad) {
    EXPECT_EQ(run({"check", folder.with("p.json", std::string("MThd"))}).status, exitBadPreset);
    EXPECT_EQ(run({"check", folder.with("p.json", std::string())}).status, exitBadPreset);
    EXPECT_EQ(run({"check", folder.with("p.json", std::string(100000, '['))}).status, exitBadPreset);
}

TEST_F(CheckCommandTest, CannotReadWhatIsNotThere) {
    const auto result = run({"check", folder / "none.json"});
    EXPECT_EQ(result.status, exitNoInput);
    EXPECT_THAT(result.err, HasSubstr(folder / "none.json"));
}

TEST_F(CheckCommandTest, WantsExactlyOnePreset) {
    EXPECT_EQ(run({"check"}).status, exitUsage);
    EXPECT_EQ(run({"check", "a.json", "b.json"}).status, exitUsage);
    EXPECT_EQ(run({"check", "a.json", "--write"}).status, exitUsage);
}

TEST_F(CheckCommandTest, AdvisesBehindTheListing) {
    const auto path = folder.with(
        "p.json",
        presetOf({controllerRule(onAnyNote(PassThroughV2::EatMatching), 7), controllerRule(onAnyNote(), 8)}));
    const auto listing = run({"check", path}).out;
    const auto result = run({"check", "--advice", path});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(result.out,
              listing + "\nAdvice:\n"
                        "2. \"controller 8\" can never fire: rule 1 \"controller 7\" (Consume matching) "
                        "swallows every event that it waits for.\n"
                        "   Set rule 1 to Pass through, or move this rule above it.\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(CheckCommandTest, SaysSoWhenItHasNoAdvice) {
    const auto path = folder.with("p.json", twoRules());
    EXPECT_EQ(run({"check", path, "--advice"}).out, run({"check", path}).out + "\nAdvice: none.\n");
}

TEST_F(CheckCommandTest, AdvisesAndStoresInOneRun) {
    const auto result =
        run({"check", folder.with("p.json", twoRules()), "--advice", "--write", folder / "new.json"});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_THAT(result.out, HasSubstr("Advice: none."));
    EXPECT_EQ(folder.read("new.json"), twoRules());
}

TEST_F(CheckCommandTest, RejectsRulesThatNoProgramCouldRunAndNamesThem) {
    using namespace test;
    const auto copied = send(protocol(StatusV2::CC, channel(0), byte(7), triggerByte));
    const std::vector<std::pair<Rule, std::string>> cases{
        {controllerRule(onLoad(), 7, -5),
         "Rule 2 \"controller 7\": a delay is negative: -5 ms. Choose 0 or more.\n"},
        {controllerRule(onLoad(), 7, std::numeric_limits<std::int64_t>::max()),
         "Rule 2 \"controller 7\": a delay is too long: 9223372036854775807 ms. Choose a shorter one.\n"},
        {rule(onLoad(), copied, "load"), "Rule 2 \"load\": an on-load rule copies from a triggering message, "
                                         "and there is none. Choose values of "
                                         "its own for what it sends.\n"},
        {rule(onHost(HostTransportTriggerVariantsV2::Stop), copied, "host"),
         "Rule 2 \"host\": a host-transport rule copies from a triggering message, and there is none. Choose "
         "values of its own for what it sends.\n"}};
    for (const auto& [bad, reason] : cases) {
        const auto path = folder.with("p.json", presetOf({controllerRule(onAnyNote(), 8), bad}));
        for (const auto& more :
             std::vector<std::vector<std::string>>{{}, {"--advice"}, {"--write", folder / "new.json"}}) {
            auto words = std::vector<std::string>{"check", path};
            words.insert(words.end(), more.begin(), more.end());
            const auto result = run(words);
            EXPECT_EQ(result.status, exitBadPreset);
            EXPECT_THAT(result.out, HasSubstr("\n2. \"" + bad.name + "\": when"));
            EXPECT_EQ(result.err, "midi-quillo: " + path + ": " + reason);
        }
        EXPECT_EQ(folder.fileCount(), 1U) << "Nothing is stored.";
    }
}

TEST_F(CheckCommandTest, StoresAnOlderPresetInTheCurrentForm) {
    const auto old = folder.with("old.json", "[" + nameless + "]");
    const auto result = run({"check", old, "--write", folder / "new.json"});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(folder.readText("new.json"),
              R"({"rules":[)" + nameless.substr(0, nameless.size() - 1) + R"(,"name":"Message #1"}]})");
    EXPECT_THAT(result.err, HasSubstr("new.json: written in the current form"));
}

TEST_F(CheckCommandTest, ReplacesAFileOnlyByForce) {
    const auto preset = folder.with("p.json", twoRules());
    const auto target = folder.with("there.json", std::string("mine"));
    EXPECT_EQ(run({"check", preset, "--write", target}).status, exitCannotCreate);
    EXPECT_EQ(folder.readText("there.json"), "mine");
    EXPECT_EQ(run({"check", preset, "--write", target, "--force"}).status, exitSuccess);
    EXPECT_EQ(folder.read("there.json"), twoRules());
}

TEST_F(CheckCommandTest, WritesNothingOfABadPreset) {
    const auto bad = folder.with("p.json", std::string("{"));
    EXPECT_EQ(run({"check", bad, "--write", folder / "new.json"}).status, exitBadPreset);
    EXPECT_EQ(folder.fileCount(), 1u);
}

TEST_F(CheckCommandTest, ReadsStandardInputAndWritesToStandardOutput) {
    const auto result = run({"check", "-", "--write", "-"}, "[" + nameless + "]");
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(result.out,
              R"({"rules":[)" + nameless.substr(0, nameless.size() - 1) + R"(,"name":"Message #1"}]})");
    EXPECT_THAT(result.err, StartsWith("standard input: generation 2 (rules without names), 1 rule\n"));
    EXPECT_EQ(folder.fileCount(), 0U);
    const auto asked = run({"check", "-", "--write", "-", "--json"}, "[" + nameless + "]");
    EXPECT_EQ(asked.out, result.out);
    EXPECT_THAT(asked.err, StartsWith(R"({"preset":"-",)"));
    const auto bad = run({"check", "-", "--write", "-"}, "{");
    EXPECT_EQ(bad.status, exitBadPreset);
    EXPECT_THAT(bad.out, IsEmpty());
    EXPECT_THAT(bad.err, StartsWith("midi-quillo: standard input: "));
}

TEST_F(CheckCommandTest, EndsWith1WhereAdviceIsGivenAndWantedStrictly) {
    const auto good = folder.with("good.json", presetOf({controllerRule(onLoad(), 7)}));
    const auto bad = folder.with("bad.json", presetOf({loadRule(test::noteOn(0, 60, 100))}));
    EXPECT_EQ(run({"check", "--advice", "--strict", good}).status, exitSuccess);
    EXPECT_EQ(run({"check", "--advice", "--strict", bad}).status, exitAdvice);
    EXPECT_EQ(run({"check", "--advice", bad}).status, exitSuccess);
    EXPECT_EQ(run({"check", "--strict", bad}).status, exitUsage);
}

TEST_F(CheckCommandTest, SaysWhatGoesForVST3AloneOnlyWhereItIsAskedFor) {
    const auto path = folder.with("p.json", presetOf({controllerRule(onMIDIStart(), 7)}));
    const auto ofVST3 = HasSubstr("does not fire in a VST3 host");
    EXPECT_THAT(run({"check", "--advice", path}).out, Not(ofVST3));
    EXPECT_THAT(run({"check", "--advice", path, "--for", "vst3"}).out, ofVST3);
    const auto wrong = run({"check", "--advice", path, "--for", "lv2"});
    EXPECT_EQ(wrong.status, exitUsage);
    EXPECT_THAT(wrong.err,
                HasSubstr("option --for: \"lv2\" is not vst3, the only format with advice of its own"));
    EXPECT_EQ(run({"check", path, "--for", "vst3"}).status, exitUsage);
}

TEST_F(CheckCommandTest, AnswersScriptsInJSON) {
    const auto note = loadRule(test::noteOn(0, 60, 100));
    const auto path = folder.with("p.json", PluginData{{note}, {{1, controllerRule(onLoad(), 7)}}}.write());
    const auto result = run({"check", "--json", "--advice", "--strict", path});
    EXPECT_EQ(result.status, exitAdvice);
    EXPECT_THAT(result.err, IsEmpty());
    const auto answer = nlohmann::json::parse(result.out);
    EXPECT_EQ(answer["preset"], path);
    EXPECT_EQ(answer["generation"], "generation 3 (current)");
    EXPECT_EQ(answer["rules"],
              (nlohmann::json::array({{{"number", 1}, {"name", "on load"}, {"words", inPlainWords(note)}}})));
    EXPECT_EQ(answer["switchedOff"][0]["behindRule"], 1);
    ASSERT_EQ(answer["advice"].size(), 1U);
    EXPECT_EQ(answer["advice"][0]["number"], 1);
    EXPECT_EQ(answer["advice"][0]["count"], 1);
    EXPECT_THAT(answer["advice"][0]["matter"].get<std::string>(), HasSubstr("starts a note"));
    EXPECT_FALSE(answer.contains("error"));
}

TEST_F(CheckCommandTest, TellsScriptsOfHowManyRulesOfARunAPieceOfAdviceIsSaid) {
    std::vector<Rule> bass;
    for (std::uint8_t note = 60; note < 72; ++note) {
        bass.push_back(
            test::rule(test::onNoteOn(test::exactly(note)), test::send(test::noteOn(1, note, 100)), "Bass"));
    }
    const auto result = run({"check", "--json", "--advice", folder.with("p.json", presetOf(bass))});
    const auto advice = nlohmann::json::parse(result.out)["advice"];
    ASSERT_FALSE(advice.empty());
    EXPECT_EQ(advice[0]["number"], 1);
    EXPECT_EQ(advice[0]["count"], 12);
}

TEST_F(CheckCommandTest, AnswersScriptsInJSONAlsoWhereThePresetIsBad) {
    const auto cannotRun = folder.with("p.json", presetOf({controllerRule(onLoad(), 7, -5)}));
    const auto result = run({"check", "--json", cannotRun, "--write", folder / "new.json"});
    EXPECT_EQ(result.status, exitBadPreset);
    EXPECT_THAT(result.err, IsEmpty());
    const auto answer = nlohmann::json::parse(result.out);
    EXPECT_EQ(answer["error"],
              cannotRun + ": Rule 1 \"controller 7\": a delay is negative: -5 ms. Choose 0 or more.");
    EXPECT_EQ(answer["rules"].size(), 1U);
    EXPECT_EQ(folder.fileCount(), 1U);
    EXPECT_EQ(run({"check", "--json", folder / "none.json"}).status, exitNoInput);
}

}  // namespace
}  // namespace quillo
