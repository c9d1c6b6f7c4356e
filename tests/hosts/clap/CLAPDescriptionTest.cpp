// SPDX-License-Identifier: GPL-3.0-or-later
// What a host learns of the plug-in before it plays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "hosts/clap/CLAPTestHost.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;

TEST(CLAPDescription, TheFactoryHasOnePluginWithALastingName) {
    const CLAPBinary binary;
    const auto& factory = binary.factory();
    EXPECT_TRUE(clap_version_is_compatible(binary.entry().clap_version));
    EXPECT_EQ(factory.get_plugin_count(&factory), 1U);
    const auto* descriptor = factory.get_plugin_descriptor(&factory, 0);
    ASSERT_NE(descriptor, nullptr);
    EXPECT_STREQ(descriptor->id, "midi-quillo.midi-quillo");
    EXPECT_STREQ(descriptor->name, "MIDI Quillo");
    EXPECT_STREQ(descriptor->version, QUILLO_VERSION);
    EXPECT_EQ(factory.get_plugin_descriptor(&factory, 1), nullptr);
}

TEST(CLAPDescription, ThePluginIsANoteEffect) {
    const CLAPBinary binary;
    const auto* descriptor = binary.factory().get_plugin_descriptor(&binary.factory(), 0);
    std::vector<std::string> features;
    for (const auto* const* feature = descriptor->features; *feature != nullptr; ++feature) {
        features.emplace_back(*feature);
    }
    EXPECT_THAT(features, ElementsAre("note-effect", "utility"));
}

TEST(CLAPDescription, TheBinaryHasNoOtherFactory) {
    const CLAPBinary binary;
    EXPECT_EQ(binary.entry().get_factory("clap.another-factory"), nullptr);
    EXPECT_EQ(binary.entry().get_factory(nullptr), nullptr);
}

TEST(CLAPDescription, TheFactoryMakesNothingElseAndForNobody) {
    const CLAPBinary binary;
    const auto& factory = binary.factory();
    clap_host_t host{};
    host.clap_version = CLAP_VERSION;
    EXPECT_EQ(factory.create_plugin(&factory, &host, "another"), nullptr);
    EXPECT_EQ(factory.create_plugin(&factory, &host, nullptr), nullptr);
    EXPECT_EQ(factory.create_plugin(&factory, nullptr, clapId), nullptr);
    host.clap_version = {0, 9, 9};
    EXPECT_EQ(factory.create_plugin(&factory, &host, clapId), nullptr);
}

TEST(CLAPDescription, ItHasOneNotePortEachWayThatPrefersMIDI) {
    const CLAPTestHost host;
    const auto& ports = host.extension<clap_plugin_note_ports_t>(CLAP_EXT_NOTE_PORTS);
    EXPECT_EQ(ports.count(host.plugin, true), 1U);
    EXPECT_EQ(ports.count(host.plugin, false), 1U);
    clap_note_port_info_t in{};
    clap_note_port_info_t out{};
    ASSERT_TRUE(ports.get(host.plugin, 0, true, &in));
    ASSERT_TRUE(ports.get(host.plugin, 0, false, &out));
    EXPECT_EQ(in.supported_dialects, std::uint32_t{CLAP_NOTE_DIALECT_MIDI | CLAP_NOTE_DIALECT_CLAP});
    EXPECT_EQ(in.preferred_dialect, std::uint32_t{CLAP_NOTE_DIALECT_MIDI});
    EXPECT_EQ(out.supported_dialects, std::uint32_t{CLAP_NOTE_DIALECT_MIDI});
    EXPECT_EQ(out.preferred_dialect, std::uint32_t{CLAP_NOTE_DIALECT_MIDI});
    EXPECT_STREQ(out.name, "MIDIQuillo");
    EXPECT_NE(in.id, out.id);
    EXPECT_FALSE(ports.get(host.plugin, 1, true, &in));
    EXPECT_FALSE(ports.get(host.plugin, 0, true, nullptr));
}

TEST(CLAPDescription, ItHasNoParametersAndNoAudio) {
    const CLAPTestHost host;
    EXPECT_EQ(host.plugin->get_extension(host.plugin, "clap.params"), nullptr);
    EXPECT_EQ(host.plugin->get_extension(host.plugin, "clap.audio-ports"), nullptr);
    EXPECT_EQ(host.plugin->get_extension(host.plugin, nullptr), nullptr);
}

}  // namespace
}  // namespace quillo
