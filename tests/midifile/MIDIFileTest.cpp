// SPDX-License-Identifier: GPL-3.0-or-later
#include "midifile/MIDIFile.hpp"

#include <gmock/gmock.h>

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
