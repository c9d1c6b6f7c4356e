// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPNotes.hpp"

#include <algorithm>
#include <cmath>

#include "midi/Status.hpp"

namespace quillo {

namespace {

constexpr std::int32_t open = -1;

/// From 0 to 127 for 0 to 1; no number is 0.
std::uint8_t dataByte(double value) QUILLO_REALTIME {
    constexpr double greatest = 127.0;
    return value > 0.0 ? static_cast<std::uint8_t>(std::round(std::min(value, 1.0) * greatest))
                       : std::uint8_t{0};
}

std::uint8_t status(std::uint8_t kind, std::size_t channel) QUILLO_REALTIME {
    return static_cast<std::uint8_t>(kind | channel);
}

struct Range {
    std::size_t first = 0;
    std::size_t end = 0;
};

/// All values below `count` for an open one, nothing for one that is not among them.
Range rangeOf(std::int16_t value, std::size_t count) QUILLO_REALTIME {
    if (value == open) {
        return {0, count};
    }
    const auto index = static_cast<std::size_t>(value);
    return index < count ? Range{index, index + 1} : Range{};
}

}  // namespace

bool CLAPNotes::holds(std::size_t channel, std::size_t key, std::int32_t id) const QUILLO_REALTIME {
    const auto held = held_[channel][key];
    return held != notHeld && (id == open || held == open || held == id);
}

bool CLAPNotes::holdsAny(std::size_t channel) const QUILLO_REALTIME {
    return std::ranges::any_of(held_[channel], [](std::int32_t id) QUILLO_REALTIME { return id != notHeld; });
}

template <class Action>
void CLAPNotes::forEach(const Address& address, Action&& action) QUILLO_REALTIME {
    const bool exact = address.channel != open && address.key != open;
    const auto channelRange = rangeOf(address.channel, channels);
    const auto keyRange = rangeOf(address.key, keys);
    for (auto channel = channelRange.first; channel < channelRange.end; ++channel) {
        for (auto key = keyRange.first; key < keyRange.end; ++key) {
            if (exact || holds(channel, key, address.id)) {
                action(channel, static_cast<std::uint8_t>(key));
            }
        }
    }
}

void CLAPNotes::begin(const clap_event_note_t& event, Send send) QUILLO_REALTIME {
    const std::int16_t channel = event.channel == open ? std::int16_t{0} : event.channel;
    if (event.key == open) {
        return;
    }
    forEach({channel, event.key, open}, [&](std::size_t on, std::uint8_t key) QUILLO_REALTIME {
        held_[on][key] = std::max(event.note_id, open);
        send(std::array{status(midi::noteOn, on), key, std::max(dataByte(event.velocity), std::uint8_t{1})});
    });
}

void CLAPNotes::end(const clap_event_note_t& event, Send send) QUILLO_REALTIME {
    end({event.channel, event.key, event.note_id}, event.velocity, send);
}

void CLAPNotes::choke(const clap_event_note_t& event, Send send) QUILLO_REALTIME {
    end({event.channel, event.key, event.note_id}, 0.0, send);
}

void CLAPNotes::end(const Address& address, double velocity, Send send) QUILLO_REALTIME {
    forEach(address, [&](std::size_t channel, std::uint8_t key) QUILLO_REALTIME {
        held_[channel][key] = notHeld;
        send(std::array{status(midi::noteOff, channel), key, dataByte(velocity)});
    });
}

void CLAPNotes::express(const clap_event_note_expression_t& event, Send send) QUILLO_REALTIME {
    if (event.expression_id != CLAP_NOTE_EXPRESSION_PRESSURE) {
        return;
    }
    const auto pressure = dataByte(event.value);
    if (event.key == open && event.note_id == open) {
        pressChannels(event.channel, pressure, send);
        return;
    }
    forEach({event.channel, event.key, event.note_id},
            [&](std::size_t channel, std::uint8_t key) QUILLO_REALTIME {
                send(std::array{status(midi::notePressure, channel), key, pressure});
            });
}

void CLAPNotes::pressChannels(std::int16_t channel, std::uint8_t pressure, Send send) const QUILLO_REALTIME {
    const auto range = rangeOf(channel, channels);
    for (auto i = range.first; i < range.end; ++i) {
        if (channel != open || holdsAny(i)) {
            send(std::array{status(midi::channelPressure, i), pressure});
        }
    }
}

}  // namespace quillo
