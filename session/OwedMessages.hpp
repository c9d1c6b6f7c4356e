// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/RealTime.hpp"
#include "session/SoundingNotes.hpp"

namespace quillo {

/// What is still to be sent for notes to end: first their note-offs, channel by channel, then on each channel
/// the pedals up, and after a panic All Notes Off and All Sound Off. It stays owed until it has gone out, in
/// as many blocks as the host's room asks for. A value of fixed size. [render]
class OwedMessages {
public:
    using Message = std::array<std::uint8_t, 3>;

    /// The end of all notes that sound, and of the pedals that are down.
    void oweEnds(const SoundingNotes& notes) QUILLO_REALTIME;

    /// That, and on all channels that were used everything that makes a receiver silent.
    void oweSilence(const SoundingNotes& notes) QUILLO_REALTIME;

    [[nodiscard]] bool any() const QUILLO_REALTIME { return any_; }

    /// The message that is to go out next; nothing when nothing is owed. It is owed until `settle`.
    [[nodiscard]] std::optional<Message> next() QUILLO_REALTIME;

    /// This message has gone out: what it ends is no longer owed, and neither is the end of a note that it
    /// begins again, for the note-off that is to come ends both.
    void settle(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

private:
    /// What is sent on a channel once its notes have ended, in this order, with a value of 0.
    /// The pedals come first: their bits are those of their places among them.
    static constexpr std::array<std::uint8_t, 5> controllers{64, 66, 67, 123, 120};
    static_assert(std::ranges::equal(SoundingNotes::pedals,
                                     std::span(controllers).first<SoundingNotes::pedals.size()>()));

    std::array<SoundingNotes::Half, SoundingNotes::halves> notes_{};
    std::array<std::uint8_t, SoundingNotes::channels> controllers_{};  ///< of each channel, a bit for each
    bool any_ = false;
};

}  // namespace quillo
