// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/RealTime.hpp"

namespace quillo {

/// What an input port holds in one cycle, by ascending offset. [render]
class MIDIInputPort {
public:
    struct Event {
        std::uint32_t offset = 0;             ///< in frames from the cycle's start
        std::span<const std::uint8_t> bytes;  ///< valid until the cycle ends
    };

    [[nodiscard]] virtual std::uint32_t size() const QUILLO_REALTIME = 0;
    [[nodiscard]] virtual Event event(std::uint32_t index) const QUILLO_REALTIME = 0;
    /// How many events found no room on their way into the port.
    [[nodiscard]] virtual std::uint32_t lost() const QUILLO_REALTIME = 0;

protected:
    MIDIInputPort() = default;
    ~MIDIInputPort() = default;
    MIDIInputPort(const MIDIInputPort&) = default;
    MIDIInputPort& operator=(const MIDIInputPort&) = default;
};

/// What an output port is given in one cycle. It takes messages by ascending offset only. [render]
class MIDIOutputPort {
public:
    virtual void clear() QUILLO_REALTIME = 0;
    /// The longest message that there is room for now, in bytes.
    [[nodiscard]] virtual std::size_t room() const QUILLO_REALTIME = 0;
    /// False, and nothing written, when there is no room for all of the message.
    [[nodiscard]] virtual bool tryWrite(std::uint32_t offset,
                                        std::span<const std::uint8_t> bytes) QUILLO_REALTIME = 0;

protected:
    MIDIOutputPort() = default;
    ~MIDIOutputPort() = default;
    MIDIOutputPort(const MIDIOutputPort&) = default;
    MIDIOutputPort& operator=(const MIDIOutputPort&) = default;
};

}  // namespace quillo
