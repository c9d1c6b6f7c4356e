// SPDX-License-Identifier: GPL-3.0-or-later
#include "presets/DemoSong.hpp"

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "midi/Status.hpp"
#include "platform/InStableOrder.hpp"

namespace quillo {

namespace {

using Kind = MIDIFileEvent::Kind;

constexpr std::uint16_t ticksPerQuarter = 480;
constexpr Tick quarter = ticksPerQuarter;
constexpr Tick eighth = quarter / 2;
constexpr Tick bar = 4 * quarter;
constexpr Tick breath = 20;
constexpr Tick refrain = 2 * bar;
constexpr Tick songEnd = 4 * bar;

/// One player's track, written note by note.
class Part {
public:
    /// `zeroBasedChannel` from 0 to 15.
    Part(std::string_view name, std::uint8_t zeroBasedChannel) : channel_(zeroBasedChannel) {
        meta(0, metaTrackName, {name.begin(), name.end()});
    }

    Part& meta(Tick tick, std::uint8_t type, std::vector<std::uint8_t> data) {
        data.insert(data.begin(), type);
        return add(tick, Kind::meta, std::move(data));
    }

    Part& marker(Tick tick, std::string_view text) {
        return meta(tick, metaMarker, {text.begin(), text.end()});
    }

    Part& note(Tick start, Tick length, std::uint8_t number, std::uint8_t velocity) {
        message(start, midi::noteOn, {number, velocity});
        return message(start + length, midi::noteOff, {number, 64});
    }

    Part& chord(Tick start, Tick length, std::initializer_list<std::uint8_t> numbers, std::uint8_t velocity) {
        for (const auto number : numbers) {
            note(start, length, number, velocity);
        }
        return *this;
    }

    Part& program(Tick tick, std::uint8_t number) { return message(tick, midi::programChange, {number}); }

    Part& controller(Tick tick, std::uint8_t number, std::uint8_t value) {
        return message(tick, midi::controlChange, {number, value});
    }

    /// `position` from 0 to 16383, at rest 8192.
    Part& pitchBend(Tick tick, unsigned position) {
        return message(
            tick, midi::pitchWheel,
            {static_cast<std::uint8_t>(position & 0x7F), static_cast<std::uint8_t>(position >> 7)});
    }

    /// A message of the system, which stands in a file as an escape.
    Part& system(Tick tick, std::uint8_t status) { return add(tick, Kind::escape, {status}); }

    /// The track: in the order of ticks, at one tick in the order in which it was written.
    [[nodiscard]] MIDITrack track() const { return {inStableOrder(events_, &MIDIFileEvent::tick), songEnd}; }

private:
    Part& message(Tick tick, std::uint8_t status, std::vector<std::uint8_t> data) {
        data.insert(data.begin(), static_cast<std::uint8_t>(status | channel_));
        return add(tick, Kind::channel, std::move(data));
    }

    Part& add(Tick tick, Kind kind, std::vector<std::uint8_t> bytes) {
        events_.push_back({tick, kind, std::move(bytes)});
        return *this;
    }

    std::uint8_t channel_;
    std::vector<MIDIFileEvent> events_;
};

/// Four quarters in a bar, one sharp; 96 quarters a minute, then 120.
MIDITrack conductor() {
    Part part("Four Bars for a Quill", 0);
    part.meta(0, metaTimeSignature, {4, 2, 24, 8}).meta(0, metaKeySignature, {1, 0});
    part.meta(0, metaTempo, {0x09, 0x89, 0x68}).marker(0, "Verse");
    part.meta(refrain, metaTempo, {0x07, 0xA1, 0x20}).marker(refrain, "Refrain");
    part.system(refrain, midi::startCommand);
    return part.track();
}

MIDITrack piano() {
    constexpr std::uint8_t sustainPedal = 64;
    Part part("Piano", 0);
    part.program(0, 0);
    part.controller(0, sustainPedal, 127).controller(bar - eighth, sustainPedal, 0);
    part.chord(0, bar - eighth, {55, 59, 62}, 72);
    part.controller(refrain, sustainPedal, 127).controller(refrain + bar - eighth, sustainPedal, 0);
    part.chord(refrain, bar - eighth, {60, 64, 67}, 84);
    return part.track();
}

MIDITrack bass() {
    Part part("Bass", 1);
    part.program(0, 33);
    part.note(0, quarter, 43, 90).note(bar, quarter, 40, 88);
    part.note(refrain, quarter, 36, 96).note(3 * bar, 2 * quarter, 43, 92);
    return part.track();
}

MIDITrack flute() {
    constexpr std::uint8_t modulationWheel = 1;
    Part part("Flute", 2);
    part.program(0, 73);
    part.note(bar, quarter - breath, 74, 80).note(bar + quarter, eighth - breath, 76, 76);
    part.note(bar + 3 * eighth, eighth - breath, 78, 82);
    part.note(refrain, 2 * quarter, 79, 100).note(3 * bar, 3 * quarter, 83, 96);
    part.controller(3 * bar + eighth, modulationWheel, 40).controller(3 * bar + quarter, modulationWheel, 96);
    part.controller(3 * bar + 3 * quarter, modulationWheel, 0);
    part.pitchBend(refrain, 7168).pitchBend(refrain + eighth, 8192);
    return part.track();
}

MIDITrack drums() {
    constexpr std::uint8_t bassDrum = 36;
    constexpr std::uint8_t snare = 38;
    Part part("Drums", 9);
    part.note(bar, eighth, bassDrum, 100).note(bar + 2 * quarter, eighth, snare, 92);
    part.note(refrain, eighth, bassDrum, 110).note(refrain + 2 * quarter, eighth, snare, 100);
    return part.track();
}

}  // namespace

MIDIFile demoSong() {
    return {1, TicksPerQuarter{ticksPerQuarter}, {conductor(), piano(), bass(), flute(), drums()}};
}

}  // namespace quillo
