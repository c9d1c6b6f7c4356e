// SPDX-License-Identifier: GPL-3.0-or-later
// A host's other threads at work while its audio thread runs the plug-in.
#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>

#include "hosts/lv2/LV2TestHost.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

TEST(LV2Threads, StateIsRestoredSavedAndEditedWhileBlocksAreRun) {
    const auto one = PluginData{{rule(onNoteOn(), send(noteOn(0, 61, 5), 10))}}.write();
    const auto other =
        PluginData{{rule(onHost(HostTransportTriggerVariantsV2::Start), send(systemExclusive({1, 2, 3, 4})))}}
            .write();
    LV2TestHost host;
    host.activate();
    std::atomic<bool> done{false};
    std::atomic<int> blocks{0};
    std::set<Bytes> heard;
    std::atomic<std::size_t> kinds{0};
    std::thread audio([&] {
        LV2Sequence events;
        while (!done) {
            events.clear().addPosition(1, blocks % 2 == 0 ? 1.0 : 0.0, 0).addMIDI(3, {0x90, 60, 1});
            host.run(64, events);
            for (const auto& message : host.take()) {
                heard.insert(message.bytes);
            }
            kinds = heard.size();
            ++blocks;
        }
    });
    for (int i = 0; i < 200 || blocks < 200 || kinds < 3; ++i) {
        const auto& document = i % 2 == 0 ? one : other;
        EXPECT_EQ(host.load(document), LV2_STATE_SUCCESS);
        EXPECT_EQ(host.save(), document);
        host.unit().onRulesChanged({});
    }
    done = true;
    audio.join();
    host.run(64);
    EXPECT_EQ(heard, (std::set<Bytes>{{0x90, 60, 1}, {0x90, 61, 5}, {0xF0, 1, 2, 3, 4, 0xF7}}));
    EXPECT_GE(host.stateChanges, 1);
}

TEST(LV2Threads, AnInstanceIsMadeAndRestoredOnAnyThread) {
    std::unique_ptr<LV2TestHost> host;
    std::thread([&] {
        host = std::make_unique<LV2TestHost>();
        host->loadRules({rule(onNoteOn(), send(noteOn(0, 61, 5)))});
    }).join();
    host->activate();
    host->run(64, Bytes{0x90, 60, 1});
    EXPECT_EQ(host->take().size(), 2U);
}

}  // namespace
}  // namespace quillo
