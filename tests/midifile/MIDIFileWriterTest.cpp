// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>

#include "midifile/MIDIFile.hpp"
#include "support/MIDIFileBytes.hpp"

namespace quillo {
namespace {

using Kind = MIDIFileEvent::Kind;
using fixture::chunk;
using fixture::hex;
using fixture::joined;
using fixture::oneTrackFile;
using fixture::track;

MIDIFile fileOf(std::vector<MIDIFileEvent> events, Tick end) {
    return {0, TicksPerQuarter{480}, {{std::move(events), end}}};
}

TEST(MIDIFileWriter, WritesAnEmptyTrackAsEndOfTrackAtItsEnd) {
    EXPECT_EQ(writeMIDIFile(fileOf({}, 0)), oneTrackFile("00 ff 2f 00"));
    EXPECT_EQ(writeMIDIFile(fileOf({}, 480)), oneTrackFile("83 60 ff 2f 00"));
}

TEST(MIDIFileWriter, WritesEachKindOfEventInItsForm) {
    const auto file = fileOf({{0, Kind::meta, hex("03 41 62")},
                              {0, Kind::channel, hex("90 3c 64")},
                              {0, Kind::channel, hex("90 40 64")},
                              {1, Kind::systemExclusive, hex("7e 09 01 f7")},
                              {1, Kind::escape, hex("fa")}},
                             2);
    EXPECT_EQ(writeMIDIFile(file), oneTrackFile("00 ff 03 02 41 62  00 90 3c 64  00 90 40 64 "
                                                "01 f0 04 7e 09 01 f7  00 f7 01 fa  01 ff 2f 00"));
}

TEST(MIDIFileWriter, WritesSeveralTracksAndTheirNumber) {
    const MIDIFile file{1, TicksPerQuarter{96}, {{{}, 0}, {{}, 1}}};
    EXPECT_EQ(writeMIDIFile(file),
              joined({chunk("MThd", "00 01 00 02 00 60"), track("00 ff 2f 00"), track("01 ff 2f 00")}));
}

TEST(MIDIFileWriter, WritesTheNegativeFrameRateOfATimeCodeDivision) {
    const MIDIFile file{0, TicksPerFrame{29, 80}, {}};
    EXPECT_EQ(writeMIDIFile(file), chunk("MThd", "00 00 00 00 e3 50"));
}

TEST(MIDIFileWriter, WritesADeltaTimeInAsFewBytesAsItNeeds) {
    const std::vector<std::pair<Tick, std::string>> deltas{
        {0, "00"},           {127, "7f"},           {128, "81 00"},           {16383, "ff 7f"},
        {16384, "81 80 00"}, {2097151, "ff ff 7f"}, {2097152, "81 80 80 00"}, {268435455, "ff ff ff 7f"}};
    for (const auto& [ticks, bytes] : deltas) {
        EXPECT_EQ(writeMIDIFile(fileOf({}, ticks)), oneTrackFile(bytes + " ff 2f 00")) << ticks;
    }
}

TEST(MIDIFileWriter, RejectsADeltaTimeThatTheFormatCannotSay) {
    EXPECT_THROW(static_cast<void>(writeMIDIFile(fileOf({}, 268435456))), MIDIFileError);
}

TEST(MIDIFileWriter, WritesWhatTheReaderReadsBackTheSame) {
    MIDIFile file = fileOf({{0, Kind::meta, hex("51 07 a1 20")}, {7, Kind::channel, hex("c3 11")}}, 90000);
    file.tracks[0].events.push_back({300, Kind::systemExclusive, std::vector<std::uint8_t>(1000, 0x55)});
    EXPECT_EQ(readMIDIFile(writeMIDIFile(file)), file);
}

}  // namespace
}  // namespace quillo
