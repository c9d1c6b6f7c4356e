// SPDX-License-Identifier: GPL-3.0-or-later
// What an instance does for the user whom an editor has it serve, seen through the host and the session.
#include "hosts/clap/CLAPInstance.hpp"

#include <gtest/gtest.h>

#include <memory>

#include "hosts/clap/CLAPPlugin.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

class CLAPInstanceTest : public testing::Test {
protected:
    CLAPInstanceTest() {
        plugin->init(plugin.get());
        plugin->activate(plugin.get(), 48000.0, 1, 64);
    }

    static CLAPInstanceTest& of(const clap_host_t* caller) {
        return *static_cast<CLAPInstanceTest*>(caller->host_data);
    }

    CLAPInstance& instance() { return *CLAPPlugin::instanceOf(plugin.get()); }

    clap_process_status process() {
        clap_process_t block{};
        block.frames_count = 64;
        return plugin->process(plugin.get(), &block);
    }

    int dirtyMarks = 0;
    int processRequests = 0;
    clap_host_state_t state{[](const clap_host_t* self) { ++of(self).dirtyMarks; }};
    clap_host_t host{CLAP_VERSION,
                     this,
                     "test",
                     "",
                     "",
                     "1",
                     [](const clap_host_t* self, const char* name) -> const void* {
                         return name == std::string(CLAP_EXT_STATE) ? &of(self).state : nullptr;
                     },
                     nullptr,
                     [](const clap_host_t* self) { ++of(self).processRequests; },
                     nullptr};
    std::unique_ptr<const clap_plugin_t, void (*)(const clap_plugin_t*)> plugin{
        CLAPPlugin::create(&host), [](const clap_plugin_t* created) { created->destroy(created); }};
};

TEST_F(CLAPInstanceTest, AnEditMarksTheProjectAndWakesAHostThatMayHaveFallenAsleep) {
    instance().session.onRulesChanged({rule(onNoteOn(), send(noteOn(0, 1, 1)))});
    EXPECT_EQ(dirtyMarks, 1);
    ASSERT_EQ(process(), CLAP_PROCESS_SLEEP);
    EXPECT_EQ(processRequests, 0);
    instance().session.onRulesChanged(
        {rule(onHost(HostTransportTriggerVariantsV2::Start), send(noteOn(0, 1, 1)))});
    EXPECT_EQ(dirtyMarks, 2);
    EXPECT_EQ(processRequests, 1);
}

TEST_F(CLAPInstanceTest, WhatIsSentByHandWakesTheHostWhenItComesRoundToThePlugin) {
    ASSERT_EQ(process(), CLAP_PROCESS_SLEEP);
    instance().session.onInstantMessageClick(noteOn(0, 1, 1));
    plugin->on_main_thread(plugin.get());
    EXPECT_EQ(processRequests, 1);
}

TEST_F(CLAPInstanceTest, TheUserIsToldOfASampleRateThatTheRulesCannotRunAt) {
    plugin->deactivate(plugin.get());
    EXPECT_FALSE(plugin->activate(plugin.get(), -1.0, 1, 64));
    instance().session.drain();
    EXPECT_EQ(instance().session.model()->alertErrorMessage(),
              "MIDI Quillo cannot render at a sample rate of -1.000000");
}

TEST_F(CLAPInstanceTest, TheUserIsToldOfAStateThatTheHostCannotRead) {
    const clap_istream_t stream{
        nullptr, [](const clap_istream_t*, void*, std::uint64_t) -> std::int64_t { return -1; }};
    const auto* states =
        static_cast<const clap_plugin_state_t*>(plugin->get_extension(plugin.get(), CLAP_EXT_STATE));
    EXPECT_FALSE(states->load(plugin.get(), &stream));
    instance().session.drain();
    EXPECT_EQ(instance().session.model()->alertErrorMessage(),
              "The saved rules cannot be restored: the host cannot read them.");
}

}  // namespace
}  // namespace quillo
