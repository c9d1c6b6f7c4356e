// SPDX-License-Identifier: GPL-3.0-or-later
// The scripts are played through the renderer that all formats share, before any format plays them.
#include <gtest/gtest.h>

#include <algorithm>

#include "hosts/formats/FormatScript.hpp"
#include "session/Session.hpp"
#include "support/TestOutput.hpp"

namespace quillo {
namespace {

using namespace test;

std::vector<ScriptMessage> playedByTheRenderer(const FormatScript& script,
                                               const std::vector<std::uint32_t>& blocks) {
    Session session;
    EXPECT_EQ(session.restore(script.state), std::nullopt);
    EXPECT_EQ(session.setSampleRate(scriptSampleRate), std::nullopt);
    auto& renderer = session.renderer();
    TestOutput output;
    std::vector<ScriptMessage> sent;
    auto told = script.transport.begin();
    auto message = script.messages.begin();
    for (const auto frames : blocks) {
        const auto start = renderer.now();
        const auto offset = [start](SampleTime time) { return static_cast<std::uint32_t>(time - start); };
        renderer.begin(frames, output);
        for (;;) {
            const bool tells = told != script.transport.end() && told->time < start + frames;
            const bool sends = message != script.messages.end() && message->time < start + frames;
            if (tells && (!sends || told->time <= message->time)) {
                renderer.reportTransport(offset(told->time), {.isMoving = told->moves}, told->position);
                ++told;
            } else if (sends) {
                renderer.receive(offset(message->time), message->bytes);
                ++message;
            } else {
                break;
            }
        }
        EXPECT_EQ(renderer.end(), noErr);
        for (auto& [at, bytes] : output.take()) {
            sent.push_back({start + at, std::move(bytes)});
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
