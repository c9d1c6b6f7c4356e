// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPTransport.hpp"

namespace quillo {

namespace {

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

CLAPTransport CLAPTransport::from(const clap_event_transport_t& event, double sampleRate) QUILLO_REALTIME {
    CLAPTransport transport{flagsOf(event.flags), std::nullopt, std::nullopt};
    if ((event.flags & CLAP_TRANSPORT_HAS_SECONDS_TIMELINE) != 0) {
        transport.position = secondsOf(event.song_pos_seconds) * sampleRate;
        transport.speed = 1.0;
    } else if ((event.flags & CLAP_TRANSPORT_HAS_BEATS_TIMELINE) != 0) {
        transport.position = beatsOf(event.song_pos_beats) * stepsPerBeat;
        if (const auto tempo = tempoOf(event)) {
            transport.speed = *tempo / secondsPerMinute * stepsPerBeat / sampleRate;
        }
    }
    return transport;
}

}  // namespace quillo
