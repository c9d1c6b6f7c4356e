// SPDX-License-Identifier: GPL-3.0-or-later

#include <span>
#include <string>
#include <string_view>

#include "midi/Status.hpp"
#include "midifile/MIDIFile.hpp"

namespace quillo {

namespace {

using Kind = MIDIFileEvent::Kind;
using Bytes = std::vector<std::uint8_t>;

/// The greatest number of four bytes with seven bits in each.
constexpr std::uint64_t greatestVariableLength = 0x0FFF'FFFF;

void append(Bytes& out, std::span<const std::uint8_t> bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

void appendText(Bytes& out, std::string_view text) {
    for (const auto character : text) {
        out.push_back(static_cast<std::uint8_t>(character));
    }
}

void appendBigEndian16(Bytes& out, std::uint16_t number) {
    out.push_back(static_cast<std::uint8_t>(number >> 8));
    out.push_back(static_cast<std::uint8_t>(number));
}

void appendBigEndian32(Bytes& out, std::uint32_t number) {
    appendBigEndian16(out, static_cast<std::uint16_t>(number >> 16));
    appendBigEndian16(out, static_cast<std::uint16_t>(number));
}

void appendVariableLength(Bytes& out, std::uint64_t number, const char* what) {
    if (number > greatestVariableLength) {
        throw MIDIFileError(std::string(what) + " of " + std::to_string(number) +
                            " is more than a MIDI file can say");
    }
    for (int shift = 21; shift > 0; shift -= 7) {
        if (number >> shift != 0) {
            out.push_back(static_cast<std::uint8_t>(0x80 | (number >> shift & 0x7F)));
        }
    }
    out.push_back(static_cast<std::uint8_t>(number & 0x7F));
}

void appendCounted(Bytes& out, std::span<const std::uint8_t> bytes) {
    appendVariableLength(out, bytes.size(), "an event's length");
    append(out, bytes);
}

void appendEvent(Bytes& out, Kind kind, std::span<const std::uint8_t> bytes) {
    switch (kind) {
    case Kind::channel: append(out, bytes); break;
    case Kind::meta:
        out.push_back(metaStatus);
        out.push_back(bytes.front());
        appendCounted(out, bytes.subspan(1));
        break;
    case Kind::systemExclusive:
        out.push_back(midi::systemExclusive);
        appendCounted(out, bytes);
        break;
    case Kind::escape:
        out.push_back(midi::endOfExclusive);
        appendCounted(out, bytes);
        break;
    }
}

void appendDelta(Bytes& out, Tick from, Tick to) {
    appendVariableLength(out, static_cast<std::uint64_t>(to - from), "a delta time");
}

Bytes trackBody(const MIDITrack& track) {
    Bytes body;
    Tick now = 0;
    for (const auto& event : track.events) {
        appendDelta(body, now, event.tick);
        appendEvent(body, event.kind, event.bytes);
        now = event.tick;
    }
    appendDelta(body, now, track.endTick);
    appendEvent(body, Kind::meta, Bytes{metaEndOfTrack});
    return body;
}

void appendChunk(Bytes& out, std::string_view type, std::span<const std::uint8_t> body) {
    if (body.size() > UINT32_MAX) {
        throw MIDIFileError("a track of " + std::to_string(body.size()) +
                            " bytes is more than a MIDI file can hold");
    }
    appendText(out, type);
    appendBigEndian32(out, static_cast<std::uint32_t>(body.size()));
    append(out, body);
}

std::uint16_t divisionWord(const MIDIDivision& division) {
    if (const auto* quarter = std::get_if<TicksPerQuarter>(&division)) {
        return quarter->ticks;
    }
    const auto& frame = std::get<TicksPerFrame>(division);
    return static_cast<std::uint16_t>((0x100 - frame.framesPerSecond) << 8 | frame.ticks);
}

}  // namespace

std::vector<std::uint8_t> writeMIDIFile(const MIDIFile& file) {
    Bytes header;
    appendBigEndian16(header, file.format);
    appendBigEndian16(header, static_cast<std::uint16_t>(file.tracks.size()));
    appendBigEndian16(header, divisionWord(file.division));
    Bytes out;
    appendChunk(out, "MThd", header);
    for (const auto& track : file.tracks) {
        appendChunk(out, "MTrk", trackBody(track));
    }
    return out;
}

}  // namespace quillo
