// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <nlohmann/json.hpp>

#include "programs/CommandLineFixture.hpp"
#include "support/MIDIFileBytes.hpp"
#include "support/Presets.hpp"

namespace quillo {
namespace {

using namespace fixture;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class RenderCommandTest : public CommandLineTest {
protected:
    /// Renders `source` through `rules` to out.mid.
    Run render(const Bytes& source, const std::vector<Rule>& rules,
               const std::vector<std::string>& options = {}) {
        std::vector<std::string> words{"render", folder.with("in.mid", source), folder / "out.mid",
                                       "--preset", folder.with("p.json", presetOf(rules))};
        words.insert(words.end(), options.begin(), options.end());
        return run(words);
    }

    Bytes rendered(const Bytes& source, const std::vector<Rule>& rules,
                   const std::vector<std::string>& options = {}) {
        EXPECT_EQ(render(source, rules, options).status, exitSuccess);
        return folder.read("out.mid");
    }
};

const Bytes oneNote = oneTrackFile("00 90 3c 64 83 60 80 3c 40 00 ff 2f 00");

TEST_F(RenderCommandTest, CopiesTheMessagesOfAFileThroughAnEmptyPreset) {
    EXPECT_EQ(rendered(oneNote, {}), oneNote);
}

TEST_F(RenderCommandTest, WritesOneTrackOfFormat0WithEveryMetaEventInItsPlace) {
    const auto source =
        joined({chunk("MThd", "00 01 00 02 01 e0"),
                track("00 ff 03 01 41 00 ff 58 04 03 02 18 08 00 ff 59 02 fd 01 00 ff 51 03 09 27 c0 "
                      "83 60 ff 06 01 42 00 ff 7f 02 00 01 0a ff 2f 00"),
                track("00 ff 03 01 43 00 90 3c 64 83 60 3c 00 00 ff 2f 00")});
    EXPECT_EQ(rendered(source, {}),
              oneTrackFile(
                  "00 ff 03 01 41 00 ff 58 04 03 02 18 08 00 ff 59 02 fd 01 00 ff 51 03 09 27 c0 "
                  "00 ff 03 01 43 00 90 3c 64 83 60 ff 06 01 42 00 ff 7f 02 00 01 00 90 3c 00 0a ff 2f 00"));
}

TEST_F(RenderCommandTest, ReplacesANoteByWhatARuleSends) {
    EXPECT_EQ(rendered(oneNote, {controllerRule(onAnyNote(PassThroughV2::EatMatching), 7)}),
              oneTrackFile("00 b0 07 01 83 60 80 3c 40 00 ff 2f 00"));
}

TEST_F(RenderCommandTest, PutsADelayedOutputOnItsTick) {
    EXPECT_EQ(rendered(oneNote, {controllerRule(onAnyNote(), 7, 250)}),
              oneTrackFile("00 90 3c 64 81 70 b0 07 01 81 70 80 3c 40 00 ff 2f 00"));
}

TEST_F(RenderCommandTest, KeepsADelayedOutputOnItsTickAtAnySampleRate) {
    const auto expected = rendered(oneNote, {controllerRule(onAnyNote(), 7, 250)});
    for (const std::string rate : {"1000", "44100", "96000", "768000"}) {
        EXPECT_EQ(
            rendered(oneNote, {controllerRule(onAnyNote(), 7, 250)}, {"--force", "--sample-rate", rate}),
            expected)
            << rate;
    }
}

TEST_F(RenderCommandTest, FollowsTheTempoForDelayedOutputs) {
    const auto slow = oneTrackFile("00 ff 51 03 0f 42 40 00 90 3c 64 83 60 ff 2f 00");
    EXPECT_EQ(rendered(slow, {controllerRule(onAnyNote(), 7, 250)}),
              oneTrackFile("00 ff 51 03 0f 42 40 00 90 3c 64 78 b0 07 01 82 68 ff 2f 00"));
}

TEST_F(RenderCommandTest, LengthensTheFileForOutputsBehindItsEnd) {
    EXPECT_EQ(rendered(oneTrackFile("83 60 ff 2f 00"),
                       {controllerRule(onHost(HostTransportTriggerVariantsV2::Stop), 7, 250)}),
              oneTrackFile("85 50 b0 07 01 00 ff 2f 00"));
}

TEST_F(RenderCommandTest, GivesAMessageInAnEscapeToTheRules) {
    EXPECT_EQ(rendered(oneTrackFile("05 f7 01 fa 05 f7 01 fc 00 ff 2f 00"),
                       {controllerRule(onMIDIStart(PassThroughV2::EatMatching), 7)}),
              oneTrackFile("05 b0 07 01 05 f7 01 fc 00 ff 2f 00"));
}

TEST_F(RenderCommandTest, LeavesOutSystemExclusiveOfTheFile) {
    EXPECT_EQ(rendered(oneTrackFile("00 f0 03 43 10 00 05 f7 02 11 f7 05 90 3c 64 00 ff 2f 00"), {}),
              oneTrackFile("0a 90 3c 64 00 ff 2f 00"));
}

TEST_F(RenderCommandTest, WritesSystemExclusiveThatARuleSends) {
    const RuleOutputVariantsV2 message = RuleOutputVariantsV2::SystemExclusive{hex("7e 7f 09 01")};
    EXPECT_EQ(rendered(oneTrackFile("00 ff 2f 00"), {loadRule(message)}),
              oneTrackFile("00 f0 05 7e 7f 09 01 f7 00 ff 2f 00"));
}

TEST_F(RenderCommandTest, WritesBothMessagesOfABankAndProgram) {
    const RuleOutputVariantsV2 message =
        RuleOutputVariantsV2::ProgramChange{RuleOutputChannelV2::Value{2}, 1, GenericByteV2::Value{5}};
    EXPECT_EQ(rendered(oneTrackFile("00 ff 2f 00"), {loadRule(message)}),
              oneTrackFile("00 b2 00 01 00 c2 05 00 ff 2f 00"));
}

TEST_F(RenderCommandTest, KeepsTheOrderOfEventsAtOneTick) {
    const auto source = oneTrackFile("00 90 3c 64 00 80 3c 40 00 90 3c 65 00 ff 2f 00");
    EXPECT_EQ(rendered(source, {}), source);
}

TEST_F(RenderCommandTest, RendersATimeCodeFile) {
    const auto source =
        joined({chunk("MThd", "00 00 00 01 e7 28"), track("0a 90 3c 64 64 80 3c 40 00 ff 2f 00")});
    EXPECT_EQ(rendered(source, {}), source);
}

TEST_F(RenderCommandTest, TracesBothDirectionsToTheOutputStream) {
    const auto result = render(oneTrackFile("01 90 3c 64 00 ff 2f 00"),
                               {controllerRule(onAnyNote(PassThroughV2::EatMatching), 7)}, {"--trace"});
    EXPECT_EQ(result.out, "in  [0] AU Host Start\n"
                          "in  [50] 90 3c 64           note-on 60 (C3), velocity 100, channel 1\n"
                          "out [50] b0 07 01           controller 7 (Volume), value 1, channel 1\n"
                          "in  [51] AU Host Stop\n");
}

TEST_F(RenderCommandTest, PrintsNothingButOneLineOnTheErrorStreamWithoutTrace) {
    const auto result = render(oneNote, {controllerRule(onAnyNote(), 7)});
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, (folder / "out.mid") + ": 2 events in, 3 out\n");
}

TEST_F(RenderCommandTest, CountsWhatTheTailCutsOff) {
    const auto stop = onHost(HostTransportTriggerVariantsV2::Stop);
    const std::vector<Rule> rules{controllerRule(stop, 1, 1000), controllerRule(stop, 2, 1001),
                                  controllerRule(stop, 3, 5000)};
    const auto result = render(oneNote, rules, {"--tail=1"});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_THAT(result.err, StartsWith("2 delayed outputs were cut off: due after the tail of 1 s;"));
    EXPECT_THAT(result.err, HasSubstr("2 events in, 3 out"));
    EXPECT_THAT(render(oneNote, rules, {"--tail=2", "--force"}).err,
                StartsWith("1 delayed output was cut off: due after the tail of 2 s;"));
}

TEST_F(RenderCommandTest, NeverReplacesAFileWithoutForce) {
    static_cast<void>(folder.with("out.mid", std::string("mine")));
    const auto refused = render(oneNote, {}, {"--trace"});
    EXPECT_EQ(refused.status, exitCannotCreate);
    EXPECT_THAT(refused.err, AllOf(HasSubstr("out.mid"), HasSubstr("--force")));
    EXPECT_THAT(refused.out, IsEmpty());
    EXPECT_EQ(folder.readText("out.mid"), "mine");
    EXPECT_EQ(render(oneNote, {}, {"--force"}).status, exitSuccess);
    EXPECT_EQ(folder.read("out.mid"), oneNote);
}

TEST_F(RenderCommandTest, MayWriteOverItsSourceByForce) {
    const auto path = folder.with("in.mid", oneNote);
    const auto preset =
        folder.with("p.json", presetOf({controllerRule(onAnyNote(PassThroughV2::EatMatching), 7)}));
    EXPECT_EQ(run({"render", path, path, "--preset", preset, "--force"}).status, exitSuccess);
    EXPECT_EQ(folder.read("in.mid"), oneTrackFile("00 b0 07 01 83 60 80 3c 40 00 ff 2f 00"));
}

TEST_F(RenderCommandTest, CannotWriteIntoAFolderThatIsNotThere) {
    const auto source = folder.with("in.mid", oneNote);
    const auto preset = folder.with("p.json", presetOf({}));
    const auto result = run({"render", source, folder / "none/out.mid", "--preset", preset});
    EXPECT_EQ(result.status, exitCannotCreate);
    EXPECT_THAT(result.err, HasSubstr("none/out.mid"));
}

TEST_F(RenderCommandTest, SaysAtWhichByteAFileIsDamaged) {
    const auto result = render(oneTrackFile("00 90 3c"), {});
    EXPECT_EQ(result.status, exitBadData);
    EXPECT_EQ(result.err, "midi-quillo: " + (folder / "in.mid") +
                              ": byte 25: the track ends in the middle of a message\n");
    EXPECT_FALSE(folder.has("out.mid"));
}

TEST_F(RenderCommandTest, SaysWhatIsWrongWithADamagedPreset) {
    const auto source = folder.with("in.mid", oneNote);
    const auto preset = folder.with("p.json", std::string(R"({"rules":[{}]})"));
    const auto result = run({"render", source, folder / "out.mid", "--preset", preset});
    EXPECT_EQ(result.status, exitBadData);
    EXPECT_THAT(result.err, AllOf(HasSubstr(preset), HasSubstr("rules[0]")));
    EXPECT_FALSE(folder.has("out.mid"));
}

TEST_F(RenderCommandTest, CannotReadWhatIsNotThere) {
    const auto there = folder.with("in.mid", oneNote);
    const auto preset = folder.with("p.json", presetOf({}));
    EXPECT_EQ(run({"render", folder / "no.mid", folder / "out.mid", "--preset", preset}).status, exitNoInput);
    EXPECT_EQ(run({"render", there, folder / "out.mid", "--preset", folder / "no.json"}).status, exitNoInput);
}

TEST_F(RenderCommandTest, NamesThePresetThatCannotRun) {
    const auto result = render(oneNote, {controllerRule(onLoad(), 7, -1)});
    EXPECT_EQ(result.status, exitBadData);
    EXPECT_THAT(result.err, AllOf(StartsWith("midi-quillo: " + (folder / "p.json") + ": Rule 1 "),
                                  EndsWith("a delay is negative: -1 ms. Choose 0 or more.\n")));
    EXPECT_FALSE(folder.has("out.mid"));
}

TEST_F(RenderCommandTest, RejectsAFileThatLastsTooLong) {
    Bytes events = hex("00 ff 51 03 ff ff ff");
    for (int i = 0; i < 10; ++i) {
        events = joined({events, hex("ff ff ff 7f 90 3c 64")});
    }
    auto source = joined({hex("4d 54 68 64 00 00 00 06 00 00 00 01 00 01 4d 54 72 6b 00 00 00"),
                          {static_cast<std::uint8_t>(events.size())},
                          events});
    const auto result = render(source, {}, {"--sample-rate=768000"});
    EXPECT_EQ(result.status, exitBadData);
    EXPECT_THAT(result.err, HasSubstr("the file lasts too long"));
}

TEST_F(RenderCommandTest, WantsTwoFilesAndAPreset) {
    EXPECT_EQ(run({"render"}).status, exitUsage);
    EXPECT_EQ(run({"render", "in.mid", "--preset=p.json"}).status, exitUsage);
    EXPECT_EQ(run({"render", "in.mid", "out.mid"}).status, exitUsage);
    EXPECT_EQ(run({"render", "in.mid", "out.mid", "more.mid", "--preset=p.json"}).status, exitUsage);
}

TEST_F(RenderCommandTest, RejectsNumbersOutOfBoundsAndNamesTheOption) {
    for (const std::string wrong :
         {"--sample-rate=999", "--sample-rate=768001", "--sample-rate=48000.5", "--block=0",
          "--block=1048577", "--block=", "--tail=-1", "--tail=86401"}) {
        const auto result = render(oneNote, {}, {wrong});
        EXPECT_EQ(result.status, exitUsage) << wrong;
        EXPECT_THAT(result.err, HasSubstr("option " + wrong.substr(0, wrong.find('=')) + ":"));
    }
    EXPECT_FALSE(folder.has("out.mid"));
}

TEST_F(RenderCommandTest, TakesNumbersAtTheirBounds) {
    for (const std::string option : {"--sample-rate=1000", "--sample-rate=768000", "--block=1",
                                     "--block=1048576", "--tail=0", "--tail=86400"}) {
        EXPECT_EQ(rendered(oneNote, {}, {"--force", option}), oneNote) << option;
    }
}

TEST_F(RenderCommandTest, SaysHowMuchSystemExclusiveItLeavesOut) {
    EXPECT_THAT(render(oneTrackFile("00 f0 03 43 10 f7 05 f0 02 11 f7 05 90 3c 64 00 ff 2f 00"), {}).err,
                StartsWith("2 SysEx or escape events were left out, 7 bytes: rules never see them\n"));
    EXPECT_THAT(render(oneTrackFile("00 f0 02 43 f7 00 ff 2f 00"), {}, {"--force"}).err,
                StartsWith("1 SysEx or escape event was left out, 3 bytes: "));
}

/// A note of no length, again and again.
Bytes manyNotes(std::size_t count) {
    Bytes notes;
    for (std::size_t i = 0; i < count; ++i) {
        const auto note = hex("00 90 3c 64");
        notes.insert(notes.end(), note.begin(), note.end());
    }
    const auto length = notes.size() + 4;
    return joined({chunk("MThd", "00 00 00 01 01 e0"),
                   hex("4d 54 72 6b 00"),
                   {static_cast<std::uint8_t>(length >> 16U), static_cast<std::uint8_t>(length >> 8U),
                    static_cast<std::uint8_t>(length)},
                   notes,
                   hex("00 ff 2f 00")});
}

TEST_F(RenderCommandTest, SaysHowManyDelayedOutputsWereDropped) {
    const std::vector<Rule> echo{controllerRule(onAnyNote(), 7, 100)};
    EXPECT_THAT(render(manyNotes(10'002), echo).err,
                StartsWith("2 delayed outputs were dropped: only 10000 can wait at one time\n"));
    EXPECT_THAT(render(manyNotes(10'000), echo, {"--force"}).err, Not(HasSubstr("dropped")));
}

TEST_F(RenderCommandTest, AnswersScriptsInJSON) {
    const auto result = render(oneTrackFile("00 f0 02 43 f7 00 90 3c 64 00 ff 2f 00"),
                               {controllerRule(onAnyNote(), 7, 2000)}, {"--json", "--tail=1"});
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_EQ(nlohmann::json::parse(result.out),
              (nlohmann::json{{"eventsIn", 1},
                              {"eventsOut", 1},
                              {"cutOff", 1},
                              {"dropped", 0},
                              {"sysExLeftOut", {{"events", 1}, {"bytes", 3}}}}));
    EXPECT_EQ(run({"render", "a", "b", "--preset=p", "--json", "--trace"}).status, exitUsage);
}

TEST_F(RenderCommandTest, AnswersScriptsBesideAFileOnStandardOutput) {
    const auto preset = folder.with("p.json", presetOf({}));
    const auto result = run({"render", folder.with("in.mid", oneNote), "-", "--preset", preset, "--json"});
    EXPECT_EQ(Bytes(result.out.begin(), result.out.end()), oneNote);
    EXPECT_EQ(nlohmann::json::parse(result.err)["eventsOut"], 2);
}

TEST_F(RenderCommandTest, ReadsStandardInputAndWritesToStandardOutput) {
    const auto preset = presetOf({controllerRule(onAnyNote(PassThroughV2::EatMatching), 7)});
    const auto expected = oneTrackFile("00 b0 07 01 83 60 80 3c 40 00 ff 2f 00");
    const auto fromFile = folder.with("p.json", preset);
    const auto song = run({"render", "-", "-", "--preset", fromFile}, {oneNote.begin(), oneNote.end()});
    EXPECT_EQ(song.status, exitSuccess);
    EXPECT_EQ(Bytes(song.out.begin(), song.out.end()), expected);
    EXPECT_EQ(song.err, "standard output: 2 events in, 2 out\n");
    const auto midi = folder.with("in.mid", oneNote);
    const auto rules = run({"render", midi, "-", "--preset=-", "--trace"}, {preset.begin(), preset.end()});
    EXPECT_EQ(Bytes(rules.out.begin(), rules.out.end()), expected);
    EXPECT_THAT(rules.err, HasSubstr("in  [0] 90 3c 64"));
    EXPECT_EQ(run({"render", "-", "-", "--preset=-"}).status, exitUsage);
}

TEST_F(RenderCommandTest, NamesStandardInputWhereItIsDamaged) {
    const auto result = run({"render", "-", "-", "--preset", folder.with("p.json", presetOf({}))}, "MThd");
    EXPECT_EQ(result.status, exitBadData);
    EXPECT_THAT(result.err, StartsWith("midi-quillo: standard input: byte 4: "));
    EXPECT_THAT(result.out, IsEmpty());
}

TEST_F(RenderCommandTest, PlaysTheTracksOfFormat2OneAfterTheOther) {
    const auto source = joined({chunk("MThd", "00 02 00 02 01 e0"), track("00 90 3c 64 0a ff 2f 00"),
                                track("05 80 3c 40 00 ff 2f 00")});
    EXPECT_EQ(rendered(source, {}), oneTrackFile("00 90 3c 64 0f 80 3c 40 00 ff 2f 00"));
}

}  // namespace
}  // namespace quillo
