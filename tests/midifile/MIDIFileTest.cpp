// SPDX-License-Identifier: GPL-3.0-or-later
#include "midifile/MIDIFile.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/MIDIFileBytes.hpp"

namespace quillo {
namespace {

using Kind = MIDIFileEvent::Kind;
using fixture::hex;

MIDIFileEvent note(Tick tick, std::uint8_t number) {
    return {tick, Kind::channel, {0x90, number, 100}};
}

TEST(MergedTracks, StandInOrderOfTicksThenTracksThenTheirOwnOrder) {
    const MIDITrack first{{note(0, 1), note(10, 2), note(10, 3)}, 30};
    const MIDITrack second{{note(0, 4), note(5, 5), note(10, 6)}, 20};
    EXPECT_THAT(merged({first, second}).events, testing::ElementsAre(note(0, 1), note(0, 4), note(5, 5),
                                                                     note(10, 2), note(10, 3), note(10, 6)));
}

TEST(MergedTracks, EndWithTheLatest) {
    EXPECT_EQ(merged({{{}, 30}, {{}, 70}, {{}, 20}}).endTick, 70);
    EXPECT_EQ(merged({}).endTick, 0);
}

MIDIFileEvent tempo(Tick tick, const std::string& microseconds) {
    return {tick, Kind::meta, hex("51 " + microseconds)};
}

TEST(OneTrack, HasTheTracksOfFormats0And1Together) {
    const std::vector<MIDITrack> tracks{{{note(0, 1), note(10, 2)}, 30}, {{note(5, 3)}, 20}};
    for (const auto format : {std::uint16_t{0}, std::uint16_t{1}}) {
        EXPECT_EQ(asOneTrack({format, {}, tracks}), merged(tracks));
    }
}

TEST(OneTrack, HasTheTracksOfFormat2OneAfterTheOther) {
    EXPECT_EQ(asOneTrack({2, {}, {{{note(0, 1), note(10, 2)}, 30}, {{note(5, 3)}, 20}, {{note(0, 4)}, 1}}}),
              (MIDITrack{{note(0, 1), note(10, 2), note(35, 3), note(50, 4)}, 51}));
}

/// Another look at all events for each track would take longer than a test may.
TEST(OneTrack, LooksAtEachEventOnceHoweverManyTracksOfFormat2Follow) {
    constexpr std::size_t most = 65'535;
    std::vector<MIDITrack> tracks(most, MIDITrack{{}, 1});
    tracks.front() = {std::vector<MIDIFileEvent>(1'000'000, note(0, 1)), 1};
    const auto all = asOneTrack({2, {}, tracks});
    EXPECT_EQ(all.events.size(), 1'000'000U);
    EXPECT_EQ(all.endTick, most);
}

TEST(OneTrack, GivesEachTrackOfFormat2TheTempoThatItHasByItself) {
    EXPECT_EQ(asOneTrack({2,
                          {},
                          {{{note(0, 1)}, 10},
                           {{tempo(0, "0f 42 40")}, 10},
                           {{tempo(0, "03 d0 90"), note(0, 2)}, 10},
                           {{note(0, 3), tempo(5, "0f 42 40")}, 10}}}),
              (MIDITrack{{note(0, 1), tempo(10, "0f 42 40"), tempo(20, "03 d0 90"), note(20, 2),
                          tempo(30, "07 a1 20"), note(30, 3), tempo(35, "0f 42 40")},
                         40}));
}

TEST(Tempo, IsReadFromATempoEvent) {
    EXPECT_EQ(tempoOf({0, Kind::meta, hex("51 07 a1 20")}), 500'000u);
    EXPECT_EQ(tempoOf({0, Kind::meta, hex("51 ff ff ff")}), 16'777'215u);
}

TEST(Tempo, IsReadFromNothingElse) {
    EXPECT_EQ(tempoOf({0, Kind::meta, hex("58 04 02 18")}), std::nullopt);
    EXPECT_EQ(tempoOf({0, Kind::systemExclusive, hex("51 07 a1 20")}), std::nullopt);
    EXPECT_EQ(tempoOf({0, Kind::meta, hex("51 07 a1")}), std::nullopt);
}

}  // namespace
}  // namespace quillo
