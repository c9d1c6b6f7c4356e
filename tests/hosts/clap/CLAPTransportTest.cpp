// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "hosts/clap/CLAPTestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Trigger = HostTransportTriggerVariantsV2;

constexpr std::uint32_t playing = CLAP_TRANSPORT_IS_PLAYING;
constexpr std::uint32_t block = 100;

/// What a transport does, as the rules hear it.
enum Heard : std::uint8_t { start = 20, goOn = 21, stop = 22 };

/// When it was heard, in frames.
using Timed = std::vector<std::pair<SampleTime, Heard>>;

class CLAPTransport : public testing::Test {
protected:
    CLAPTransport() {
        loadRules();
        host.start();
    }

    void loadRules() {
        host.loadRules({rule(onHost(Trigger::Start), send(controlChange(0, start, 1))),
                        rule(onHost(Trigger::Continue), send(controlChange(0, goOn, 1))),
                        rule(onHost(Trigger::Stop), send(controlChange(0, stop, 1)))});
    }

    /// A block of 100 frames with this transport at its start.
    void play(const clap_event_transport_t& transport) { host.process(block, &transport); }
    void play(std::uint32_t flags, double position) { play(clapTransport(flags, position)); }
    void playBeats(std::uint32_t flags, double position) { play(clapTransport(flags, position, true)); }

    /// A host whose seconds are what the beats would take at this tempo.
    static clap_event_transport_t inBoth(double beats, double tempo) {
        auto transport = clapTransport(playing, beats * 60.0 / tempo * clapSampleRate);
        transport.flags |= CLAP_TRANSPORT_HAS_BEATS_TIMELINE | CLAP_TRANSPORT_HAS_TEMPO;
        transport.song_pos_beats = std::llround(beats * static_cast<double>(CLAP_BEATTIME_FACTOR));
        transport.tempo = tempo;
        return transport;
    }

    Timed heard() {
        Timed result;
        for (const auto& message : host.take()) {
            result.emplace_back(message.time, static_cast<Heard>(message.bytes[1]));
        }
        return result;
    }

    CLAPTestHost host;
    CLAPEvents events;
};

TEST_F(CLAPTransport, ThatIsAbsentIsNeverHeard) {
    host.process(block);
    host.process(block);
    EXPECT_EQ(heard(), Timed{});
}

TEST_F(CLAPTransport, ThatStandsStillIsNotHeard) {
    play(0, 0.0);
    play(0, 48000.0);
    EXPECT_EQ(heard(), Timed{});
}

TEST_F(CLAPTransport, StartsAtTheBeginningAndBeforeItAndGoesOnElsewhere) {
    for (const auto& [position, expected] :
         {std::pair{0.0, start}, {-752.0, start}, {1.0, goOn}, {48000.0, goOn}}) {
        play(0, position);
        heard();
        const auto now = host.now;
        play(playing, position);
        EXPECT_EQ(heard(), (Timed{{now, expected}})) << position;
    }
}

TEST_F(CLAPTransport, ThatPassesTheBeginningIsHeardOnce) {
    for (const auto position : {-250.0, -150.0, -50.0, 50.0, 150.0}) {
        play(playing, position);
    }
    EXPECT_EQ(heard(), (Timed{{0, start}}));
}

TEST_F(CLAPTransport, ThatIsLocatedWhileItStandsGoesOnFromThere) {
    play(playing, 0.0);
    play(0, 100.0);
    play(0, 48000.0);
    play(playing, 48000.0);
    EXPECT_EQ(heard(), (Timed{{0, start}, {100, stop}, {300, goOn}}));
}

TEST_F(CLAPTransport, ThatJumpsBackInALoopIsHeardEachTime) {
    for (const auto position : {1000.0, 1100.0, 1000.0, 1100.0, 0.0, 100.0, 0.0}) {
        play(playing | CLAP_TRANSPORT_IS_LOOP_ACTIVE, position);
    }
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {200, goOn}, {400, start}, {600, start}}));
}

TEST_F(CLAPTransport, ThatJumpsInAHostWithoutASteadyTimeIsHeard) {
    host.steadyTime = -1;
    play(playing, 1000.0);
    play(playing, 1000.0);
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {100, goOn}}));
}

