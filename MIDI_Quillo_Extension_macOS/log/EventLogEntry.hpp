// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"
#include "platform/RealTime.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// What a log entry records: a change of the host's transport, or one MIDI message. Making, copying and
/// dropping one neither allocates nor frees.
class EventLogEntryVariants {
public:
    struct Host {
        HostTransportTriggerVariantsV2 trigger;
    };
    struct MIDI {
        MIDIMessage message;  ///< complete, as received or sent
    };

    EventLogEntryVariants(Host host) QUILLO_REALTIME : isHost_(true), host_(host) {}
    EventLogEntryVariants(MIDI midi) QUILLO_REALTIME : midi_(std::move(midi)) {}

    /// The transport change, or null for a message.
    [[nodiscard]] const Host* host() const QUILLO_REALTIME { return isHost_ ? &host_ : nullptr; }
    /// The message, or null for a transport change.
    [[nodiscard]] const MIDI* midi() const QUILLO_REALTIME { return isHost_ ? nullptr : &midi_; }

    bool operator==(const EventLogEntryVariants& other) const QUILLO_REALTIME;

private:
    bool isHost_ = false;
    Host host_{};
    MIDI midi_{};
};

/// One line of the event log.
struct EventLogEntry {
    /// In the audio unit the host's sample time, never converted: of an incoming message its own, of a
    /// transport change the start of the cycle in which it was seen, of an outgoing message the one it was
    /// handed over with. In a session their places on the renderer's timeline.
    SampleTime timestamp = 0;
    EventLogEntryVariants variants;

    bool operator==(const EventLogEntry&) const = default;
};

/// [any but render] The entry as the log shows it: `[512] 90 3c 7f` or `[0] AU Host Start`.
[[nodiscard]] std::string text(const EventLogEntry& entry);

}  // namespace quillo
