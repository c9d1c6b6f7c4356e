// SPDX-License-Identifier: GPL-3.0-or-later
#include "offline/Score.hpp"

#include <gmock/gmock.h>

#include "midifile/MIDIFile.hpp"
#include "support/MIDIFileBytes.hpp"

namespace quillo {
namespace {

using Kind = MIDIFileEvent::Kind;
using fixture::hex;
using testing::ElementsAre;
using testing::IsEmpty;

/// At 480 ticks in a quarter note, 120 quarters a minute and 48,000 samples a second a tick is 50 samples.
constexpr SampleTime samplesPerTick = 50;

MIDIFile fileWith(std::vector<MIDIFileEvent> events, Tick end) {
    return {0, TicksPerQuarter{480}, {{std::move(events), end}}};
}

Score score(const MIDIFile& file) {
    return {file, 48000};
}

TimedMessage message(SampleTime time, const std::string& bytes) {
    return {time, MIDIMessage::copyOf(hex(bytes))};
}

std::vector<MIDIFileEvent> eventsFor(const MIDIFile& file, std::vector<TimedMessage> outputs) {
    return score(file).fileWith(std::move(outputs)).tracks.at(0).events;
}

TEST(Score, HoldsTheChannelMessagesOfAllTracksAtTheirSamples) {
    const MIDIFile file{1,
                        TicksPerQuarter{480},
                        {{{{0, Kind::channel, hex("90 3c 64")}, {10, Kind::channel, hex("80 3c 40")}}, 10},
                         {{{0, Kind::channel, hex("c1 05")}, {5, Kind::channel, hex("e1 00 40")}}, 5}}};
    EXPECT_THAT(score(file).messages(), ElementsAre(message(0, "90 3c 64"), message(0, "c1 05"),
                                                    message(250, "e1 00 40"), message(500, "80 3c 40")));
}

TEST(Score, TakesTempoFromEveryTrackForAllTracks) {
    const MIDIFile file{
        1,
        TicksPerQuarter{480},
        {{{{480, Kind::channel, hex("90 3c 64")}}, 480}, {{{0, Kind::meta, hex("51 0f 42 40")}}, 0}}};
    EXPECT_THAT(score(file).messages(), ElementsAre(message(48000, "90 3c 64")));
}

TEST(Score, PlaysTheTracksOfFormat2OneAfterTheOther) {
    const MIDIFile file{2,
                        TicksPerQuarter{480},
                        {{{{0, Kind::meta, hex("51 0f 42 40")}, {10, Kind::channel, hex("90 3c 64")}}, 480},
                         {{{10, Kind::channel, hex("80 3c 40")}}, 20}}};
    EXPECT_THAT(score(file).messages(),
                ElementsAre(message(1000, "90 3c 64"), message(48000 + 500, "80 3c 40")));
}

TEST(Score, CountsWhatItLeavesOut) {
    const auto file = fileWith({{0, Kind::systemExclusive, hex("7e 7f 09 01 f7")},
                                {0, Kind::escape, hex("fa fb")},
                                {0, Kind::escape, hex("fa")},
                                {0, Kind::meta, hex("01 41")}},
                               0);
    EXPECT_EQ(score(file).leftOut().events, 2U);
    EXPECT_EQ(score(file).leftOut().bytes, 8U);
}

TEST(Score, PlaysAnEscapeThatIsExactlyOneMessage) {
    const auto file = fileWith({{1, Kind::escape, hex("fa")}, {2, Kind::escape, hex("90 3c 64")}}, 2);
    EXPECT_THAT(score(file).messages(), ElementsAre(message(50, "fa"), message(100, "90 3c 64")));
}

TEST(Score, NeitherPlaysNorKeepsOtherEscapesAndSystemExclusive) {
    const auto file = fileWith({{0, Kind::escape, hex("fa fb")},
                                {0, Kind::escape, hex("90 3c")},
                                {0, Kind::escape, hex("43 f7")},
                                {0, Kind::escape, hex("f0 43 f7")},
                                {0, Kind::escape, {}},
                                {0, Kind::systemExclusive, hex("7e 7f 09 01 f7")}},
                               0);
    EXPECT_THAT(score(file).messages(), IsEmpty());
    EXPECT_THAT(eventsFor(file, {}), IsEmpty());
}

TEST(Score, EndsWithTheLongestTrack) {
    EXPECT_EQ(score({1, TicksPerQuarter{480}, {{{}, 100}, {{}, 40}}}).end(), 100 * samplesPerTick);
}

TEST(Score, EndsBehindTheLastMessage) {
    EXPECT_EQ(score(fileWith({{10, Kind::channel, hex("90 3c 64")}}, 10)).end(), 501);
    EXPECT_EQ(score(fileWith({{10, Kind::channel, hex("90 3c 64")}}, 11)).end(), 550);
}

TEST(Score, OfAnEmptyFileEndsBehindSampleZero) {
    EXPECT_EQ(score(fileWith({}, 0)).end(), 1);
    EXPECT_EQ(score({0, TicksPerQuarter{480}, {}}).end(), 1);
}

TEST(Score, RejectsAFileThatEndsBeyondTheLatestSampleTime) {
    std::vector<MIDIFileEvent> events{{0, Kind::meta, hex("51 ff ff ff")}};
    const MIDIFile file{0, TicksPerQuarter{1}, {{events, 20'000'000'000}}};
    EXPECT_THROW(Score(file, 48000), MIDIFileError);
    EXPECT_NO_THROW(Score(file, 1000));
}

TEST(ScoreFile, HasOneTrackAndTheDivisionOfTheSource) {
    const MIDIFile source{1, TicksPerFrame{25, 40}, {{{}, 7}, {{}, 9}}};
    EXPECT_EQ(score(source).fileWith({}), (MIDIFile{0, TicksPerFrame{25, 40}, {{{}, 9}}}));
}

TEST(ScoreFile, KeepsMetaEventsOfAllTracksAtTheirTicks) {
    const MIDIFile source{1,
                          TicksPerQuarter{480},
                          {{{{0, Kind::meta, hex("03 41")}, {7, Kind::meta, hex("51 07 a1 20")}}, 7},
                           {{{0, Kind::meta, hex("03 42")}, {3, Kind::meta, hex("06 43")}}, 7}}};
    EXPECT_THAT(eventsFor(source, {}), ElementsAre(MIDIFileEvent{0, Kind::meta, hex("03 41")},
                                                   MIDIFileEvent{0, Kind::meta, hex("03 42")},
                                                   MIDIFileEvent{3, Kind::meta, hex("06 43")},
                                                   MIDIFileEvent{7, Kind::meta, hex("51 07 a1 20")}));
}

TEST(ScoreFile, PutsOutputsOnTheNearestTickHalvesDown) {
    const auto events =
        eventsFor(fileWith({}, 10), {message(74, "fa"), message(75, "fb"), message(76, "fc")});
    EXPECT_THAT(events, ElementsAre(MIDIFileEvent{1, Kind::escape, hex("fa")},
                                    MIDIFileEvent{1, Kind::escape, hex("fb")},
                                    MIDIFileEvent{2, Kind::escape, hex("fc")}));
}

TEST(ScoreFile, OrdersOutputsByTimeAndKeepsTheOrderOfEqualTimes) {
    const auto events = eventsFor(fileWith({}, 10), {message(200, "90 01 01"), message(100, "90 02 01"),
                                                     message(200, "90 03 01"), message(101, "90 04 01")});
    EXPECT_THAT(events, ElementsAre(MIDIFileEvent{2, Kind::channel, hex("90 02 01")},
                                    MIDIFileEvent{2, Kind::channel, hex("90 04 01")},
                                    MIDIFileEvent{4, Kind::channel, hex("90 01 01")},
                                    MIDIFileEvent{4, Kind::channel, hex("90 03 01")}));
}

TEST(ScoreFile, PutsMetaEventsBeforeOutputsOfTheirTick) {
    const auto source = fileWith({{2, Kind::channel, hex("90 3c 64")}, {2, Kind::meta, hex("06 41")}}, 2);
    EXPECT_THAT(eventsFor(source, {message(100, "90 3c 64")}),
                ElementsAre(MIDIFileEvent{2, Kind::meta, hex("06 41")},
                            MIDIFileEvent{2, Kind::channel, hex("90 3c 64")}));
}

TEST(ScoreFile, HoldsEachKindOfOutputInItsForm) {
    const auto events =
        eventsFor(fileWith({}, 0), {message(0, "c3 11"), message(0, "f0 7e 09 f7"), message(0, "f8"),
                                    message(0, "f1 22"), message(0, "f0 f7")});
    EXPECT_THAT(events, ElementsAre(MIDIFileEvent{0, Kind::channel, hex("c3 11")},
                                    MIDIFileEvent{0, Kind::systemExclusive, hex("7e 09 f7")},
                                    MIDIFileEvent{0, Kind::escape, hex("f8")},
                                    MIDIFileEvent{0, Kind::escape, hex("f1 22")},
                                    MIDIFileEvent{0, Kind::systemExclusive, hex("f7")}));
}

TEST(ScoreFile, HoldsWhatIsNoMessageByTheBookInAnEscape) {
    const auto events =
        eventsFor(fileWith({}, 0), {message(0, "b0 07"), message(0, "b0 07 c8"), message(0, "07")});
    EXPECT_THAT(events, ElementsAre(MIDIFileEvent{0, Kind::escape, hex("b0 07")},
                                    MIDIFileEvent{0, Kind::escape, hex("b0 07 c8")},
                                    MIDIFileEvent{0, Kind::escape, hex("07")}));
}

TEST(ScoreFile, EndsNoEarlierThanTheSourceAndItsLastEvent) {
    EXPECT_EQ(score(fileWith({}, 10)).fileWith({message(100, "fa")}).tracks[0].endTick, 10);
    EXPECT_EQ(score(fileWith({}, 10)).fileWith({message(1000, "fa")}).tracks[0].endTick, 20);
}

}  // namespace
}  // namespace quillo
