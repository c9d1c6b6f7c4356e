// SPDX-License-Identifier: GPL-3.0-or-later
// The preset library as lilv hands it to hosts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "hosts/lv2/LV2TestHost.hpp"
#include "presets/PresetLibrary.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::Contains;
using testing::Pair;
using testing::SizeIs;

using State = std::unique_ptr<LilvState, decltype([](LilvState* state) { ::lilv_state_free(state); })>;

std::string uriOf(const LibraryPreset& preset) {
    return "urn:midi-quillo:lv2#preset-" + std::string(preset.name);
}

/// Bytes of a preset file.
Bytes bytesOf(const LibraryPreset& preset) {
    return {preset.document.begin(), preset.document.end()};
}

class LV2Presets : public testing::TestWithParam<const char*> {
protected:
    /// What a host lists: the label of each preset, under the preset's name.
    [[nodiscard]] std::map<std::string, std::string> listed() const {
        const auto wanted = world.uri("http://lv2plug.in/ns/ext/presets#Preset");
        std::map<std::string, std::string> labels;
        auto* presets = ::lilv_plugin_get_related(world.plugin(GetParam()), wanted.get());
        LILV_FOREACH(nodes, at, presets) {
            const auto* preset = ::lilv_nodes_get(presets, at);
            labels.emplace(::lilv_node_as_uri(preset), labelOf(preset));
        }
        ::lilv_nodes_free(presets);
        return labels;
    }

    [[nodiscard]] std::string labelOf(const LilvNode* node) const {
        const LV2World::Node label(
            ::lilv_world_get(world.get(), node, world.uri(LILV_NS_RDFS "label").get(), nullptr));
        return label ? ::lilv_node_as_string(label.get()) : "";
    }

    LV2TestHost host{GetParam()};
    const LV2World& world = host.world();
};

INSTANTIATE_TEST_SUITE_P(Both, LV2Presets, testing::Values(lv2Plain, lv2Stereo),
                         [](const auto& uri) { return uri.param == lv2Plain ? "Plain" : "Stereo"; });

TEST_P(LV2Presets, AreTheLibraryUnderNamesForReading) {
    const auto labels = listed();
    EXPECT_THAT(labels, SizeIs(presetLibrary().size()));
    EXPECT_THAT(labels, Contains(Pair("urn:midi-quillo:lv2#preset-pedal-from-64", "Pedal from 64")));
    for (const auto& preset : presetLibrary()) {
        EXPECT_TRUE(labels.contains(uriOf(preset))) << preset.name;
    }
}

TEST_P(LV2Presets, StandInABankForEachTask) {
    const auto bankOf = world.uri("http://lv2plug.in/ns/ext/presets#bank");
    for (const auto& preset : presetLibrary()) {
        const LV2World::Node bank(
            ::lilv_world_get(world.get(), world.uri(uriOf(preset).c_str()).get(), bankOf.get(), nullptr));
        ASSERT_NE(bank, nullptr) << preset.name;
        EXPECT_EQ(labelOf(bank.get()), preset.task);
    }
}

TEST_P(LV2Presets, RestoreTheRulesOfTheirFiles) {
    for (const auto& preset : presetLibrary()) {
        const auto uri = world.uri(uriOf(preset).c_str());
        EXPECT_EQ(::lilv_world_load_resource(world.get(), uri.get()), 1) << preset.name;
        const State state(::lilv_state_new_from_world(world.get(), &lv2Map(), uri.get()));
        ASSERT_NE(state, nullptr) << preset.name;
        ::lilv_state_restore(state.get(), host.instance(), nullptr, nullptr, 0, nullptr);
        EXPECT_EQ(host.save(), bytesOf(preset)) << preset.name;
    }
}

}  // namespace
}  // namespace quillo
