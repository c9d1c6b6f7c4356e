// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <nlohmann/json.hpp>

#include "programs/CommandLineFixture.hpp"
#include "support/MIDIFileBytes.hpp"
#include "support/Presets.hpp"

namespace quillo {
namespace {

using namespace fixture;
using namespace test;
using testing::HasSubstr;
using testing::IsEmpty;

Rule echo(TriggerValueV2 onChannel, std::int64_t delay = 300) {
    return rule(onNoteOn(any, onChannel), send(noteOn(1, 60, 100), delay), "Echo");
}

/// A note after an eighth of a second and another half a second later, and a pedal in between.
const Bytes take = oneTrackFile("78 90 3c 64 78 b0 40 7f 83 60 90 3c 64 00 ff 2f 00");

class DiffCommandTest : public CommandLineTest {
protected:
    /// Plays a recording to A.json and B.json.
    Run diff(const std::vector<Rule>& first, const std::vector<Rule>& second,
             const std::vector<std::string>& more = {}, const Bytes& recording = take) {
        std::vector<std::string> words{"diff", folder.with("A.json", presetOf(first)),
                                       folder.with("B.json", presetOf(second)), "--with",
                                       folder.with("take.mid", recording)};
        words.insert(words.end(), more.begin(), more.end());
        return run(words);
    }

