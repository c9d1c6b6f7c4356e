// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include "programs/CommandLineFixture.hpp"

namespace quillo {
namespace {

using namespace fixture;
using testing::HasSubstr;
using testing::IsEmpty;

using ImportCommandTest = CommandLineTest;

const std::string pads = "midimap v1\nforward-unmatched\n# Pads\nNoteOn 36 ANY | SAME 48 SAME\n"
                         "NoteOn 37 ANY | SAME 49 SAME\nPitch ANY ANY | CHN2 SAME SAME\n";
const std::string stage = "[Project]\nVersion=1\n[Preset.0]\nName=Stage\nActive=1\nName0=Pedal\n"
                          "Incoming0=MID1B040pp\nOutgoing0=MID1B007pp\nOptions0=Actv01Stop00OutO00\n";

TEST_F(ImportCommandTest, SaysOfEachLineWhatBecameOfIt) {
    const auto result = run({"import", folder.with("pads.cfg", pads)});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(result.out, "line 4: taken as rule 1\n"
                          "line 5: taken as rule 2\n"
                          "line 6: left out: no rule can wait for pitch bend\n"
                          "2 lines taken, 0 of them in part; 1 left out. 2 rules.\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(ImportCommandTest, WritesAPresetInWhichConsecutiveNotesAreARun) {
    const auto target = folder / "pads.json";
    EXPECT_EQ(run({"import", folder.with("pads.cfg", pads), "-o", target}).status, exitSuccess);
    EXPECT_THAT(run({"check", target}).out, HasSubstr("1-2. \"Pads\", notes C1 to C♯1, 2 rules"));
}

TEST_F(ImportCommandTest, ReplacesAFileOnlyByForce) {
    const auto source = folder.with("stage.bmtp", stage);
    const auto target = folder.with("mine.json", std::string("mine"));
    EXPECT_EQ(run({"import", source, "-o", target}).status, exitCannotCreate);
    EXPECT_EQ(folder.readText("mine.json"), "mine");
    EXPECT_EQ(run({"import", source, "-o", target, "--force"}).status, exitSuccess);
    EXPECT_EQ(folder.readText("mine.json"), run({"import", source, "-o", "-"}).out);
}

TEST_F(ImportCommandTest, SaysOnStandardErrorWhatBecameOfTheLinesWhenThePresetGoesToStandardOutput) {
    const auto source = folder.with("pads.cfg", pads);
    const auto said = run({"import", source}).out;
    const auto target = folder / "pads.json";
    run({"import", source, "-o", target});

    const auto result = run({"import", source, "-o", "-"});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_EQ(std::vector<std::uint8_t>(result.out.begin(), result.out.end()), folder.read("pads.json"));
    EXPECT_EQ(result.err, said);
}

TEST_F(ImportCommandTest, DropsWhatNoTranslatorWaitsForOnDemand) {
    const auto source = folder.with("stage.bmtp", stage);
    EXPECT_THAT(run({"import", source}).out, HasSubstr(" 1 rule.\n"));
    const auto target = folder / "stage.json";
    EXPECT_EQ(run({"import", source, "--drop-unmatched", "-o", target}).status, exitSuccess);
    EXPECT_THAT(run({"check", target}).out, HasSubstr("2. \"Drop the rest\""));
}

TEST_F(ImportCommandTest, WritesNamesThatAreNoUTF8) {
    const auto latin =
        "[Project]\nVersion=1\n[Preset.0]\nName0=Fl\xF6te\nIncoming0=MID1FA\nOutgoing0=MID1C005\n";
    const auto target = folder / "p.json";
    EXPECT_EQ(run({"import", folder.with("p.bmtp", std::string(latin)), "-o", target}).status, exitSuccess);
    EXPECT_THAT(run({"check", target}).out, HasSubstr("Fl\\\\xf6te"));
}

TEST_F(ImportCommandTest, WritesNothingWhereNoLineBecomesARule) {
    const auto source = folder.with(
        "pads.cfg", std::string("midimap v1\nforward-unmatched\nPitch ANY ANY | CHN2 SAME SAME\n"));
    const auto result = run({"import", source, "-o", folder / "p.json"});
    EXPECT_EQ(result.status, exitBadData);
    EXPECT_EQ(result.out, "line 3: left out: no rule can wait for pitch bend\n"
                          "0 lines taken, 0 of them in part; 1 left out. 0 rules.\n");
    EXPECT_THAT(result.err, HasSubstr("pads.cfg: holds no rule that can be taken"));
    EXPECT_EQ(run({"check", folder / "p.json"}).status, exitNoInput);
}

TEST_F(ImportCommandTest, NamesTheLineOfADamagedFile) {
    const auto result = run({"import", folder.with("p.cfg", std::string("midimap v1\nhello\n"))});
    EXPECT_EQ(result.status, exitBadData);
    EXPECT_THAT(result.err, HasSubstr("p.cfg: line 2: \"hello\" is neither a rule"));
    EXPECT_EQ(run({"import", folder.with("p.json", std::string("{}"))}).status, exitBadData);
    EXPECT_EQ(run({"import", folder / "missing"}).status, exitNoInput);
    EXPECT_EQ(run({"import"}).status, exitUsage);
}

}  // namespace
}  // namespace quillo
