// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "analysis/AskedEvent.hpp"

namespace quillo {

/// A text that is no event; says what is wrong with it.
class AskedEventError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The forms that an event can have, in one or more lines.
inline constexpr std::string_view askedEventForms =
    "An event is one MIDI message in hexadecimal, in quotes if it has blanks: \"90 3c 64\"\n"
    "or 903c64, or one of \"host start\", \"host continue\", \"host stop\", load.\n";

/// Reads an event: the bytes of one complete MIDI message in hexadecimal, with blanks between them or
/// without, or "host start", "host continue", "host stop" ("transport" will do for "host") or "load". Upper
/// and lower case mean the same. System exclusive is any text that begins with f0. Throws an
/// `AskedEventError`.
[[nodiscard]] AskedEvent parseAskedEvent(std::string_view text);

/// The bytes alone, one at least, whatever they are. Throws an `AskedEventError`.
[[nodiscard]] std::vector<std::uint8_t> parseBytes(std::string_view text);

}  // namespace quillo
