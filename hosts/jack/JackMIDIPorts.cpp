// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackMIDIPorts.hpp"

#include <jack/midiport.h>

namespace quillo {

std::uint32_t JackMIDIInputPort::size() const QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("the server's library made this call for the process thread")
    return ::jack_midi_get_event_count(buffer_);
    QUILLO_REALTIME_EXEMPT_END
}

MIDIInputPort::Event JackMIDIInputPort::event(std::uint32_t index) const QUILLO_REALTIME {
    jack_midi_event_t found{};
    QUILLO_REALTIME_EXEMPT("the server's library made this call for the process thread")
    if (::jack_midi_event_get(&found, buffer_, index) != 0) {
        return {};
    }
    QUILLO_REALTIME_EXEMPT_END
    return {found.time, {found.buffer, found.size}};
}

std::uint32_t JackMIDIInputPort::lost() const QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("the server's library made this call for the process thread")
    return ::jack_midi_get_lost_event_count(buffer_);
    QUILLO_REALTIME_EXEMPT_END
}

void JackMIDIOutputPort::clear() QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("the server's library made this call for the process thread")
    ::jack_midi_clear_buffer(buffer_);
    QUILLO_REALTIME_EXEMPT_END
}

std::size_t JackMIDIOutputPort::room() const QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("the server's library made this call for the process thread")
    return ::jack_midi_max_event_size(buffer_);
    QUILLO_REALTIME_EXEMPT_END
}

bool JackMIDIOutputPort::tryWrite(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("the server's library made this call for the process thread")
    return ::jack_midi_event_write(buffer_, offset, bytes.data(), bytes.size()) == 0;
    QUILLO_REALTIME_EXEMPT_END
}

}  // namespace quillo
