// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "hosts/clap/CLAPHeaders.hpp"
#include "platform/RealTime.hpp"
#include "platform/RealTimeFunction.hpp"

namespace quillo {

/// Note events, from hosts that send these in place of MIDI, as the MIDI messages that they stand for:
///
/// - A note that begins has a velocity of at least 1: in MIDI 0 would end it. Without a channel it begins on
///   the first one; without a key it is ignored.
/// - A note that ends, or is choked, becomes a note off; choked with a velocity of 0. For a channel, key or
///   note that is left open, one for each note that fits and is held.
/// - The pressure of a note becomes polyphonic pressure, that of a channel channel pressure, and that of all
///   channels channel pressure on each that holds a note.
/// - Other expressions have no counterpart for one note and are left out, as is the end of a voice, which is
///   for plug-ins to report.
///
/// It remembers which notes are held. [render]
class CLAPNotes {
public:
    /// Takes a message; its bytes live for the call.
    using Send = RealTimeFunctionRef<void(std::span<const std::uint8_t> bytes)>;

    void begin(const clap_event_note_t& event, Send send) QUILLO_REALTIME;
    void end(const clap_event_note_t& event, Send send) QUILLO_REALTIME;
    void choke(const clap_event_note_t& event, Send send) QUILLO_REALTIME;
    void express(const clap_event_note_expression_t& event, Send send) QUILLO_REALTIME;

private:
    static constexpr std::size_t channels = 16;
    static constexpr std::size_t keys = 128;
    static constexpr std::int32_t notHeld = -2;
    using Row = std::array<std::int32_t, keys>;

    /// Which notes an event is about, any of its three values open.
    struct Address {
        std::int16_t channel = -1;
        std::int16_t key = -1;
        std::int32_t id = -1;
    };

    /// Calls `action` with the channel and the key of each note that the event is about.
    template <class Action>
    void forEach(const Address& address, Action&& action) QUILLO_REALTIME;

    [[nodiscard]] bool holds(std::size_t channel, std::size_t key, std::int32_t id) const QUILLO_REALTIME;
    [[nodiscard]] bool holdsAny(std::size_t channel) const QUILLO_REALTIME;
    void end(const Address& address, double velocity, Send send) QUILLO_REALTIME;
    void pressChannels(std::int16_t channel, std::uint8_t pressure, Send send) const QUILLO_REALTIME;

    /// By channel and key: the number that the host gave to the held note, -1 when it gave none, or
    /// `notHeld`.
    std::array<Row, channels> held_ = noneHeld();
    static constexpr std::array<Row, channels> noneHeld() {
        std::array<Row, channels> rows{};
        for (auto& row : rows) {
            row.fill(notHeld);
        }
        return rows;
    }
};

}  // namespace quillo
