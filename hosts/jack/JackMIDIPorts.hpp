// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "hosts/jack/MIDIPorts.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// The buffer that the server gives for a MIDI input port, in the cycle for which it gave it. [render]
class JackMIDIInputPort final : public MIDIInputPort {
public:
    explicit JackMIDIInputPort(void* buffer) QUILLO_REALTIME : buffer_(buffer) {}

    [[nodiscard]] std::uint32_t size() const QUILLO_REALTIME override;
    [[nodiscard]] Event event(std::uint32_t index) const QUILLO_REALTIME override;
    [[nodiscard]] std::uint32_t lost() const QUILLO_REALTIME override;

private:
    void* buffer_;
};

/// The same for an output port. [render]
class JackMIDIOutputPort final : public MIDIOutputPort {
public:
    explicit JackMIDIOutputPort(void* buffer) QUILLO_REALTIME : buffer_(buffer) {}

    void clear() QUILLO_REALTIME override;
    [[nodiscard]] std::size_t room() const QUILLO_REALTIME override;
    [[nodiscard]] bool tryWrite(std::uint32_t offset,
                                std::span<const std::uint8_t> bytes) QUILLO_REALTIME override;

private:
    void* buffer_;
};

}  // namespace quillo
