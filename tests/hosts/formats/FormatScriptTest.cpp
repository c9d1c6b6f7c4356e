// SPDX-License-Identifier: GPL-3.0-or-later
// The scripts are played through the renderer that all formats share, before any format plays them.
#include <gtest/gtest.h>

#include <algorithm>

#include "hosts/adapter/HostedUnit.hpp"
#include "hosts/formats/FormatScript.hpp"

namespace quillo {
namespace {

using namespace test;

std::vector<ScriptMessage> playedByTheRenderer(const FormatScript& script,
                                               const std::vector<std::uint32_t>& blocks) {
    HostedUnit hosted;
    EXPECT_EQ(hosted.restore(script.state), std::nullopt);
    EXPECT_EQ(hosted.activate(scriptSampleRate, *std::ranges::max_element(blocks)), std::nullopt);
    auto& renderer = hosted.renderer();
    std::vector<ScriptMessage> sent;
    auto told = script.transport.begin();
    auto message = script.messages.begin();
    for (const auto frames : blocks) {
        const auto start = renderer.now();
        const auto offset = [start](SampleTime time) { return static_cast<std::uint32_t>(time - start); };
        renderer.begin(frames);
        for (;;) {
            const bool tells = told != script.transport.end() && told->time < start + frames;
            const bool sends = message != script.messages.end() && message->time < start + frames;
            if (tells && (!sends || told->time <= message->time)) {
                renderer.tellTransport(offset(told->time), told->moves ? AUHostTransportStateMoving : 0,
                                       told->position);
                ++told;
            } else if (sends) {
                renderer.receive(offset(message->time), message->bytes);
                ++message;
            } else {
                break;
            }
        }
        EXPECT_EQ(renderer.end(), noErr);
        for (const auto& out : renderer.outgoing().inTimeOrder()) {
            sent.push_back({start + out.offset, copyOf(out.bytes)});
        }
    }
    return sent;
}

class FormatScripts : public testing::TestWithParam<FormatScript> {};

INSTANTIATE_TEST_SUITE_P(All, FormatScripts, testing::ValuesIn(formatScripts()),
                         [](const auto& script) { return script.param.name; });

TEST_P(FormatScripts, TheRendererSendsWhatTheUnitSendsWhateverTheLengthsOfTheBlocks) {
    expectAsTheUnit(GetParam(), [](const auto& blocks) { return playedByTheRenderer(GetParam(), blocks); });
}

TEST_P(FormatScripts, BlocksWithoutFramesChangeNothing) {
    std::vector<std::uint32_t> blocks;
    for (const auto frames : randomBlocks(GetParam().end, 200, 1)) {
        blocks.insert(blocks.end(), {frames, 0});
    }
    EXPECT_EQ(playedByTheRenderer(GetParam(), blocks), playedByTheUnit(GetParam()));
}

TEST(FormatScript, TheTransportFiresOnceForEachStartContinueStopAndJump) {
    const auto script = formatScript("Transport");
    std::vector<ScriptMessage> expected{{100, {0xC0, 1}}, {5000, {0xC0, 2}}};
    for (const auto& [time, controller] : std::vector<std::pair<SampleTime, std::uint8_t>>{{1000, 20},
                                                                                           {2500, 22},
                                                                                           {3000, 21},
                                                                                           {4000, 21},
                                                                                           {4800, 22},
                                                                                           {5001, 20},
                                                                                           {7000, 22},
                                                                                           {7010, 21},
                                                                                           {7020, 22},
                                                                                           {9000, 21},
                                                                                           {13000, 20}}) {
        expected.push_back({time, {0xB0, controller, 1}});
    }
    std::ranges::sort(expected, {}, &ScriptMessage::time);
    EXPECT_EQ(playedByTheUnit(script), expected);
}

}  // namespace
}  // namespace quillo
