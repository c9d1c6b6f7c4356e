// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace quillo {

/// A position in a MIDI file, in ticks from its start.
using Tick = std::int64_t;

/// A tick is this part of a quarter note, whose length is the tempo's. 1 to 32767.
struct TicksPerQuarter {
    std::uint16_t ticks = 480;
    bool operator==(const TicksPerQuarter&) const = default;
};

/// A tick is this part of a film or video frame, whatever the tempo.
struct TicksPerFrame {
    std::uint8_t framesPerSecond = 25;  ///< 24, 25, 30, or 29 for 30000/1001 (29.97)
    std::uint8_t ticks = 40;            ///< 1 to 255
    bool operator==(const TicksPerFrame&) const = default;
};

/// How long a tick is.
using MIDIDivision = std::variant<TicksPerQuarter, TicksPerFrame>;

/// One event of a track.
struct MIDIFileEvent {
    enum class Kind : std::uint8_t {
        channel,          ///< `bytes` is a channel voice message, status byte first
        meta,             ///< `bytes` is the meta type (0 to 127) and then its data
        systemExclusive,  ///< `bytes` is what follows the 0xF0, with the 0xF7 that ends a whole message
        escape,           ///< `bytes` goes to the wire as it stands, whatever it is
    };

    Tick tick = 0;
    Kind kind = Kind::channel;
    std::vector<std::uint8_t> bytes;

    bool operator==(const MIDIFileEvent&) const = default;
};

/// What a meta event begins with in a file. On a wire the same byte resets the system.
inline constexpr std::uint8_t metaStatus = 0xFF;

/// The meta events that the program knows by their type; all others it keeps as they are.
inline constexpr std::uint8_t metaTrackName = 0x03;
inline constexpr std::uint8_t metaMarker = 0x06;
inline constexpr std::uint8_t metaEndOfTrack = 0x2F;
inline constexpr std::uint8_t metaTempo = 0x51;          ///< three bytes: microseconds per quarter note
inline constexpr std::uint8_t metaTimeSignature = 0x58;  ///< numerator, power of two of the denominator, ...
inline constexpr std::uint8_t metaKeySignature = 0x59;   ///< sharps (negative: flats), 1 for minor

/// Microseconds per quarter note (1 to 16777215) if the event is a meta event that sets the tempo.
[[nodiscard]] std::optional<std::uint32_t> tempoOf(const MIDIFileEvent& event);

/// Microseconds per quarter note until the first tempo event: 120 quarters a minute.
inline constexpr std::uint32_t initialTempo = 500'000;

struct MIDITrack {
    std::vector<MIDIFileEvent> events;  ///< ticks never fall; no End of Track among them
    Tick endTick = 0;                   ///< where End of Track stands, at or after the last event

    bool operator==(const MIDITrack&) const = default;
};

/// What a Standard MIDI File holds.
struct MIDIFile {
    std::uint16_t format = 0;  ///< 0: one track; 1: several that play together; 2: several by themselves
    MIDIDivision division = TicksPerQuarter{};
    std::vector<MIDITrack> tracks;

    bool operator==(const MIDIFile&) const = default;
};

/// All the tracks as one: the events in order of their ticks, at equal ticks in the order of the tracks and
/// then in the order within each, and the latest end.
[[nodiscard]] MIDITrack merged(const std::vector<MIDITrack>& tracks);

/// The file as one track: what plays together merged, and the tracks of format 2 one after the other, each
/// from the end of the one before it. These have tempos of their own: where a track begins without one behind
/// a track that has changed it, the initial tempo is set.
[[nodiscard]] MIDITrack asOneTrack(const MIDIFile& file);

/// Why a MIDI file cannot be read or written. The text of a reading error begins with the position, counted
/// in bytes from the start of the file: `byte 22: a delta time is longer than four bytes`.
class MIDIFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    MIDIFileError(std::size_t position, const std::string& what)
        : std::runtime_error("byte " + std::to_string(position) + ": " + what) {}
};

/// Reads a Standard MIDI File, in the order and with the bytes that it has. It may be wrapped in a RIFF file
/// of the type RMID.
///
/// What is damaged throws a `MIDIFileError` with the byte position. Tolerated, because files like these exist
/// and can mean only one thing: chunks of unknown types, a header longer than needed, a track without End of
/// Track (it ends with its chunk), bytes after End of Track or after the last track, and running status that
/// goes on behind a meta or system-exclusive event.
[[nodiscard]] MIDIFile readMIDIFile(std::span<const std::uint8_t> bytes);

/// The bytes of a Standard MIDI File with exactly these tracks and events: a status byte for each message, no
/// running status, and End of Track at each track's `endTick`.
///
/// Throws a `MIDIFileError` for what the format cannot say: more than 268,435,455 ticks between an event and
/// the next, or a track or an event that is longer than its length field counts.
[[nodiscard]] std::vector<std::uint8_t> writeMIDIFile(const MIDIFile& file);

}  // namespace quillo
