// SPDX-License-Identifier: GPL-3.0-or-later

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"
#include "midifile/ByteCursor.hpp"
#include "midifile/MIDIFile.hpp"

namespace quillo {

namespace {

using Kind = MIDIFileEvent::Kind;

struct Header {
    std::uint16_t format;
    std::uint16_t trackCount;
    MIDIDivision division;
};

constexpr std::string_view headerType = "MThd";
constexpr std::string_view trackType = "MTrk";
constexpr std::string_view riffType = "RIFF";

std::string textOf(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

std::uint32_t littleEndian32(ByteCursor& riff) {
    const auto bytes = riff.take(4, "a chunk's length");
    const auto byte = [&bytes](std::size_t index) { return std::uint32_t{bytes[index]} << (8 * index); };
    return byte(0) | byte(1) | byte(2) | byte(3);
}

/// What is wrapped in a RIFF file: its chunk "data". Chunks begin at even distances.
ByteCursor unwrapped(ByteCursor riff) {
    riff.take(riffType.size() + 4, "the RIFF header");
    const auto typePosition = riff.position();
    if (textOf(riff.take(4, "the RIFF header")) != "RMID") {
        throw MIDIFileError(typePosition, "a RIFF file that does not hold MIDI: its type is not RMID");
    }
    while (!riff.atEnd()) {
        const auto type = textOf(riff.take(4, "a chunk's type"));
        const auto length = littleEndian32(riff);
        auto chunk = riff.part(length, "a chunk of the RIFF file");
        if (type == "data") {
            return chunk;
        }
        riff.take(riff.atEnd() ? 0 : length % 2, "a chunk of the RIFF file");
    }
    throw MIDIFileError(riff.position(), "the RIFF file ends without a chunk of data");
}

/// The file from its header on.
ByteCursor fileIn(std::span<const std::uint8_t> bytes) {
    ByteCursor file(bytes, "the file");
    const bool isWrapped =
        bytes.size() >= riffType.size() && textOf(bytes.first(riffType.size())) == riffType;
    return isWrapped ? unwrapped(file) : file;
}

MIDIDivision readDivision(ByteCursor& header) {
    const auto position = header.position();
    const auto first = header.byte("the division");
    const auto second = header.byte("the division");
    if (first < 0x80) {
        const auto ticks = static_cast<std::uint16_t>(first << 8 | second);
        if (ticks == 0) {
            throw MIDIFileError(position, "the division has no ticks in a quarter note");
        }
        return TicksPerQuarter{ticks};
    }
    const auto framesPerSecond = static_cast<std::uint8_t>(0x100 - first);
    if (framesPerSecond != 24 && framesPerSecond != 25 && framesPerSecond != 29 && framesPerSecond != 30) {
        throw MIDIFileError(position, "a division of " + std::to_string(framesPerSecond) +
                                          " frames a second, which no time code has");
    }
    if (second == 0) {
        throw MIDIFileError(position + 1, "the division has no ticks in a frame");
    }
    return TicksPerFrame{framesPerSecond, second};
}

Header readHeader(ByteCursor& file) {
    const auto start = file.position();
    if (file.remaining() < headerType.size() || textOf(file.take(headerType.size(), "")) != headerType) {
        throw MIDIFileError(start, "not a MIDI file: it does not begin with MThd");
    }
    auto body = file.part(file.bigEndian32("the header's length"), "the header");
    const auto formatPosition = body.position();
    const auto format = body.bigEndian16("the format");
    if (format > 2) {
        throw MIDIFileError(formatPosition,
                            "format " + std::to_string(format) + ", but there are only formats 0, 1 and 2");
    }
    const auto trackCount = body.bigEndian16("the number of tracks");
    return {format, trackCount, readDivision(body)};
}

/// Reads the events of one track chunk.
class TrackReader {
public:
    explicit TrackReader(ByteCursor cursor) : cursor_(std::move(cursor)) {}

    MIDITrack read() {
        while (!cursor_.atEnd() && !ended_) {
            track_.endTick += cursor_.variableLength("a delta time");
            readEvent();
        }
        return std::move(track_);
    }

private:
    void readEvent() {
        switch (cursor_.peek("an event")) {
        case metaStatus: readMeta(); break;
        case midi::systemExclusive: readSystemExclusive(Kind::systemExclusive); break;
        case midi::endOfExclusive: readSystemExclusive(Kind::escape); break;
        default: readChannelMessage(); break;
        }
    }

    void readMeta() {
        const auto start = cursor_.position();
        cursor_.byte("a meta event");
        const auto type = cursor_.byte("a meta event");
        if (type >= 0x80) {
            throw MIDIFileError(start + 1, "a meta event of type " + std::to_string(type) + ", above 127");
        }
        const auto data = takeCounted("a meta event");
        if (type == metaEndOfTrack) {
            ended_ = true;
            return;
        }
        std::vector<std::uint8_t> bytes{type};
        bytes.insert(bytes.end(), data.begin(), data.end());
        append(Kind::meta, std::move(bytes));
        if (type == metaTempo && tempoOf(track_.events.back()).value_or(0) == 0) {
            throw MIDIFileError(start, "a tempo event without a tempo");
        }
    }

    void readSystemExclusive(Kind kind) {
        cursor_.byte("a system-exclusive event");
        const auto data = takeCounted("a system-exclusive event");
        append(kind, {data.begin(), data.end()});
    }

    void readChannelMessage() {
        const auto start = cursor_.position();
        const auto first = cursor_.peek("an event");
        if (midi::isSystem(first)) {
            throw MIDIFileError(start, "status byte " + std::to_string(first) +
                                           ", which stands in a MIDI file only inside an escape");
        }
        if (!midi::isData(first)) {
            runningStatus_ = cursor_.byte("a message");
        } else if (runningStatus_ == 0) {
            throw MIDIFileError(start, "a data byte where the track's first status byte should stand");
        }
        std::vector<std::uint8_t> bytes{runningStatus_};
        while (bytes.size() < messageLength(runningStatus_)) {
            bytes.push_back(dataByte());
        }
        append(Kind::channel, std::move(bytes));
    }

    std::uint8_t dataByte() {
        const auto position = cursor_.position();
        const auto byte = cursor_.byte("a message");
        if (!midi::isData(byte)) {
            throw MIDIFileError(position,
                                "status byte " + std::to_string(byte) + " in the middle of a message");
        }
        return byte;
    }

    std::span<const std::uint8_t> takeCounted(const char* what) {
        const auto length = cursor_.variableLength("an event's length");
        return cursor_.take(length, what);
    }

    void append(Kind kind, std::vector<std::uint8_t> bytes) {
        track_.events.push_back({track_.endTick, kind, std::move(bytes)});
    }

    ByteCursor cursor_;
    MIDITrack track_;
    std::uint8_t runningStatus_ = 0;
    bool ended_ = false;
};

}  // namespace

MIDIFile readMIDIFile(std::span<const std::uint8_t> bytes) {
    auto file = fileIn(bytes);
    const auto header = readHeader(file);
    MIDIFile result{header.format, header.division, {}};
    while (result.tracks.size() < header.trackCount) {
        if (file.atEnd()) {
            throw MIDIFileError(file.position(), "the file ends after " +
                                                     std::to_string(result.tracks.size()) + " of " +
                                                     std::to_string(header.trackCount) + " tracks");
        }
        const auto type = textOf(file.take(trackType.size(), "a chunk's type"));
        const auto length = file.bigEndian32("a chunk's length");
        auto body = file.part(length, type == trackType ? "the track" : "a chunk of an unknown type");
        if (type == trackType) {
            result.tracks.push_back(TrackReader(std::move(body)).read());
        }
    }
    return result;
}

}  // namespace quillo