TEST_F(CLAPTransport, ThatRecordsOrLoopsWhileItMovesGoesOn) {
    play(playing, 100.0);
    play(playing | CLAP_TRANSPORT_IS_RECORDING, 200.0);
    play(playing | CLAP_TRANSPORT_IS_RECORDING | CLAP_TRANSPORT_IS_LOOP_ACTIVE, 300.0);
    play(playing, 400.0);
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {100, goOn}, {200, goOn}, {300, goOn}}));
}

TEST_F(CLAPTransport, StopsAndStartsWithinOneBlockAtItsOwnTimes) {
    play(playing, 5000.0);
    events.addTransport(10, clapTransport(0, 5110.0));
    events.addTransport(60, clapTransport(playing, 0.0));
    const auto atStart = clapTransport(playing, 5100.0);
    host.process(block, events, &atStart);
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {110, stop}, {160, start}}));
}

TEST_F(CLAPTransport, ThatJumpsWithinABlockIsHeardThere) {
    play(playing, 5000.0);
    events.addTransport(40, clapTransport(playing, 1000.0));
    const auto atStart = clapTransport(playing, 5100.0);
    host.process(block, events, &atStart);
    play(playing, 1060.0);
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {140, goOn}}));
}

TEST_F(CLAPTransport, ThatIsToldTwiceAtOnceIsHeardOnce) {
    events.addTransport(0, clapTransport(playing, 0.0));
    const auto atStart = clapTransport(playing, 0.0);
    host.process(block, events, &atStart);
    EXPECT_EQ(heard(), (Timed{{0, start}}));
}

TEST_F(CLAPTransport, ThatIsNotToldForAWhileIsTakenToMoveOn) {
    play(playing, 0.0);
    host.process(block);
    host.process(block);
    play(playing, 300.0);
    EXPECT_EQ(heard(), (Timed{{0, start}}));
}

TEST_F(CLAPTransport, ThatTheHostRoundsToFramesDoesNotJump) {
    for (const auto position : {0.4, 100.9, 200.0, 300.7, 399.9}) {
        play(playing, position);
    }
    EXPECT_EQ(heard(), (Timed{{0, goOn}}));
}

TEST_F(CLAPTransport, ThatTheHostRoundsToMillisecondsDoesNotJump) {
    for (int i = 0; i < 480; ++i) {
        const auto milliseconds = std::floor((1000.0 + static_cast<double>(host.now)) / 48.0);
        play(playing, milliseconds * 48.0);
    }
    EXPECT_EQ(heard(), (Timed{{0, goOn}}));
}

TEST_F(CLAPTransport, ThatIsMoreThanTwoMillisecondsOffHasJumped) {
    play(playing, 1000.0);
    play(playing, 1100.0 + 97.0);
    play(playing, 1297.0 - 97.0);
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {100, goOn}, {200, goOn}}));
}

TEST_F(CLAPTransport, InSecondsThatFollowFromTheBeatsDoesNotJumpWithTheTempo) {
    double beats = 8.0;
    for (const auto tempo : {120.0, 120.0, 60.0, 60.0, 240.0}) {
        play(inBoth(beats, tempo));
        beats += block / clapSampleRate * tempo / 60.0;
    }
    EXPECT_EQ(heard(), (Timed{{0, goOn}}));
}

TEST_F(CLAPTransport, InSecondsThatFollowFromTheBeatsIsHeardToStopWhereTheyStop) {
    play(inBoth(8.0, 120.0));
    auto stopped = inBoth(8.0 + block / clapSampleRate * 120.0 / 60.0, 120.0);
    stopped.flags &= ~playing;
    play(stopped);
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {100, stop}}));
}

TEST_F(CLAPTransport, InSecondsJumpsThoughTheBeatsGoOnWhereTheTempoBeforeIsUnknown) {
    auto unknown = inBoth(8.0, 120.0);
    unknown.flags &= ~std::uint32_t{CLAP_TRANSPORT_HAS_TEMPO};
    host.process(48000, &unknown);
    play(inBoth(9.0, 120.0));
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {48000, goOn}}));
}

