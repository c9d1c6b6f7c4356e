// SPDX-License-Identifier: GPL-3.0-or-later
// The editor's table as a host has it, in the window of a host on a display of its own.
#include "hosts/lv2/LV2UI.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <vector>

#include <lv2/instance-access/instance-access.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>

#include "engine/MIDIMessage.hpp"
#include "hosts/lv2/LV2UIInstance.hpp"
#include "platform/FatalError.hpp"
#include "realtime/CallCounter.hpp"
#include "support/HostWindow.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;
using testing::StartsWith;

class LV2UI : public testing::Test {
protected:
    using Features = std::vector<LV2_Feature>;

    /// What the host gets for an editor with these features besides its window.
    LV2UI_Handle instantiate(Features features) {
        features.push_back({LV2_UI__parent, std::bit_cast<void*>(window.handle())});
        return instantiateBare(features);
    }

    LV2UI_Handle instantiateBare(const Features& features) {
        std::vector<const LV2_Feature*> list;
        for (const auto& feature : features) {
            list.push_back(&feature);
        }
        list.push_back(nullptr);
        return table.instantiate(&table, "", "", nullptr, nullptr, &widget, list.data());
    }

    HostWindow window{60, 40, 600, 400};
    const LV2UI_Descriptor& table = *lv2UIDescriptorOf(0);
    LV2UI_Widget widget = nullptr;
};

TEST_F(LV2UI, IsOne) {
    EXPECT_STREQ(table.URI, "urn:midi-quillo:lv2#ui");
    EXPECT_EQ(lv2UIDescriptorOf(1), nullptr);
}

TEST_F(LV2UI, HasNoExtensionWithoutANameOrOfAnotherName) {
    EXPECT_NE(table.extension_data(LV2_UI__idleInterface), nullptr);
    EXPECT_NE(table.extension_data(LV2_UI__resize), nullptr);
    EXPECT_EQ(table.extension_data(nullptr), nullptr);
    EXPECT_EQ(table.extension_data("urn:test:unknown"), nullptr);
}

TEST_F(LV2UI, WithoutAnInstanceDoesNothing) {
    const auto* idle = static_cast<const LV2UI_Idle_Interface*>(table.extension_data(LV2_UI__idleInterface));
    const auto* resize = static_cast<const LV2UI_Resize*>(table.extension_data(LV2_UI__resize));
    EXPECT_EQ(idle->idle(nullptr), 0);
    EXPECT_NE(resize->ui_resize(nullptr, 600, 400), 0);
    table.port_event(nullptr, 0, 0, 0, nullptr);
    table.cleanup(nullptr);
}

#ifdef QUILLO_COUNTS_CALLS
TEST_F(LV2UI, FreesTheLongMessagesThatItsBinaryHasLetGoOf) {
    const auto* idle = static_cast<const LV2UI_Idle_Interface*>(table.extension_data(LV2_UI__idleInterface));
    idle->idle(nullptr);
    static_cast<void>(MIDIMessage::copyOf(std::vector<std::uint8_t>(1000, 0xF0)));
    const CallCounter::Scope scope;
    idle->idle(nullptr);
    EXPECT_EQ(scope.counts().frees, 2U);
}
#endif

TEST_F(LV2UI, IsNotMadeWithoutAWindowOrAPlaceForItsOwn) {
    EXPECT_EQ(table.instantiate(&table, "", "", nullptr, nullptr, &widget, nullptr), nullptr);
    EXPECT_EQ(instantiateBare({}), nullptr);
    EXPECT_EQ(table.instantiate(&table, "", "", nullptr, nullptr, nullptr, nullptr), nullptr);
}

TEST_F(LV2UI, PassesOverWhatAHostOffersWithoutANameOrAFunction) {
    LV2UI_Resize resize{nullptr, nullptr};
    LV2_URID_Map map{nullptr, nullptr};
    LV2_Options_Option options{};
    auto* instance = instantiate({{nullptr, nullptr},
                                  {LV2_UI__resize, &resize},
                                  {LV2_URID__map, &map},
                                  {LV2_OPTIONS__options, &options}});
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(window.children(), std::vector{std::bit_cast<HostWindow::Handle>(widget)});
    table.cleanup(instance);
}

/// As after an upgrade under a running host: nothing of that plug-in but its number can be touched.
TEST_F(LV2UI, OfAnotherVersionThanThePluginSaysSoAndTouchesNothing) {
    LV2InstanceAccess access;
    access.number += 1;
    access.unit = std::bit_cast<EditorUnit*>(std::uintptr_t{1});
    auto* instance = static_cast<LV2UIInstance*>(instantiate({{LV2_INSTANCE_ACCESS_URI, &access}}));
    ASSERT_NE(instance, nullptr);
    const auto& model = *instance->unit().model();
    ASSERT_TRUE(model.whyNotEditable());
    EXPECT_THAT(*model.whyNotEditable(), StartsWith("MIDI Quillo was upgraded while this host was running"));
    EXPECT_THROW(instance->unit().onRulesChanged({}), FatalError);
    const auto* idle = static_cast<const LV2UI_Idle_Interface*>(table.extension_data(LV2_UI__idleInterface));
    EXPECT_EQ(idle->idle(instance), 0);
    table.cleanup(instance);
}

TEST_F(LV2UI, SaysWhetherItHasTheSizeOfTheHostsWindow) {
    const auto* resize = static_cast<const LV2UI_Resize*>(table.extension_data(LV2_UI__resize));
    auto* instance = instantiate({});
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(resize->ui_resize(instance, 600, 400), 0);
    EXPECT_NE(resize->ui_resize(instance, 100, 100), 0);
    EXPECT_NE(resize->ui_resize(instance, -1, 400), 0);
    table.cleanup(instance);
}

TEST_F(LV2UI, OfAHostThatGrantsNoAccessSaysSo) {
    auto* instance = static_cast<LV2UIInstance*>(instantiate({}));
    ASSERT_NE(instance, nullptr);
    ASSERT_TRUE(instance->unit().model()->whyNotEditable());
    EXPECT_THAT(*instance->unit().model()->whyNotEditable(), HasSubstr("no LV2 instance access"));
    table.cleanup(instance);
}

}  // namespace
}  // namespace quillo
