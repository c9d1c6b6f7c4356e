// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPTransport.hpp"

#include <algorithm>

namespace quillo {

namespace {

constexpr double stepsPerSecond = 500.0;
constexpr double stepsPerBeat = 64.0;
constexpr double secondsPerMinute = 60.0;

/// Beyond this a tempo is none.
constexpr double fastestTempo = 1e6;

AUHostTransportStateFlags flagsOf(std::uint32_t flags) QUILLO_REALTIME {
    AUHostTransportStateFlags result = 0;
    if ((flags & CLAP_TRANSPORT_IS_PLAYING) != 0) {
        result |= AUHostTransportStateMoving;
    }
    if ((flags & CLAP_TRANSPORT_IS_RECORDING) != 0) {
        result |= AUHostTransportStateRecording;
    }
    if ((flags & CLAP_TRANSPORT_IS_LOOP_ACTIVE) != 0) {
        result |= AUHostTransportStateCycling;
    }
    return result;
}

double secondsOf(clap_sectime time) QUILLO_REALTIME {
    return static_cast<double>(time) / static_cast<double>(CLAP_SECTIME_FACTOR);
}

double beatsOf(clap_beattime time) QUILLO_REALTIME {
    return static_cast<double>(time) / static_cast<double>(CLAP_BEATTIME_FACTOR);
}

std::optional<double> tempoOf(const clap_event_transport_t& event) QUILLO_REALTIME {
    const bool isTold = (event.flags & CLAP_TRANSPORT_HAS_TEMPO) != 0;
    const bool isOne = event.tempo > 0.0 && event.tempo < fastestTempo;
    if (!isTold || !isOne) {
        return std::nullopt;
    }
    return event.tempo;
}

}  // namespace

void CLAPTransport::tell(std::uint32_t offset, const clap_event_transport_t& event) QUILLO_REALTIME {
    const auto told = read(offset, event);
    if (told.seconds) {
        tell(offset, told, Timeline::seconds, *told.seconds);
    } else if (told.beats) {
        tell(offset, told, Timeline::beats, *told.beats);
    } else {
        renderer_.tellTransport(offset, told.flags);
    }
    last_ = told;
}

/// A position that could not be foretold, or of another timeline than the last one's, tells nothing of a jump.
void CLAPTransport::tell(std::uint32_t offset, const Told& told, Timeline timeline,
                         const Position& position) QUILLO_REALTIME {
    const auto speed = position.speed.value_or(0.0);
    if (!position.speed || timeline != timeline_) {
        renderer_.loseTransport();
    }
    timeline_ = timeline;
    if (goesOnInBeats(told)) {
        renderer_.followTransport(offset, told.flags, position.steps, speed);
    } else {
        renderer_.tellTransport(offset, told.flags, position.steps, speed);
    }
}

CLAPTransport::Told CLAPTransport::read(std::uint32_t offset, const clap_event_transport_t& event) const QUILLO_REALTIME {
    Told told{renderer_.now() + offset, flagsOf(event.flags), std::nullopt, std::nullopt};
    if ((event.flags & CLAP_TRANSPORT_HAS_SECONDS_TIMELINE) != 0) {
        told.seconds = {secondsOf(event.song_pos_seconds) * stepsPerSecond, stepsPerSecond / sampleRate_};
    }
    if ((event.flags & CLAP_TRANSPORT_HAS_BEATS_TIMELINE) != 0) {
        told.beats = {beatsOf(event.song_pos_beats) * stepsPerBeat, std::nullopt};
        if (const auto tempo = tempoOf(event)) {
            told.beats->speed = *tempo / secondsPerMinute * stepsPerBeat / sampleRate_;
        }
    }
    return told;
}

/// Whether the beats are where either tempo brings them, the one told before, the one told now, or any between: while
/// a tempo changes it is told now and then.
bool CLAPTransport::goesOnInBeats(const Told& told) const QUILLO_REALTIME {
    const auto& before = last_.beats;
    const auto& now = told.beats;
    if (!told.seconds || !last_.seconds || !before || !before->speed || !now || !now->speed) {
        return false;
    }
    const auto moved = now->steps - before->steps;
    const auto frames = static_cast<double>(told.time - last_.time);
    const auto [least, most] = std::minmax({frames * *before->speed, frames * *now->speed});
    return moved >= least - tolerance && moved <= most + tolerance;
}

}  // namespace quillo
