// SPDX-License-Identifier: GPL-3.0-or-later
// The plug-in in a sequencer, whose transport this program starts, and what leaves it there: the probe behind
// it writes that to the file that QUILLO_PROBE names.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "hosts/clap/qtractor/QtractorSession.hpp"
#include "midi/MessageLength.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

constexpr SampleTime hundredMilliseconds = 4800;

/// The next line of the probe.
ScriptMessage next(std::istream& probe) {
    std::string line;
    std::getline(probe, line);
    std::istringstream words(line);
    ScriptMessage message;
    words >> message.time >> std::hex;
    for (unsigned byte = 0; words >> byte;) {
        message.bytes.push_back(static_cast<std::uint8_t>(byte));
    }
    message.bytes.resize(messageLength(message.bytes.at(0)));
    return message;
}

bool isEcho(const ScriptMessage& message) {
    return message.bytes[0] == 0x90 && message.bytes[2] == 5;
}

bool isOfTransport(const ScriptMessage& message) {
    return message.bytes == Bytes{0xB0, 20, 1};
}

/// What comes from the clip. The sequencer adds ends of notes of its own.
bool isOfClip(const ScriptMessage& message) {
    return !isEcho(message) && !isOfTransport(message) && message.bytes[0] != 0x80;
}

/// Starts the transport; then all that the probe hears until the clip has come to its end.
std::vector<ScriptMessage> heardWhilePlaying() {
    // Opened for writing too, the pipe does not end when the host tries the probe and lets it go again.
    std::fstream probe(std::getenv("QUILLO_PROBE"), std::ios::in | std::ios::out);
    std::string line;
    std::getline(probe, line);
    EXPECT_EQ(line, "ready");
    EXPECT_EQ(std::system("echo play | jack_transport"), 0);
    std::vector<ScriptMessage> heard;
    do {
        heard.push_back(next(probe));
    } while (heard.back().bytes != sessionMessages().back().bytes);
    return heard;
}

/// A sequencer that is late leaves out blocks, with all that belongs to them, and its transport jumps
/// then. So what leaves the plug-in is measured against what came in: the probe and the plug-in see the same
/// blocks.
TEST(InQtractor, ARestoredSessionPlaysThroughThePluginToTheFrame) {
    const auto heard = heardWhilePlaying();
    std::vector<ScriptMessage> echoes;
    std::vector<ScriptMessage> expectedEchoes;
    std::vector<Bytes> clip;
    for (const auto& message : heard) {
        if (isEcho(message)) {
            echoes.push_back(message);
        } else if (isOfClip(message)) {
            clip.push_back(message.bytes);
        }
        if (isOfClip(message) && message.bytes[0] == 0x90) {
            expectedEchoes.push_back({message.time + hundredMilliseconds, {0x90, message.bytes[1], 5}});
        }
    }
    EXPECT_FALSE(echoes.empty());
    EXPECT_EQ(echoes, expectedEchoes);
    EXPECT_TRUE(isOfTransport(heard.front()));
    EXPECT_EQ(heard.front().time, 0);

    auto left = sessionMessages();
    std::erase_if(left, [](const ScriptMessage& message) { return !isOfClip(message); });
    for (const auto& bytes : clip) {
        const auto found = std::ranges::find(left, bytes, &ScriptMessage::bytes);
        ASSERT_NE(found, left.end()) << "not in this order in the clip";
        left.erase(left.begin(), found + 1);
    }
}

}  // namespace
}  // namespace quillo
