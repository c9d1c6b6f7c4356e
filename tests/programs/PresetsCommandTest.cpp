// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include "presets/PresetLibrary.hpp"
#include "programs/CommandLineFixture.hpp"

namespace quillo {
namespace {

using namespace fixture;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using PresetsCommandTest = CommandLineTest;

TEST_F(PresetsCommandTest, ListsThemByTaskWithASentenceEach) {
    const auto result = run({"presets"});
    EXPECT_EQ(result.status, exitSuccess);
    EXPECT_THAT(
        result.out,
        AllOf(StartsWith("Pedals\n"
                         "  pedal-to-strings\n"
                         "    The sustain pedal brings strings on its way down, the piano on its way up.\n"
                         "  pedal-from-64\n"),
              HasSubstr("\n\nSplits and layers\n"
                        "  bass-split\n"
                        "    The keys from C1 to B1 play a bass on channel 2.\n")));
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(PresetsCommandTest, PrintsAPresetThatCheckTakes) {
    const auto printed = run({"presets", "bass-split"}).out;
    EXPECT_THAT(run({"check", folder.with("p.json", printed)}).out, HasSubstr("current), 26 rules"));
}

TEST_F(PresetsCommandTest, WritesEachPresetByteForByteAsItsFileIs) {
    for (const auto& preset : presetLibrary()) {
        const std::string name(preset.name);
        EXPECT_EQ(run({"presets", name, "--write", folder / (name + ".json")}).status, exitSuccess);
        EXPECT_EQ(folder.read(name + ".json"),
                  readWholeFile(std::string(QUILLO_PRESETS "/") + name + ".json"))
            << name;
    }
}

TEST_F(PresetsCommandTest, WritesToStandardOutputWhatItWritesToAFile) {
    const auto result = run({"presets", "echo", "--write", "-"});
    EXPECT_EQ(result.status, exitSuccess);
    run({"presets", "echo", "--write", folder / "echo.json"});
    EXPECT_EQ(result.out, folder.readText("echo.json"));
}

TEST_F(PresetsCommandTest, ReplacesAFileOnlyByForce) {
    const auto path = folder.with("mine.json", std::string("mine"));
    const auto refused = run({"presets", "echo", "--write", path});
    EXPECT_EQ(refused.status, exitCannotCreate);
    EXPECT_EQ(folder.readText("mine.json"), "mine");
    EXPECT_EQ(run({"presets", "echo", "--write", path, "--force"}).status, exitSuccess);
    EXPECT_EQ(folder.readText("mine.json"), run({"presets", "echo", "--write", "-"}).out);
}

TEST_F(PresetsCommandTest, SaysWhereTheNamesStandWhenThereIsNoSuchPreset) {
    const auto result = run({"presets", "ecko"});
    EXPECT_EQ(result.status, exitUsage);
    EXPECT_THAT(result.err, HasSubstr("there is no preset \"ecko\"; `midi-quillo presets` lists them"));
    EXPECT_EQ(run({"presets", "echo", "bass-split"}).status, exitUsage);
    EXPECT_EQ(run({"presets", "--write", folder / "p.json"}).status, exitUsage);
}

}  // namespace
}  // namespace quillo
