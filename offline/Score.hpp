// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"
#include "midifile/MIDIFile.hpp"
#include "midifile/TempoMap.hpp"

namespace quillo {

/// A message at its place on the host's timeline.
struct TimedMessage {
    SampleTime time = 0;
    MIDIMessage message;

    bool operator==(const TimedMessage&) const = default;
};

/// A MIDI file as a host plays it: its messages on a timeline of samples, and what does not go through the
/// rules but stays where it is (tempo, metre, key, names, markers and all other meta events).
///
/// Messages are the channel messages, and whatever an escape holds if that is exactly one message other than
/// system exclusive: MIDI Start, for one, can stand in a file in no other way. System-exclusive events and
/// other escapes are neither played nor kept, as no rule sees them. The tracks of format 2 are played one
/// after the other.
class Score {
public:
    /// What is neither played nor kept.
    struct LeftOut {
        std::size_t events = 0;
        std::size_t bytes = 0;
    };

    /// Throws a `MIDIFileError` for a file that ends beyond `TempoMap::latestSampleTime`.
    Score(const MIDIFile& file, std::uint32_t sampleRate);

    /// In the order in which they are played: by tick, then by track, then by their order in it.
    [[nodiscard]] const std::vector<TimedMessage>& messages() const { return messages_; }

    [[nodiscard]] const LeftOut& leftOut() const { return leftOut_; }

    /// When the transport stops: the file's end, behind the last message and behind sample 0, so that even an
    /// empty file starts the transport.
    [[nodiscard]] SampleTime end() const { return end_; }

    /// A file of format 0 that lines up with this one: what stays where it was, and `outputs` at the nearest
    /// ticks, by their times and then in the given order. At one tick, what stays comes first.
    [[nodiscard]] MIDIFile fileWith(std::vector<TimedMessage> outputs) const;

private:
    Score(const MIDIDivision& division, const MIDITrack& track, std::uint32_t sampleRate);

    MIDIDivision division_;
    TempoMap tempoMap_;
    Tick endTick_;
    std::vector<MIDIFileEvent> metaEvents_;
    std::vector<TimedMessage> messages_;
    LeftOut leftOut_;
    SampleTime end_;
};

}  // namespace quillo
