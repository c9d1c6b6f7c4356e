// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/PlayedFiles.hpp"

#include <gmock/gmock.h>

#include <random>
#include <utility>
#include <vector>

#include "midi/MessageLength.hpp"
#include "offline/OfflineHost.hpp"
#include "platform/InStableOrder.hpp"
#include "support/RandomRules.hpp"

namespace quillo {
namespace {

using testing::ElementsAreArray;

constexpr std::uint32_t sampleRate = 48000;

/// A file of a few hundred messages, some of them at one time.
MIDIFile randomTake(test::RandomRules& rules, unsigned seed) {
    std::mt19937 random(seed);
    MIDITrack track;
    for (int count = 0; count < 200; ++count) {
        const auto [status, data1, data2] = rules.message();
        std::vector<std::uint8_t> bytes{status, static_cast<std::uint8_t>(data1 & 0x7FU),
                                        static_cast<std::uint8_t>(data2 & 0x7FU)};
        bytes.resize(messageLength(status));
        const auto kind = bytes.size() == 1 ? MIDIFileEvent::Kind::escape : MIDIFileEvent::Kind::channel;
        track.endTick += static_cast<Tick>(random() % 4 * 30);
        track.events.push_back({track.endTick, kind, std::move(bytes)});
    }
    return {0, TicksPerQuarter{}, {track}};
}

/// What leaves, without who sent it.
std::vector<TimedMessage> heard(const std::vector<Departure>& departures) {
    std::vector<TimedMessage> messages;
    for (const auto& departure : departures) {
        messages.push_back({departure.time, departure.message});
    }
    return messages;
}

TEST(PlayedFiles, GiveEventByEventWhatRenderingMakesOfTheWholeFile) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        test::RandomRules random(seed);
        const auto rules = random.list();
        const Score score(randomTake(random, seed), sampleRate);
        OfflineHost host({}, rules);
        EngineProbe probe(rules, sampleRate);
        const auto rendered =
            inStableOrder(host.play(score.messages(), score.end()).outputs, &TimedMessage::time);
        ASSERT_THAT(heard(played(probe, eventsOf(score))), ElementsAreArray(rendered)) << "seed " << seed;
    }
}

}  // namespace
}  // namespace quillo