TEST_F(CLAPTransport, InSecondsJumpsThoughTheBeatsGoOnWhereTheTempoNowIsUnknown) {
    const auto known = inBoth(8.0, 120.0);
    host.process(48000, &known);
    auto unknown = inBoth(10.0, 60.0);
    unknown.flags &= ~std::uint32_t{CLAP_TRANSPORT_HAS_TEMPO};
    play(unknown);
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {48000, goOn}}));
}

TEST_F(CLAPTransport, InSecondsThatFollowFromTheBeatsDoesNotJumpWhileTheTempoChangesThroughLongBlocks) {
    double beats = 8.0;
    double tempo = 120.0;
    for (int i = 0; i < 10; ++i) {
        const auto transport = inBoth(beats, tempo);
        host.process(8192, &transport);
        beats += 8192 / clapSampleRate * (tempo + 10.0) / 60.0;
        tempo += 20.0;
    }
    EXPECT_EQ(heard(), (Timed{{0, goOn}}));
}

TEST_F(CLAPTransport, ThatJumpsInSecondsAndInBeatsIsHeard) {
    play(inBoth(8.0, 120.0));
    const auto atStart = inBoth(4.0, 120.0);
    events.addTransport(0, atStart);
    host.process(block, events, &atStart);
    play(inBoth(0.0, 60.0));
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {100, goOn}, {200, start}}));
}

TEST_F(CLAPTransport, ThatJumpsForwardInSecondsAndInBeatsIsHeard) {
    play(inBoth(4.0, 120.0));
    play(inBoth(8.0, 120.0));
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {100, goOn}}));
}

TEST_F(CLAPTransport, ThatIsToldByAnotherTimelineDoesNotJump) {
    play(playing, 24000.0);
    playBeats(playing, 24100.0);
    playBeats(playing, 24200.0);
    play(playing, 24300.0);
    play(playing, 9000.0);
    EXPECT_EQ(heard(), (Timed{{0, goOn}, {400, goOn}}));
}

TEST_F(CLAPTransport, InSecondsDoesNotMindTheTempo) {
    for (const auto tempo : {120.0, 60.0, 240.0}) {
        auto transport = clapTransport(playing | CLAP_TRANSPORT_HAS_TEMPO | CLAP_TRANSPORT_HAS_BEATS_TIMELINE,
                                       static_cast<double>(host.now));
        transport.tempo = tempo;
        play(transport);
    }
    EXPECT_EQ(heard(), (Timed{{0, start}}));
}

TEST_F(CLAPTransport, InBeatsStartsStopsAndJumpsAlike) {
    playBeats(playing, 0.0);
    playBeats(playing, 100.0);
    playBeats(0, 200.0);
    playBeats(playing, 24000.0);
    playBeats(playing, 24100.0);
    playBeats(playing, 0.0);
    EXPECT_EQ(heard(), (Timed{{0, start}, {200, stop}, {300, goOn}, {500, start}}));
}

TEST_F(CLAPTransport, InBeatsMovesOnWithTheTempoThroughALongBlock) {
    auto transport = clapTransport(playing, 0.0, true);
    transport.tempo = 90.0;
    host.process(48000, &transport);
    transport.song_pos_beats = CLAP_BEATTIME_FACTOR * 3 / 2;
    host.process(48000, &transport);
    EXPECT_EQ(heard(), (Timed{{0, start}}));
}

/// A host whose tempo goes from 120 to 240 in 480 blocks, and that tells beats only.
TEST_F(CLAPTransport, InBeatsDoesNotJumpWhileTheTempoChanges) {
    double beats = 4.0;
    double tempo = 120.0;
    for (int i = 0; i < 480; ++i) {
        auto transport = clapTransport(playing, 0.0, true);
        transport.song_pos_beats =
            static_cast<clap_beattime>(beats * static_cast<double>(CLAP_BEATTIME_FACTOR));
        transport.tempo = tempo;
        play(transport);
        beats += block / clapSampleRate * (tempo + 0.125) / 60.0;
        tempo += 0.25;
    }
    EXPECT_EQ(heard(), (Timed{{0, goOn}}));
}

