// SPDX-License-Identifier: GPL-3.0-or-later
// The presets that come with the program: each is in the library and the guide, in the form that is written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "analysis/RuleAdvice.hpp"
#include "persistence/PluginData.hpp"
#include "platform/AtomicFile.hpp"
#include "presets/PresetLibrary.hpp"
#include "rules/RuleEntry.hpp"
#include "rules/RuleRun.hpp"

namespace quillo {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

PluginData documentOf(const LibraryPreset& preset) {
    const std::vector<std::uint8_t> bytes(preset.document.begin(), preset.document.end());
    return PluginData::read(bytes);
}

TEST(PresetLibrary, HasThirtyPresetsAndEveryFileButTheDemo) {
    std::set<std::string> files;
    for (const auto& file : fs::directory_iterator(QUILLO_PRESETS)) {
        if (file.path().extension() == ".json") {
            files.insert(file.path().stem());
        }
    }
    std::set<std::string> names{"demo"};
    for (const auto& preset : presetLibrary()) {
        EXPECT_TRUE(names.emplace(preset.name).second) << preset.name << " is there twice";
    }
    EXPECT_EQ(files, names);
    EXPECT_EQ(presetLibrary().size(), 30U);
}

TEST(PresetLibrary, KeepsThoseOfATaskTogether) {
    std::set<std::string_view> done;
    std::string_view task;
    for (const auto& preset : presetLibrary()) {
        if (preset.task != task) {
            EXPECT_TRUE(done.insert(preset.task).second) << preset.task;
            task = preset.task;
        }
    }
}

TEST(PresetLibrary, SaysOneSentenceOfEachThatFitsOnALine) {
    for (const auto& preset : presetLibrary()) {
        EXPECT_TRUE(preset.sentence.ends_with('.')) << preset.name;
        EXPECT_LE(preset.sentence.size(), 76U) << preset.name;
    }
}

TEST(PresetLibrary, IsInTheFormThatIsWritten) {
    for (const auto& preset : presetLibrary()) {
        const auto written = documentOf(preset).write();
        EXPECT_TRUE(std::ranges::equal(written, preset.document)) << preset.name;
    }
}

TEST(PresetLibrary, HasRangesThatAreFewCards) {
    const std::map<std::string_view, std::size_t> cards{{"pedal-from-64", 2},   {"bass-split", 4},
                                                        {"three-zones", 8},     {"octave-doubled", 2},
                                                        {"whole-tone-down", 2}, {"power-chords", 7}};
    for (const auto& [name, count] : cards) {
        const auto preset = std::ranges::find(presetLibrary(), name, &LibraryPreset::name);
        ASSERT_NE(preset, presetLibrary().end()) << name;
        EXPECT_EQ(runsOf(documentOf(*preset).rules).size(), count) << name;
    }
}

TEST(PresetLibrary, CanBeMadeInTheEditorAsItIs) {
    for (const auto& preset : presetLibrary()) {
        for (const auto& rule : documentOf(preset).rules) {
            EXPECT_EQ(ruleFromEntry(entryFromRule(rule)), rule) << preset.name << ", " << rule.name;
        }
    }
}

/// But for what a host of VST3 plug-ins may not deliver: some wait for that on purpose.
TEST(PresetLibrary, GetsNoAdvice) {
    for (const auto& preset : presetLibrary()) {
        const auto rules = documentOf(preset).rules;
        for (const auto& advice : adviseOn(rules)) {
            EXPECT_EQ(advice.kind, Advice::Kind::notInVST3)
                << preset.name << ", " << adviceText(rules, advice);
        }
    }
}

TEST(PresetLibrary, HasATestAndARecipeWithAPictureForEach) {
    const auto bytes = readWholeFile(QUILLO_RECIPES);
    const std::string recipes(bytes.begin(), bytes.end());
    for (const auto& preset : presetLibrary()) {
        const std::string name(preset.name);
        EXPECT_TRUE(fs::exists(std::string(QUILLO_PRESETS "/") + name + ".test")) << name;
        EXPECT_THAT(recipes, HasSubstr("\n`" + name + ".json`\n"));
        EXPECT_THAT(recipes, HasSubstr("](images/recipe-" + name + ".png)\n"));
    }
}

}  // namespace
}  // namespace quillo
