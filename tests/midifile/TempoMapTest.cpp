// SPDX-License-Identifier: GPL-3.0-or-later
#include "midifile/TempoMap.hpp"

#include <gmock/gmock.h>

#include <limits>
#include <random>

#include "support/MIDIFileBytes.hpp"

namespace quillo {
namespace {

using Kind = MIDIFileEvent::Kind;
using fixture::hex;

TempoMap constantTempo(std::uint16_t ticksPerQuarter, std::uint32_t tempo, std::uint32_t sampleRate) {
    return {TicksPerQuarter{ticksPerQuarter}, std::vector<TempoChange>{{0, tempo}}, sampleRate};
}

TEST(TempoMap, PlaysAt120QuartersAMinuteUntilTheFirstTempo) {
    const TempoMap map(TicksPerQuarter{480}, {}, 48000);
    EXPECT_EQ(map.sampleTime(0), 0);
    EXPECT_EQ(map.sampleTime(1), 50);
    EXPECT_EQ(map.sampleTime(480), 24000);
    EXPECT_EQ(map.sampleTime(57'600), 2'880'000);
}

TEST(TempoMap, PutsATickOnTheNearestSampleHalvesUp) {
    const auto map = constantTempo(1, 1'000'000, 1);
    EXPECT_EQ(map.sampleTime(3), 3);
    const auto halves = constantTempo(2, 1'000'000, 1);
    EXPECT_EQ(halves.sampleTime(1), 1);
    EXPECT_EQ(halves.sampleTime(2), 1);
    EXPECT_EQ(halves.sampleTime(3), 2);
    const auto thirds = constantTempo(3, 1'000'000, 1);
    EXPECT_EQ(thirds.sampleTime(1), 0);
    EXPECT_EQ(thirds.sampleTime(2), 1);
}

TEST(TempoMap, PutsASampleOnTheNearestTickHalvesDown) {
    const auto map = constantTempo(1, 2'000'000, 2);
    EXPECT_EQ(map.tick(0), 0);
    EXPECT_EQ(map.tick(1), 0);
    EXPECT_EQ(map.tick(2), 0);
    EXPECT_EQ(map.tick(3), 1);
    EXPECT_EQ(map.tick(5), 1);
    EXPECT_EQ(map.tick(6), 1);
    EXPECT_EQ(map.tick(7), 2);
}

TEST(TempoMap, PutsWhatLiesBeforeTheStartOnTickZero) {
    EXPECT_EQ(constantTempo(480, 500'000, 48000).tick(-1000), 0);
}

TEST(TempoMap, FollowsTempoChanges) {
    const std::vector<TempoChange> changes{{480, 1'000'000}, {960, 250'000}};
    const TempoMap map(TicksPerQuarter{480}, changes, 48000);
    EXPECT_EQ(map.sampleTime(479), 23950);
    EXPECT_EQ(map.sampleTime(480), 24000);
    EXPECT_EQ(map.sampleTime(481), 24100);
    EXPECT_EQ(map.sampleTime(960), 72000);
    EXPECT_EQ(map.sampleTime(962), 72050);
    EXPECT_EQ(map.tick(23950), 479);
    EXPECT_EQ(map.tick(24100), 481);
    EXPECT_EQ(map.tick(72050), 962);
}

TEST(TempoMap, TakesTheLastOfSeveralTemposAtOneTick) {
    const std::vector<TempoChange> changes{{0, 1'000'000}, {0, 250'000}, {480, 1}, {480, 500'000}};
    const TempoMap map(TicksPerQuarter{480}, changes, 48000);
    EXPECT_EQ(map.sampleTime(480), 12000);
    EXPECT_EQ(map.sampleTime(960), 36000);
}

TEST(TempoMap, GathersNoErrorOverManyTempoChanges) {
    std::vector<TempoChange> changes;
    changes.reserve(90'000);
    for (Tick tick = 0; tick < 90'000; ++tick) {
        changes.push_back({tick, 500'001});
    }
    const TempoMap changing(TicksPerQuarter{7}, changes, 44100);
    const auto constant = constantTempo(7, 500'001, 44100);
    for (Tick tick = 89'000; tick < 91'000; ++tick) {
        ASSERT_EQ(changing.sampleTime(tick), constant.sampleTime(tick));
    }
}

TEST(TempoMap, CountsFramesOfATimeCodeWhateverTheTempo) {
    const std::vector<TempoChange> changes{{0, 1}};
    EXPECT_EQ(TempoMap({TicksPerFrame{24, 4}}, changes, 48000).sampleTime(96), 48000);
    EXPECT_EQ(TempoMap({TicksPerFrame{25, 40}}, changes, 48000).sampleTime(1), 48);
    EXPECT_EQ(TempoMap({TicksPerFrame{30, 80}}, changes, 48000).sampleTime(2400), 48000);
}

TEST(TempoMap, TakesFramesPerSecond29For30000In1001Seconds) {
    const TempoMap map(TicksPerFrame{29, 2}, {}, 48000);
    EXPECT_EQ(map.sampleTime(60'000), 48'048'000);
    EXPECT_EQ(map.sampleTime(1), 801);
    EXPECT_EQ(map.tick(48'048'000), 60'000);
}

TEST(TempoMap, BringsEveryTickBackWhereSamplesAreFinerThanTicks) {
    const std::vector<std::uint32_t> rates{1000, 44100, 48000, 96000, 768000};
    for (const auto rate : rates) {
        for (const std::uint32_t tempo : {250'000u, 499'999u, 500'000u, 1'234'567u, 16'777'215u}) {
            const auto map = constantTempo(120, tempo, rate);
            for (Tick tick = 0; tick < 20'000; ++tick) {
                ASSERT_EQ(map.tick(map.sampleTime(tick)), tick) << rate << " " << tempo;
            }
        }
    }
}

TEST(TempoMap, BringsEveryTickBackWhereATickIsExactlyOneSample) {
    const std::vector<TempoChange> changes{{0, 1'500'000}, {1, 1'000'000}};
    const TempoMap map(TicksPerQuarter{1000}, changes, 1000);
    EXPECT_EQ(map.sampleTime(1), 2);
    for (Tick tick = 0; tick < 5000; ++tick) {
        ASSERT_EQ(map.tick(map.sampleTime(tick)), tick);
    }
}

TEST(TempoMap, BringsEveryTickBackAcrossRandomTempoChanges) {
    std::mt19937 random(1);
    std::uniform_int_distribution<std::uint32_t> tempo(22'000, 2'000'000);
    std::uniform_int_distribution<Tick> distance(1, 40);
    for (int round = 0; round < 50; ++round) {
        std::vector<TempoChange> changes;
        for (Tick tick = 0; tick < 4000; tick += distance(random)) {
            changes.push_back({tick, tempo(random)});
        }
        const TempoMap map(TicksPerQuarter{960}, changes, 44100);
        for (Tick tick = 0; tick < 4100; ++tick) {
            ASSERT_EQ(map.tick(map.sampleTime(tick)), tick) << "round " << round;
        }
    }
}

TEST(TempoMap, NeverGoesBackWhereTicksAreFinerThanSamples) {
    const auto map = constantTempo(32767, 20'000, 1000);
    for (Tick tick = 1; tick < 100'000; ++tick) {
        ASSERT_LE(map.sampleTime(tick - 1), map.sampleTime(tick));
    }
    for (std::int64_t sample = 0; sample < 1000; ++sample) {
        ASSERT_EQ(map.sampleTime(map.tick(sample)), sample);
    }
}

TEST(TempoMap, StopsAtTheLatestSampleTimeInsteadOfOverflowing) {
    const auto map = constantTempo(1, 16'777'215, 768'000);
    EXPECT_EQ(map.sampleTime(std::numeric_limits<Tick>::max()), TempoMap::latestSampleTime);
    EXPECT_LT(map.sampleTime(600'000'000), TempoMap::latestSampleTime);
    const auto fine = constantTempo(32767, 1, 1000);
    EXPECT_EQ(fine.tick(std::numeric_limits<std::int64_t>::max()), std::numeric_limits<Tick>::max());
}

TEST(TempoChanges, AreTheTempoEventsOfATrack) {
    const MIDITrack track{{{0, Kind::meta, hex("51 07 a1 20")},
                           {5, Kind::channel, hex("90 3c 64")},
                           {9, Kind::meta, hex("51 00 00 01")}},
                          9};
    const auto changes = tempoChangesOf(track);
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_EQ(changes[0].tick, 0);
    EXPECT_EQ(changes[0].microsecondsPerQuarter, 500'000u);
    EXPECT_EQ(changes[1].tick, 9);
    EXPECT_EQ(changes[1].microsecondsPerQuarter, 1u);
}

}  // namespace
}  // namespace quillo