TEST_F(CLAPTransport, InBeatsOfNoTempoStartsAndStopsAndHasNoJumps) {
    for (const auto tempo :
         {0.0, -3.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        const auto now = host.now;
        auto transport = clapTransport(playing, 24000.0, true);
        transport.tempo = tempo;
        play(transport);
        transport.song_pos_beats *= 9;
        play(transport);
        play(0, 0.0);
        EXPECT_EQ(heard(), (Timed{{now, goOn}, {now + 200, stop}})) << tempo;
    }
}

TEST_F(CLAPTransport, WithoutAPositionStartsAtTheBeginningAndThenGoesOn) {
    clap_event_transport_t moves = clapTransport(0, 0.0);
    moves.flags = playing;
    clap_event_transport_t stands = moves;
    stands.flags = 0;
    play(stands);
    play(moves);
    play(moves);
    play(stands);
    play(moves);
    EXPECT_EQ(heard(), (Timed{{100, start}, {300, stop}, {400, goOn}}));
}

TEST_F(CLAPTransport, ThatMovedOnBetweenTwoActivationsDidNotJump) {
    play(playing, 0.0);
    host.stop();
    host.start();
    play(playing, 90000.0);
    play(playing, 90100.0);
    EXPECT_EQ(heard(), (Timed{{0, start}}));
}

TEST_F(CLAPTransport, ThatStoppedBetweenTwoActivationsIsHeardToHaveStopped) {
    play(playing, 0.0);
    host.stop();
    host.start();
    play(0, 90000.0);
    EXPECT_EQ(heard(), (Timed{{0, start}, {100, stop}}));
}

TEST_F(CLAPTransport, AfterAResetIsFoundWhereItIs) {
    play(playing, 0.0);
    host.plugin->reset(host.plugin);
    play(playing, 90000.0);
    EXPECT_EQ(heard(), (Timed{{0, start}}));
}

TEST_F(CLAPTransport, ThatMovedOnWhileThePluginSleptDidNotJump) {
    for (const auto steadyTime : {std::int64_t{5000}, std::int64_t{-1}}) {
        play(0, 0.0);
        host.take();
        host.loadRules({});
        play(playing, 1000.0);
        host.steadyTime = steadyTime;
        loadRules();
        play(playing, 5000.0);
        EXPECT_EQ(heard(), Timed{}) << steadyTime;
    }
}

TEST_F(CLAPTransport, ThatStartedOrStoppedWhileThePluginSleptIsNotHeardByRulesThatCameLater) {
    for (const auto steadyTime : {std::int64_t{5000}, std::int64_t{-1}}) {
        for (const auto& [before, after] : {std::pair{0U, playing}, {playing, 0U}}) {
            host.loadRules({});
            play(before, 1000.0);
            host.steadyTime = steadyTime;
            loadRules();
            play(after, 48000.0);
            EXPECT_EQ(heard(), Timed{}) << steadyTime;
        }
        const auto now = host.now;
        play(playing, 0.0);
        EXPECT_EQ(heard(), (Timed{{now, start}})) << steadyTime;
    }
}

TEST_F(CLAPTransport, ThatStartedWhileThePluginSleptAndWasDeactivatedIsNotHeardEither) {
    host.loadRules({});
    play(0, 0.0);
    host.stop();
    loadRules();
    host.start();
    play(playing, 48000.0);
    EXPECT_EQ(heard(), Timed{});
}

TEST_F(CLAPTransport, ThatStartsInAHostThatNeverSleepsIsHeardByARuleThatHasJustCome) {
    host.loadRules({});
    play(0, 0.0);
    loadRules();
    play(playing, 0.0);
    EXPECT_EQ(heard(), (Timed{{100, start}}));
}

TEST_F(CLAPTransport, ThatJumpsInAHostThatNeverSleepsIsHeard) {
    host.loadRules({});
    play(playing, 1000.0);
    loadRules();
    play(playing, 5000.0);
    EXPECT_EQ(heard(), (Timed{{100, goOn}}));
}

}  // namespace
}  // namespace quillo
