// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/OwedMessages.hpp"

#include <algorithm>
#include <bit>

#include "midi/Status.hpp"

namespace quillo {

namespace {

constexpr std::uint8_t usualVelocity = 64;
constexpr std::size_t keysOfAHalf = 64;

std::uint8_t onChannel(std::uint8_t kind, std::size_t channel) QUILLO_REALTIME {
    return static_cast<std::uint8_t>(kind | channel);
}

}  // namespace

void OwedMessages::oweEnds(const SoundingNotes& notes) QUILLO_REALTIME {
    for (std::size_t half = 0; half < notes_.size(); ++half) {
        notes_[half] |= notes.notes()[half];
    }
    for (std::size_t channel = 0; channel < controllers_.size(); ++channel) {
        for (std::size_t pedal = 0; pedal < SoundingNotes::pedals.size(); ++pedal) {
            const auto isDown = notes.pedalsDown()[pedal] >> channel & 1U;
            controllers_[channel] = static_cast<std::uint8_t>(controllers_[channel] | isDown << pedal);
        }
    }
    any_ = true;
}

void OwedMessages::oweSilence(const SoundingNotes& notes) QUILLO_REALTIME {
    oweEnds(notes);
    constexpr auto all = static_cast<std::uint8_t>((1U << controllers.size()) - 1);
    for (std::size_t channel = 0; channel < controllers_.size(); ++channel) {
        if ((notes.channelsUsed() >> channel & 1U) != 0) {
            controllers_[channel] = all;
        }
    }
}

std::optional<OwedMessages::Message> OwedMessages::next() QUILLO_REALTIME {
    for (std::size_t half = 0; half < notes_.size(); ++half) {
        if (notes_[half] != 0) {
            const auto key =
                half % 2 * keysOfAHalf + static_cast<std::size_t>(std::countr_zero(notes_[half]));
            return Message{onChannel(midi::noteOff, half / 2), static_cast<std::uint8_t>(key), usualVelocity};
        }
    }
    for (std::size_t channel = 0; channel < controllers_.size(); ++channel) {
        if (controllers_[channel] != 0) {
            const auto first = static_cast<std::size_t>(std::countr_zero(controllers_[channel]));
            return Message{onChannel(midi::controlChange, channel), controllers[first], 0};
        }
    }
    any_ = false;
    return std::nullopt;
}

void OwedMessages::settle(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (bytes.size() < 3 || midi::isSystem(bytes[0])) {
        return;
    }
    const std::size_t channel = bytes[0] & midi::channelMask;
    const auto kind = bytes[0] & midi::kindMask;
    if ((kind == midi::noteOff || kind == midi::noteOn) && bytes[1] < SoundingNotes::keys) {
        notes_[2 * channel + bytes[1] / keysOfAHalf] &= ~(SoundingNotes::Half{1} << (bytes[1] % keysOfAHalf));
    }
    const auto index = std::ranges::find(controllers, bytes[1]) - controllers.begin();
    if (kind == midi::controlChange && bytes[2] == 0) {
        controllers_[channel] = static_cast<std::uint8_t>(controllers_[channel] & ~(1U << index));
    }
}

}  // namespace quillo
