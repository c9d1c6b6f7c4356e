// SPDX-License-Identifier: GPL-3.0-or-later
#include "offline/Score.hpp"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"
#include "midifile/MIDIFile.hpp"
#include "platform/InStableOrder.hpp"

namespace quillo {

namespace {

using Kind = MIDIFileEvent::Kind;

bool isPlayed(const MIDIFileEvent& event) {
    return event.kind == Kind::channel || (event.kind == Kind::escape && isCompleteShortMessage(event.bytes));
}

/// The message in the form in which a file holds it. What is no message by the book, because a rule was made
/// so, stands in an escape: that takes any bytes.
MIDIFileEvent eventOf(Tick tick, std::span<const std::uint8_t> message) {
    if (isCompleteChannelMessage(message)) {
        return {tick, Kind::channel, {message.begin(), message.end()}};
    }
    if (midi::isSystemExclusive(message)) {
        return {tick, Kind::systemExclusive, {message.begin() + 1, message.end()}};
    }
    return {tick, Kind::escape, {message.begin(), message.end()}};
}

}  // namespace

Score::Score(const MIDIFile& file, std::uint32_t sampleRate)
    : Score(file.division, asOneTrack(file), sampleRate) {}

Score::Score(const MIDIDivision& division, const MIDITrack& track, std::uint32_t sampleRate)
    : division_(division),
      tempoMap_(division, tempoChangesOf(track), sampleRate),
      endTick_(track.endTick),
      end_(std::max<SampleTime>(tempoMap_.sampleTime(endTick_), 1)) {
    for (const auto& event : track.events) {
        if (event.kind == Kind::meta) {
            metaEvents_.push_back(event);
        } else if (isPlayed(event)) {
            messages_.push_back({tempoMap_.sampleTime(event.tick), MIDIMessage::copyOf(event.bytes)});
        } else {
            ++leftOut_.events;
            leftOut_.bytes += event.bytes.size() + (event.kind == Kind::systemExclusive ? 1U : 0U);
        }
    }
    if (!messages_.empty()) {
        end_ = std::max(end_, messages_.back().time + 1);
    }
    if (end_ >= TempoMap::latestSampleTime) {
        throw MIDIFileError("the file lasts too long: it ends after sample " +
                            std::to_string(TempoMap::latestSampleTime));
    }
}

MIDIFile Score::fileWith(std::vector<TimedMessage> outputs) const {
    MIDITrack track{metaEvents_, endTick_};
    for (const auto& output : inStableOrder(std::move(outputs), &TimedMessage::time)) {
        track.events.push_back(eventOf(tempoMap_.tick(output.time), output.message.bytes()));
    }
    track.events = inStableOrder(std::move(track.events), &MIDIFileEvent::tick);
    if (!track.events.empty()) {
        track.endTick = std::max(track.endTick, track.events.back().tick);
    }
    return {0, division_, {std::move(track)}};
}

}  // namespace quillo
