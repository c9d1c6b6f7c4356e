// SPDX-License-Identifier: GPL-3.0-or-later
// What the bundle says of the plug-in, as lilv reads it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "hosts/lv2/LV2Headers.hpp"
#include "hosts/lv2/LV2World.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

std::vector<std::string> texts(LilvNodes* nodes) {
    std::vector<std::string> result;
    LILV_FOREACH(nodes, i, nodes) {
        result.emplace_back(::lilv_node_as_string(::lilv_nodes_get(nodes, i)));
    }
    ::lilv_nodes_free(nodes);
    return result;
}

class LV2Description : public testing::TestWithParam<const char*> {
protected:
    [[nodiscard]] std::vector<std::string> ofPort(const char* symbol, const char* property) const {
        const LV2World::Node name(::lilv_new_string(world.get(), symbol));
        const auto* port = ::lilv_plugin_get_port_by_symbol(plugin, name.get());
        return texts(::lilv_port_get_value(plugin, port, world.uri(property).get()));
    }

    [[nodiscard]] std::vector<std::string> of(const char* property) const {
        return texts(::lilv_plugin_get_value(plugin, world.uri(property).get()));
    }

    LV2World world;
    const LilvPlugin* plugin = world.plugin(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Both, LV2Description, testing::Values(lv2Plain, lv2Stereo),
                         [](const auto& uri) { return uri.param == lv2Plain ? "Plain" : "Stereo"; });

TEST_P(LV2Description, IsComplete) {
    EXPECT_TRUE(::lilv_plugin_verify(plugin));
    EXPECT_THAT(of(LILV_NS_RDF "type"), UnorderedElementsAre(LV2_CORE__Plugin, LV2_CORE_PREFIX "MIDIPlugin"));
    const LV2World::Node name(::lilv_plugin_get_name(plugin));
    EXPECT_STREQ(::lilv_node_as_string(name.get()),
                 GetParam() == lv2Plain ? "MIDI Quillo" : "MIDI Quillo (stereo)");
    EXPECT_EQ(::lilv_plugin_get_num_ports(plugin), GetParam() == lv2Plain ? 2U : 6U);
}

TEST_P(LV2Description, NamesTheFeatures) {
    EXPECT_THAT(texts(::lilv_plugin_get_required_features(plugin)), UnorderedElementsAre(LV2_URID__map));
    EXPECT_THAT(texts(::lilv_plugin_get_optional_features(plugin)),
                UnorderedElementsAre(LV2_CORE__hardRTCapable, LV2_STATE__threadSafeRestore));
    EXPECT_THAT(texts(::lilv_plugin_get_extension_data(plugin)), UnorderedElementsAre(LV2_STATE__interface));
}

TEST_P(LV2Description, SaysWhatTheEventPortsTake) {
    EXPECT_THAT(ofPort("in", LV2_ATOM__supports),
                UnorderedElementsAre(LV2_MIDI__MidiEvent, LV2_TIME__Position));
    EXPECT_THAT(ofPort("out", LV2_ATOM__supports), UnorderedElementsAre(LV2_MIDI__MidiEvent));
    for (const auto* symbol : {"in", "out"}) {
        EXPECT_THAT(ofPort(symbol, LV2_ATOM__bufferType), UnorderedElementsAre(LV2_ATOM__Sequence));
        EXPECT_THAT(ofPort(symbol, "http://lv2plug.in/ns/ext/resize-port#minimumSize"),
                    UnorderedElementsAre("65536"));
        EXPECT_THAT(ofPort(symbol, LV2_CORE__designation), UnorderedElementsAre(LV2_CORE__control));
    }
    EXPECT_THAT(ofPort("out", LV2_CORE__name), UnorderedElementsAre("MIDIQuillo"));
}

TEST_P(LV2Description, NamesItsAuthorsWithAnAddressAndAPage) {
    const LV2World::Node name(::lilv_plugin_get_author_name(plugin));
    const LV2World::Node address(::lilv_plugin_get_author_email(plugin));
    const LV2World::Node page(::lilv_plugin_get_author_homepage(plugin));
    EXPECT_STREQ(::lilv_node_as_string(name.get()), "the developers of MIDI Quillo");
    ASSERT_TRUE(::lilv_node_is_uri(address.get()));
    EXPECT_THAT(::lilv_node_as_uri(address.get()), StartsWith("mailto:"));
    ASSERT_TRUE(::lilv_node_is_uri(page.get()));
    EXPECT_THAT(::lilv_node_as_uri(page.get()), MatchesRegex("(https?|file)://.+"));
}

TEST_P(LV2Description, SaysInShortAndAtLengthWhatThePluginAndItsPortsAreFor) {
    EXPECT_THAT(of(LILV_NS_DOAP "shortdesc"), ElementsAre(StartsWith("Rewrites MIDI events")));
    EXPECT_THAT(of(LILV_NS_RDFS "comment"), ElementsAre(StartsWith("A rule waits for")));
    for (std::uint32_t port = 0; port < ::lilv_plugin_get_num_ports(plugin); ++port) {
        const auto* described = ::lilv_plugin_get_port_by_index(plugin, port);
        EXPECT_THAT(texts(::lilv_port_get_value(plugin, described, world.uri(LILV_NS_RDFS "comment").get())),
                    ElementsAre(Not(IsEmpty())))
            << port;
    }
}

/// Lilv may read them as numbers that hosts compare: even, and not both 0.
TEST_P(LV2Description, HasAVersionThatHostsTakeForARelease) {
    const auto minor = std::stoi(of(LV2_CORE__minorVersion).at(0));
    const auto micro = std::stoi(of(LV2_CORE__microVersion).at(0));
    EXPECT_EQ(minor % 2, 0);
    EXPECT_EQ(micro % 2, 0);
    EXPECT_GT(minor + micro, 0);
}

}  // namespace
}  // namespace quillo
