// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>

#include "midifile/MIDIFile.hpp"
#include "support/MIDIFileBytes.hpp"

namespace quillo {
namespace {

using Kind = MIDIFileEvent::Kind;
using fixture::Bytes;
using fixture::chunk;
using fixture::hex;
using fixture::joined;
using fixture::oneTrackFile;
using fixture::track;

/// The text of the error that reading the bytes ends with, or "read".
std::string errorOf(const Bytes& bytes) {
    try {
        static_cast<void>(readMIDIFile(bytes));
        return "read";
    } catch (const MIDIFileError& error) {
        return error.what();
    }
}

MIDITrack onlyTrackOf(const Bytes& bytes) {
    const auto file = readMIDIFile(bytes);
    EXPECT_EQ(file.tracks.size(), 1u);
    return file.tracks.at(0);
}

TEST(MIDIFileReader, ReadsFormatDivisionAndTracksInTheirOrder) {
    const auto file = readMIDIFile(joined({chunk("MThd", "00 01 00 02 00 60"),
                                           track("00 90 3c 64 60 ff 2f 00"), track("05 c1 11 00 ff 2f 00")}));
    EXPECT_EQ(file, (MIDIFile{1,
                              TicksPerQuarter{96},
                              {{{{0, Kind::channel, hex("90 3c 64")}}, 96},
                               {{{5, Kind::channel, hex("c1 11")}}, 5}}}));
}

TEST(MIDIFileReader, ReadsATimeCodeDivision) {
    const auto file = readMIDIFile(joined({chunk("MThd", "00 00 00 01 e7 28"), track("00 ff 2f 00")}));
    EXPECT_EQ(file.division, MIDIDivision(TicksPerFrame{25, 40}));
}

TEST(MIDIFileReader, KeepsTheOrderOfEventsAtOneTick) {
    const auto events = onlyTrackOf(oneTrackFile("00 90 3c 64 00 80 3c 40 00 90 3c 65 00 ff 2f 00")).events;
    EXPECT_THAT(events, testing::ElementsAre(MIDIFileEvent{0, Kind::channel, hex("90 3c 64")},
                                             MIDIFileEvent{0, Kind::channel, hex("80 3c 40")},
                                             MIDIFileEvent{0, Kind::channel, hex("90 3c 65")}));
}

TEST(MIDIFileReader, ReadsRunningStatus) {
    const auto events = onlyTrackOf(oneTrackFile("00 90 3c 64 0a 3c 00 0a c2 05 00 06 00 ff 2f 00")).events;
    EXPECT_THAT(events, testing::ElementsAre(MIDIFileEvent{0, Kind::channel, hex("90 3c 64")},
                                             MIDIFileEvent{10, Kind::channel, hex("90 3c 00")},
                                             MIDIFileEvent{20, Kind::channel, hex("c2 05")},
                                             MIDIFileEvent{20, Kind::channel, hex("c2 06")}));
}

TEST(MIDIFileReader, LetsRunningStatusGoOnBehindMetaAndSystemExclusiveEvents) {
    const auto events =
        onlyTrackOf(oneTrackFile("00 90 3c 64 00 ff 06 00 00 3d 64 00 f0 01 f7 00 3e 64 00 ff 2f 00")).events;
    ASSERT_EQ(events.size(), 5u);
    EXPECT_EQ(events[2].bytes, hex("90 3d 64"));
    EXPECT_EQ(events[4].bytes, hex("90 3e 64"));
}

TEST(MIDIFileReader, ReadsSystemExclusiveByItsLengthWhateverStandsInIt) {
    const auto events = onlyTrackOf(oneTrackFile("00 f0 05 43 f7 12 00 f7 00 90 3c 64 00 ff 2f 00")).events;
    EXPECT_THAT(events, testing::ElementsAre(MIDIFileEvent{0, Kind::systemExclusive, hex("43 f7 12 00 f7")},
                                             MIDIFileEvent{0, Kind::channel, hex("90 3c 64")}));
}

TEST(MIDIFileReader, ReadsEscapesByTheirLength) {
    const auto events =
        onlyTrackOf(oneTrackFile("00 f7 01 fa 02 f7 03 f3 01 fb 00 f7 00 00 ff 2f 00")).events;
    EXPECT_THAT(events, testing::ElementsAre(MIDIFileEvent{0, Kind::escape, hex("fa")},
                                             MIDIFileEvent{2, Kind::escape, hex("f3 01 fb")},
                                             MIDIFileEvent{2, Kind::escape, {}}));
}

TEST(MIDIFileReader, KeepsMetaEventsOfEveryTypeButEndOfTrack) {
    const auto events = onlyTrackOf(oneTrackFile("00 ff 7f 02 01 02 00 ff 00 00 05 ff 2f 00")).events;
    EXPECT_THAT(events, testing::ElementsAre(MIDIFileEvent{0, Kind::meta, hex("7f 01 02")},
                                             MIDIFileEvent{0, Kind::meta, hex("00")}));
}

TEST(MIDIFileReader, EndsATrackAtItsEndOfTrackWhateverFollowsInTheChunk) {
    const auto read = onlyTrackOf(oneTrackFile("00 90 3c 64 0a ff 2f 00 00 90 40"));
    EXPECT_EQ(read.events.size(), 1u);
    EXPECT_EQ(read.endTick, 10);
}

TEST(MIDIFileReader, EndsATrackWithoutEndOfTrackWithItsChunk) {
    const auto read = onlyTrackOf(oneTrackFile("0a 90 3c 64 0a 3c 00"));
    EXPECT_EQ(read.events.size(), 2u);
    EXPECT_EQ(read.endTick, 20);
}

TEST(MIDIFileReader, SkipsUnknownChunksAndALongerHeader) {
    const auto file = readMIDIFile(joined({chunk("MThd", "00 00 00 01 01 e0 ff ff"),
                                           chunk("XFIH", "01 02 03"), track("00 90 3c 64 00 ff 2f 00")}));
    ASSERT_EQ(file.tracks.size(), 1u);
    EXPECT_EQ(file.tracks[0].events.size(), 1u);
}

TEST(MIDIFileReader, IgnoresBytesBehindTheLastTrack) {
    EXPECT_EQ(readMIDIFile(joined({oneTrackFile("00 ff 2f 00"), hex("00 01 4d 54")})),
              readMIDIFile(oneTrackFile("00 ff 2f 00")));
}

TEST(MIDIFileReader, ReadsDeltaTimesOfUpToFourBytes) {
    EXPECT_EQ(onlyTrackOf(oneTrackFile("ff ff ff 7f ff 2f 00")).endTick, 268435455);
    EXPECT_EQ(onlyTrackOf(oneTrackFile("80 80 80 05 ff 2f 00")).endTick, 5);
}

TEST(DamagedMIDIFile, IsNotOneWithoutItsFirstFourCharacters) {
    EXPECT_EQ(errorOf({}), "byte 0: not a MIDI file: it does not begin with MThd");
    EXPECT_EQ(errorOf(hex("4d 54 68")), "byte 0: not a MIDI file: it does not begin with MThd");
    EXPECT_EQ(errorOf(hex("52 49 46 58 00 00 00 00")),
              "byte 0: not a MIDI file: it does not begin with MThd");
}

TEST(DamagedMIDIFile, OfAnotherFormatIsRejected) {
    EXPECT_EQ(errorOf(joined({chunk("MThd", "00 03 00 01 01 e0"), track("00 ff 2f 00")})),
              "byte 8: format 3, but there are only formats 0, 1 and 2");
}

/// A RIFF file of this type around chunks; nobody reads its length.
Bytes riff(const std::string& type, const Bytes& chunks) {
    return joined({hex("52 49 46 46 00 00 00 00"), {type.begin(), type.end()}, chunks});
}

TEST(RIFFFile, HoldsAMIDIFileBehindOtherChunks) {
    const auto wrapped = oneTrackFile("00 90 3c 64 00 ff 2f 00");
    const auto other = hex("4c 49 53 54 03 00 00 00 01 02 03 00");
    const auto data = hex("64 61 74 61 1e 00 00 00");
    EXPECT_EQ(readMIDIFile(riff("RMID", joined({data, wrapped}))), readMIDIFile(wrapped));
    EXPECT_EQ(readMIDIFile(riff("RMID", joined({other, data, wrapped, other}))), readMIDIFile(wrapped));
}

TEST(RIFFFile, SaysWhatIsDamaged) {
    EXPECT_EQ(errorOf(riff("WAVE", {})), "byte 8: a RIFF file that does not hold MIDI: its type is not RMID");
    EXPECT_EQ(errorOf(riff("RMID", {})), "byte 12: the RIFF file ends without a chunk of data");
    EXPECT_EQ(errorOf(riff("RMID", hex("64 61 74 61 ff ff ff 7f 00"))),
              "byte 20: the file ends in the middle of a chunk of the RIFF file");
    EXPECT_EQ(errorOf(riff("RMID", joined({hex("64 61 74 61 04 00 00 00"), hex("4d 54 68 64")}))),
              "byte 24: a chunk of the RIFF file ends in the middle of the header's length");
    EXPECT_EQ(errorOf(riff("RMID", hex("4c 49 53 54 01 00 00 00 01"))),
              "byte 21: the RIFF file ends without a chunk of data");
}

TEST(DamagedMIDIFile, WithAShortHeaderSaysWhereItEnds) {
    EXPECT_EQ(errorOf(chunk("MThd", "00 00 00 01")),
              "byte 12: the header ends in the middle of the division");
    EXPECT_EQ(errorOf(hex("4d 54 68 64 00 00 00 06 00 00")),
              "byte 8: the file ends in the middle of the header");
}

TEST(DamagedMIDIFile, WithAnImpossibleDivisionIsRejected) {
    EXPECT_EQ(errorOf(chunk("MThd", "00 00 00 01 00 00")),
              "byte 12: the division has no ticks in a quarter note");
    EXPECT_EQ(errorOf(chunk("MThd", "00 00 00 01 e7 00")), "byte 13: the division has no ticks in a frame");
    EXPECT_EQ(errorOf(chunk("MThd", "00 00 00 01 f0 28")),
              "byte 12: a division of 16 frames a second, which no time code has");
}

TEST(DamagedMIDIFile, WithFewerTracksThanPromisedSaysHowMany) {
    EXPECT_EQ(errorOf(joined({chunk("MThd", "00 01 00 03 01 e0"), track("00 ff 2f 00")})),
              "byte 26: the file ends after 1 of 3 tracks");
}

TEST(DamagedMIDIFile, WithATrackLongerThanTheFileSaysWhereTheTrackBegins) {
    auto bytes = oneTrackFile("00 ff 2f 00");
    bytes[21] = 5;
    EXPECT_EQ(errorOf(bytes), "byte 22: the file ends in the middle of the track");
    bytes[18] = 0xFF;
    EXPECT_EQ(errorOf(bytes), "byte 22: the file ends in the middle of the track");
}

TEST(DamagedMIDIFile, WithAnEventThatRunsOverTheTrackIsRejectedThoughTheFileGoesOn) {
    const auto behind = track("00 ff 2f 00");
    EXPECT_EQ(errorOf(joined({oneTrackFile("00 90 3c"), behind})),
              "byte 25: the track ends in the middle of a message");
    EXPECT_EQ(errorOf(joined({oneTrackFile("00 ff 06 05 41"), behind})),
              "byte 26: the track ends in the middle of a meta event");
    EXPECT_EQ(errorOf(joined({oneTrackFile("00 f0 7f 41"), behind})),
              "byte 25: the track ends in the middle of a system-exclusive event");
    EXPECT_EQ(errorOf(joined({oneTrackFile("00"), behind})),
              "byte 23: the track ends in the middle of an event");
    EXPECT_EQ(errorOf(joined({oneTrackFile("81"), behind})),
              "byte 22: the track ends in the middle of a delta time");
}

TEST(DamagedMIDIFile, WithADataByteBeforeAnyStatusIsRejected) {
    EXPECT_EQ(errorOf(oneTrackFile("00 3c 64 00 ff 2f 00")),
              "byte 23: a data byte where the track's first status byte should stand");
}

TEST(DamagedMIDIFile, WithAStatusByteInsideAMessageIsRejected) {
    EXPECT_EQ(errorOf(oneTrackFile("00 90 3c 80 00 ff 2f 00")),
              "byte 25: status byte 128 in the middle of a message");
}

TEST(DamagedMIDIFile, WithABareSystemMessageIsRejected) {
    for (unsigned status = 0xF1; status < 0xFF; ++status) {
        auto bytes = oneTrackFile("00 00 00 ff 2f 00");
        bytes[fixture::firstEventPosition + 1] = static_cast<std::uint8_t>(status);
        if (status != 0xF7) {
            EXPECT_EQ(errorOf(bytes), "byte 23: status byte " + std::to_string(status) +
                                          ", which stands in a MIDI file only inside an escape");
        }
    }
}

TEST(DamagedMIDIFile, WithANumberOfMoreThanFourBytesIsRejected) {
    EXPECT_EQ(errorOf(oneTrackFile("80 80 80 80 00 ff 2f 00")),
              "byte 22: a delta time is longer than four bytes");
    EXPECT_EQ(errorOf(oneTrackFile("00 f0 ff ff ff ff 7f f7")),
              "byte 24: an event's length is longer than four bytes");
}

TEST(DamagedMIDIFile, WithoutATempoInATempoEventIsRejected) {
    EXPECT_EQ(errorOf(oneTrackFile("00 ff 51 03 00 00 00 00 ff 2f 00")),
              "byte 23: a tempo event without a tempo");
    EXPECT_EQ(errorOf(oneTrackFile("00 ff 51 02 07 a1 00 ff 2f 00")),
              "byte 23: a tempo event without a tempo");
}

TEST(DamagedMIDIFile, WithAMetaTypeAbove127IsRejected) {
    EXPECT_EQ(errorOf(oneTrackFile("00 ff 80 00 00 ff 2f 00")),
              "byte 24: a meta event of type 128, above 127");
}

}  // namespace
}  // namespace quillo
