// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "midi/Status.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// Which notes have been sent and not ended, which pedals are down, and which channels have been used: what
/// receivers must have made of the messages that went out. A value of fixed size; an update takes constant
/// time.
///
/// A note ends by its own note-off, or by a note-on of velocity 0, and by nothing else: receivers may ignore
/// All Notes Off, and a note-off too many does no harm. [render], or one thread at a time.
class SoundingNotes {
public:
    static constexpr std::size_t channels = 16;
    static constexpr std::size_t keys = 128;

    /// The controllers that count as pedals: sustain, sostenuto and soft.
    static constexpr std::array<std::uint8_t, 3> pedals{64, 66, 67};

    /// This message has gone out.
    void sent(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    /// The keys of a channel that sound: the lower half of them, or the upper one; a bit for each.
    using Half = std::uint64_t;
    static constexpr std::size_t halves = channels * keys / 64;

    /// The halves, those of the first channel first.
    [[nodiscard]] const std::array<Half, halves>& notes() const QUILLO_REALTIME { return notes_; }
    /// For each of `pedals`, the channels on which it is down, a bit for each.
    [[nodiscard]] const std::array<std::uint16_t, pedals.size()>& pedalsDown() const QUILLO_REALTIME {
        return pedalsDown_;
    }
    /// The channels on which anything has been sent, a bit for each.
    [[nodiscard]] std::uint16_t channelsUsed() const QUILLO_REALTIME { return channelsUsed_; }

    /// Whether a note sounds or a pedal is down.
    [[nodiscard]] bool any() const QUILLO_REALTIME { return countOfNotes() + countOfPedals() > 0; }
    [[nodiscard]] std::size_t countOfNotes() const QUILLO_REALTIME;
    [[nodiscard]] std::size_t countOfPedals() const QUILLO_REALTIME;

private:
    void setNote(std::size_t channel, std::uint8_t key, bool sounds) QUILLO_REALTIME;
    void setPedal(std::size_t channel, std::uint8_t controller, bool isDown) QUILLO_REALTIME;

    std::array<Half, halves> notes_{};
    std::array<std::uint16_t, pedals.size()> pedalsDown_{};
    std::uint16_t channelsUsed_ = 0;
};

// Each message that leaves passes here, so it costs no call.

inline void SoundingNotes::sent(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (bytes.empty() || midi::isData(bytes[0]) || midi::isSystem(bytes[0])) {
        return;
    }
    const std::size_t channel = bytes[0] & midi::channelMask;
    channelsUsed_ = static_cast<std::uint16_t>(channelsUsed_ | (1U << channel));
    if (bytes.size() < 3) {
        return;
    }
    constexpr std::uint8_t firstValueDown = 64;
    switch (bytes[0] & midi::kindMask) {
    case midi::noteOff: setNote(channel, bytes[1], false); break;
    case midi::noteOn: setNote(channel, bytes[1], bytes[2] != 0); break;
    case midi::controlChange: setPedal(channel, bytes[1], bytes[2] >= firstValueDown); break;
    default: break;
    }
}

/// What is no key is the receiver's business.
inline void SoundingNotes::setNote(std::size_t channel, std::uint8_t key, bool sounds) QUILLO_REALTIME {
    if (key >= keys) {
        return;
    }
    auto& half = notes_[2 * channel + key / 64];
    const auto bit = Half{1} << (key % 64);
    half = sounds ? half | bit : half & ~bit;
}

}  // namespace quillo
