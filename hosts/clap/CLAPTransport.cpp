// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPTransport.hpp"

#include <algorithm>

namespace quillo {

namespace {

constexpr double stepsPerSecond = 500.0;
constexpr double stepsPerBeat = 64.0;
constexpr double secondsPerMinute = 60.0;

/// A faster tempo is taken for a mistake of the host.
constexpr double fastestTempo = 1e6;

HostTransport::State stateOf(std::uint32_t flags) QUILLO_REALTIME {
    return {(flags & CLAP_TRANSPORT_IS_PLAYING) != 0, (flags & CLAP_TRANSPORT_IS_RECORDING) != 0,
            (flags & CLAP_TRANSPORT_IS_LOOP_ACTIVE) != 0};
}

double secondsOf(clap_sectime time) QUILLO_REALTIME {
    return static_cast<double>(time) / static_cast<double>(CLAP_SECTIME_FACTOR);
}

double beatsOf(clap_beattime time) QUILLO_REALTIME {
    return static_cast<double>(time) / static_cast<double>(CLAP_BEATTIME_FACTOR);
}

std::optional<double> tempoOf(const clap_event_transport_t& event) QUILLO_REALTIME {
    const bool isReport = (event.flags & CLAP_TRANSPORT_HAS_TEMPO) != 0;
    const bool isOne = event.tempo > 0.0 && event.tempo < fastestTempo;
    if (!isReport || !isOne) {
        return std::nullopt;
    }
    return event.tempo;
}

}  // namespace

void CLAPTransport::report(std::uint32_t offset, const clap_event_transport_t& event) QUILLO_REALTIME {
    const auto reported = read(offset, event);
    if (reported.seconds) {
        report(offset, reported, Timeline::seconds, *reported.seconds);
    } else if (reported.beats) {
        report(offset, reported, Timeline::beats, *reported.beats);
    } else {
        renderer_.reportTransport(offset, reported.state);
    }
    last_ = reported;
}

/// A position that could not be predicted, or that is on another timeline than the last one, does not show
/// a jump.
void CLAPTransport::report(std::uint32_t offset, const Report& reported, Timeline timeline,
                           const Position& position) QUILLO_REALTIME {
    const auto speed = position.speed.value_or(0.0);
    if (!position.speed || timeline != timeline_) {
        renderer_.losePosition();
    }
    timeline_ = timeline;
    if (goesOnInBeats(reported)) {
        renderer_.reportTransportContinued(offset, reported.state, position.steps, speed);
    } else {
        renderer_.reportTransport(offset, reported.state, position.steps, speed);
    }
}

CLAPTransport::Report CLAPTransport::read(std::uint32_t offset, const Event& event) const QUILLO_REALTIME {
    Report reported{renderer_.now() + offset, stateOf(event.flags), std::nullopt, std::nullopt};
    if ((event.flags & CLAP_TRANSPORT_HAS_SECONDS_TIMELINE) != 0) {
        reported.seconds = {secondsOf(event.song_pos_seconds) * stepsPerSecond, stepsPerSecond / sampleRate_};
    }
    if ((event.flags & CLAP_TRANSPORT_HAS_BEATS_TIMELINE) != 0) {
        reported.beats = {beatsOf(event.song_pos_beats) * stepsPerBeat, std::nullopt};
        if (const auto tempo = tempoOf(event)) {
            reported.beats->speed = *tempo / secondsPerMinute * stepsPerBeat / sampleRate_;
        }
    }
    return reported;
}

/// Whether the beats are where either tempo brings them, the one reported before, the one reported now, or
/// any between: while a tempo changes it is reported now and then.
bool CLAPTransport::goesOnInBeats(const Report& reported) const QUILLO_REALTIME {
    const auto& before = last_.beats;
    const auto& now = reported.beats;
    if (!reported.seconds || !before || !before->speed || !now || !now->speed) {
        return false;
    }
    const auto moved = now->steps - before->steps;
    const auto frames = static_cast<double>(reported.time - last_.time);
    const auto [least, most] = std::minmax({frames * *before->speed, frames * *now->speed});
    return moved >= least - tolerance && moved <= most + tolerance;
}

}  // namespace quillo
