// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace quillo {

/// Why a MIDI file cannot be read or written. The text of a reading error begins with the position, counted
/// in bytes from the start of the file: `byte 22: a delta time is longer than four bytes`.
class MIDIFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    MIDIFileError(std::size_t position, const std::string& what)
        : std::runtime_error("byte " + std::to_string(position) + ": " + what) {}
};

}  // namespace quillo
