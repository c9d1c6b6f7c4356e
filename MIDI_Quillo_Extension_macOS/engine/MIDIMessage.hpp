// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>

#include "platform/RealTime.hpp"

namespace quillo {

class SharedBytes;

/// One complete MIDI message, status byte first; an immutable value of any length.
///
/// Short messages lie inside the value and long ones (system exclusive) are shared, so that copying, moving
/// and dropping one neither allocates nor frees: they may all happen on the render thread. The storage of a
/// long message that nobody holds any more is freed by whoever next makes a long one, or by `freeRetired`.
class MIDIMessage {
public:
    /// The longest message that needs no storage of its own, in bytes.
    static constexpr std::size_t maximumInlineSize = 7;

    /// The message without bytes.
    MIDIMessage() = default;

    /// [any but render] A message of any length.
    [[nodiscard]] static MIDIMessage copyOf(std::span<const std::uint8_t> bytes);

    /// A message of at most `maximumInlineSize` bytes.
    MIDIMessage(std::initializer_list<std::uint8_t> bytes) QUILLO_REALTIME;

    /// A message of at most `maximumInlineSize` bytes; what lies beyond is left out.
    [[nodiscard]] static MIDIMessage inlineCopyOf(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    MIDIMessage(const MIDIMessage& other) QUILLO_REALTIME;
    MIDIMessage(MIDIMessage&& other) QUILLO_REALTIME;
    MIDIMessage& operator=(const MIDIMessage& other) QUILLO_REALTIME;
    MIDIMessage& operator=(MIDIMessage&& other) QUILLO_REALTIME;
    ~MIDIMessage() QUILLO_REALTIME;

    /// The bytes, valid as long as this value or a copy of it.
    [[nodiscard]] std::span<const std::uint8_t> bytes() const QUILLO_REALTIME;
    [[nodiscard]] std::size_t size() const QUILLO_REALTIME { return bytes().size(); }

    bool operator==(const MIDIMessage& other) const QUILLO_REALTIME;

    /// [any but render] Frees the storage of long messages that nobody holds any more.
    static void freeRetired();

private:
    SharedBytes* shared_ = nullptr;
    std::uint8_t inlineSize_ = 0;
    std::array<std::uint8_t, maximumInlineSize> inline_{};
};

}  // namespace quillo