    [[nodiscard]] std::string head(const std::string& result) const {
        return "A: " + (folder / "A.json") + "\nB: " + (folder / "B.json") + "\n" + (folder / "take.mid") +
               ": 6 events, " + result + "\n";
    }
};

TEST_F(DiffCommandTest, FindsNoDifferenceBetweenAPresetAndItself) {
    const auto result = diff({echo(any)}, {echo(any)});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(result.out, head("no difference"));
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(DiffCommandTest, SaysWhatOfTheRecordingNoRuleSees) {
    const auto sysEx = oneTrackFile("00 f0 02 43 f7 00 90 3c 64 00 ff 2f 00");
    for (const std::vector<std::string>& how : {std::vector<std::string>{}, {"--json"}}) {
        EXPECT_EQ(diff({}, {}, how, sysEx).err,
                  "1 SysEx or escape event was left out, 3 bytes: rules never see them\n");
    }
}

TEST_F(DiffCommandTest, SaysWhatDiffersWhyAndHowOften) {
    const auto result = diff({echo(any)}, {echo(exactly(1))});
    EXPECT_EQ(result.status, exitDifferent);
    EXPECT_EQ(result.out,
              head("2 make a difference") +
                  "\n"
                  "The first difference, at 125 ms: 90 3c 64: note-on 60 (C3), velocity 100, channel 1\n"
                  "A:\n"
                  "  rule 1 \"Echo\" fired: sent 91 3c 64 after 300 ms\n"
                  "  the event goes on to the output\n"
                  "B:\n"
                  "  rule 1 \"Echo\" passed over: it waits for channel 2, this is channel 1\n"
                  "  the event goes on to the output\n"
                  "\n"
                  "at      in        out of A              | out of B\n"
                  "125 ms  90 3c 64  90 3c 64                90 3c 64\n"
                  "                  91 3c 64 after 300 ms |\n"
                  "750 ms  90 3c 64  90 3c 64                90 3c 64\n"
                  "                  91 3c 64 after 300 ms |\n"
                  "\n"
                  "rule 1 \"Echo\" fires 2 times less: 2 in A, 0 in B\n");
}

TEST_F(DiffCommandTest, SaysWhichRuleSwallowsWhatTheOtherPresetLetsPass) {
    const auto gate = rule(onControlChange(64, any, any, PassThroughV2::EatNonMatching),
                           send(noteOn(0, 1, 1)), "Pedal only");
    EXPECT_THAT(diff({}, {gate}).out,
                HasSubstr("\nA:\n"
                          "  no rule fires\n"
                          "  the event goes on to the output\n"
                          "B:\n"
                          "  rule 1 \"Pedal only\" consumed it: it waits for CC, this is a Note On\n"
                          "  the event does not go on to the output\n"
                          "\n"
                          "at      in        out of A | out of B\n"
                          "125 ms  90 3c 64  90 3c 64 | nothing\n"
                          "250 ms  b0 40 7f  b0 40 7f | 90 01 01\n"
                          "                           | b0 40 7f\n"));
}

TEST_F(DiffCommandTest, CountsRulesOfOnePresetApart) {
    const auto strings = rule(onControlChange(64), send(noteOn(2, 1, 1)), "Strings");
    EXPECT_THAT(diff({strings}, {echo(any)}).out,
                HasSubstr("\n\nrule 1 \"Echo\" of B fires 2 times, and A does not have it\n"
                          "rule 1 \"Strings\" of A fires 1 time, and B does not have it\n"));
    EXPECT_THAT(diff({echo(any, 300)}, {echo(any, 200)}).out,
                HasSubstr("\n\nEvery rule fires as often in A as in B.\n"));
}

TEST_F(DiffCommandTest, PlaysLoadingAndTheTransport) {
    using enum HostTransportTriggerVariantsV2;
    const auto changed = [&](const RuleTriggerV2& trigger) {
        return diff({}, {rule(trigger, send(noteOn(0, 1, 1)), "new")}).out;
    };
    EXPECT_THAT(changed(onLoad()),
                HasSubstr("\nA:\n  no rule fires\nB:\n  rule 1 \"new\" fired: sent 90 01 01"));
    EXPECT_THAT(changed(onLoad()), HasSubstr("\n0 ms  load  nothing  | 90 01 01\n"));
    EXPECT_THAT(changed(onHost(Start)), HasSubstr("\n0 ms  host start  nothing  | 90 01 01\n"));
    EXPECT_THAT(changed(onHost(Stop)), HasSubstr("ms  host stop  nothing  | 90 01 01\n"));
}

TEST_F(DiffCommandTest, ShowsTimesBetweenMilliseconds) {
    EXPECT_THAT(diff({}, {echo(any)}, {}, oneTrackFile("01 90 3c 64 00 ff 2f 00")).out,
                HasSubstr("at 1.042 ms: 90 3c 64"));
}

TEST_F(DiffCommandTest, AnswersScriptsInJSON) {
    const auto result = diff({echo(any)}, {echo(any, 200)}, {"--json"});
    EXPECT_EQ(result.status, exitDifferent);
    const auto answer = nlohmann::json::parse(result.out);
    EXPECT_EQ(answer["same"], false);
    EXPECT_EQ(answer["events"], 6);
    const auto departures = [](int delay) {
        return nlohmann::json{{{"afterMs", 0}, {"bytes", "90 3c 64"}},
                              {{"afterMs", delay}, {"bytes", "91 3c 64"}, {"rule", 1}}};
    };
    ASSERT_EQ(answer["differences"].size(), 2U);
    EXPECT_EQ(
        answer["differences"][0],
        (nlohmann::json{{"ms", 125}, {"event", "90 3c 64"}, {"a", departures(300)}, {"b", departures(200)}}));
    EXPECT_TRUE(answer["rules"].empty());
    const auto one = nlohmann::json::parse(diff({echo(any)}, {}, {"--json"}).out)["rules"][0];
    EXPECT_EQ(
        one,
        (nlohmann::json{
            {"a", {{"number", 1}, {"name", "Echo"}}}, {"b", nullptr}, {"firesInA", 2}, {"firesInB", 0}}));
}

TEST_F(DiffCommandTest, EndsWithTroubleWhereAFileCannotBeRead) {
    const auto good = folder.with("good.json", presetOf({}));
    const auto recording = folder.with("take.mid", take);
    const auto cannotRun = folder.with("bad.json", presetOf({echo(any, -1)}));
    const auto result = run({"diff", good, cannotRun, "--with", recording});
    EXPECT_EQ(result.status, exitTrouble);
    EXPECT_EQ(result.err, "midi-quillo: " + cannotRun +
                              ": Rule 1 \"Echo\": a delay is negative: -1 ms. Choose 0 or more.\n");
    EXPECT_EQ(run({"diff", good, folder / "none.json", "--with", recording}).status, exitTrouble);
    EXPECT_EQ(run({"diff", good, good, "--with", good}).status, exitTrouble);
}

TEST_F(DiffCommandTest, WantsTwoPresetsAndARecording) {
    EXPECT_EQ(run({"diff", "a.json", "b.json"}).status, exitUsage);
    EXPECT_EQ(run({"diff", "a.json", "--with", "take.mid"}).status, exitUsage);
}

}  // namespace
}  // namespace quillo
