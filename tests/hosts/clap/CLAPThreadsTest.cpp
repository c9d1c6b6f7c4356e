// SPDX-License-Identifier: GPL-3.0-or-later
// The host's main thread at work while its audio thread processes.
#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>

#include "hosts/clap/CLAPTestHost.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

TEST(CLAPThreads, StateIsLoadedAndSavedWhileBlocksAreProcessed) {
    const auto one = PluginData{{rule(onNoteOn(), send(noteOn(0, 61, 5), 10))}}.write();
    const auto other =
        PluginData{{rule(onHost(HostTransportTriggerVariantsV2::Start), send(systemExclusive({1, 2, 3, 4})))}}
            .write();
    CLAPTestHost host;
    host.start();
    std::atomic<bool> done{false};
    std::atomic<int> blocks{0};
    std::set<Bytes> heard;
    std::atomic<std::size_t> kinds{0};
    std::thread audio([&] {
        while (!done) {
            const auto transport = clapTransport(blocks % 2 == 0 ? CLAP_TRANSPORT_IS_PLAYING : 0, 0.0);
            CLAPEvents events;
            events.addMIDI(3, {0x90, 60, 1});
            EXPECT_NE(host.process(64, events, &transport), CLAP_PROCESS_ERROR);
            for (const auto& message : host.take()) {
                heard.insert(message.bytes);
            }
            kinds = heard.size();
            ++blocks;
        }
    });
    for (int i = 0; i < 200 || blocks < 200 || kinds < 3; ++i) {
        const auto& document = i % 2 == 0 ? one : other;
        EXPECT_TRUE(host.load(document));
        EXPECT_EQ(host.save(), document);
    }
    done = true;
    audio.join();
    EXPECT_EQ(heard, (std::set<Bytes>{{0x90, 60, 1}, {0x90, 61, 5}, {0xF0, 1, 2, 3, 4, 0xF7}}));
}

TEST(CLAPThreads, AnInstanceIsMadeOnAnyThread) {
    const CLAPBinary binary;
    clap_host_t host{};
    host.clap_version = CLAP_VERSION;
    const clap_plugin_t* plugin = nullptr;
    std::thread([&] { plugin = binary.factory().create_plugin(&binary.factory(), &host, clapId); }).join();
    ASSERT_NE(plugin, nullptr);
    EXPECT_TRUE(plugin->init(plugin));
    plugin->destroy(plugin);
}

}  // namespace
}  // namespace quillo
