// SPDX-License-Identifier: GPL-3.0-or-later
// The bundle that was built in a host of the world: jalv, under a JACK server without hardware.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "hosts/lv2/JalvHost.hpp"
#include "hosts/lv2/LV2TestHost.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

/// Writes these rules as a state that jalv can load.
void writeState(const std::string& folder, const char* uri, std::vector<Rule> rules) {
    LV2TestHost host(uri);
    host.loadRules(std::move(rules));
    auto* state = ::lilv_state_new_from_instance(host.world().plugin(uri), host.instance(), &lv2Map(),
                                                 nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                 LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE, nullptr);
    EXPECT_EQ(::lilv_state_save(host.world().get(), &lv2Map(), &lv2Unmap(), state, nullptr, folder.c_str(),
                                "state.ttl"),
              0);
    ::lilv_state_free(state);
}

/// What comes back to a client that feeds the plug-in: a cycle later.
std::vector<ScriptMessage> oneCycleLater(std::vector<ScriptMessage> messages) {
    for (auto& message : messages) {
        message.time += JalvHost::period;
    }
    return messages;
}

class Jalv : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Both, Jalv, testing::Values(lv2Plain, lv2Stereo),
                         [](const auto& uri) { return uri.param == lv2Plain ? "Plain" : "Stereo"; });

TEST_P(Jalv, EveryMessageComesBackAtItsFrameAndAnEchoAtIts) {
    const TemporaryFolder folder;
    writeState(folder.path().string(), GetParam(),
               {rule(onNoteOn(exactly(60)), send(noteOn(3, 61, 5), 100)),
                rule(onNoteOn(exactly(62), any, PassThroughV2::EatMatching),
                     send(systemExclusive(Bytes(1000, 0x11)), 7))});
    JalvHost host(QUILLO_LV2_PATH, GetParam(), folder.path().string());

    std::vector<ScriptMessage> sent;
    SampleTime time = 3;
    for (const auto& bytes :
         {Bytes{0x90, 60, 100}, Bytes{0x80, 60, 0}, Bytes{0xA1, 60, 7}, Bytes{0xB2, 1, 64}, Bytes{0xC3, 12},
          Bytes{0xD4, 55}, Bytes{0xE5, 1, 2}, Bytes{0xF8}, Bytes{0xFA}, Bytes{0xF2, 1, 2}, Bytes{0xFE}}) {
        sent.push_back({time, bytes});
        time += 501;
    }
    auto expected = sent;
    expected.push_back({3 + 4800, {0x93, 61, 5}});
    sent.push_back({7000, {0x90, 62, 1}});
    Bytes longMessage(1002, 0x11);
    longMessage.front() = 0xF0;
    longMessage.back() = 0xF7;
    expected.push_back({7000 + 336, longMessage});
    std::ranges::sort(expected, {}, &ScriptMessage::time);

    EXPECT_EQ(host.play(sent, SampleTime{12} * JalvHost::period), oneCycleLater(expected));
}

}  // namespace
}  // namespace quillo
