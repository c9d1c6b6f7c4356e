// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "commandline/Arguments.hpp"
#include "commandline/Console.hpp"
#include "midifile/MIDIFile.hpp"
#include "persistence/PluginData.hpp"

namespace quillo {

/// The files that a verb is given. What is wrong with one throws a `CommandFailure` whose text begins with
/// the file's name; its status is `exitNoInput` for a file that cannot be read or is too large.

/// How a file is read: up to 64 MiB, which may come through a pipe; whatever its size, as the user asks with
/// `forceSizeOption`; or without ever waiting, which only a regular file allows.
enum class InputReading { bounded, unbounded, prompt };

inline constexpr Option forceSizeOption{"--force-size", false};
[[nodiscard]] InputReading inputReading(const Arguments& arguments);

/// What stands for standard input and standard output in place of a path.
inline constexpr std::string_view standardStream = "-";

/// For what is said beside a result: standard output, unless the result itself goes there.
[[nodiscard]] std::ostream& streamOfWords(std::string_view target, const Console& console);

/// How an input is called in messages: its path, or "standard input".
[[nodiscard]] std::string inputName(const std::string& path);

/// A damaged file fails with `exitBadData` and the byte position. With a stream "-" is that stream.
[[nodiscard]] MIDIFile readMIDIInput(const std::string& path, InputReading reading = InputReading::bounded,
                                     std::istream* standardInput = nullptr);

/// A damaged preset fails with `badPreset` and what is wrong where. With a stream "-" is that stream.
[[nodiscard]] ReadDocument readPresetInput(const std::string& path, int badPreset, InputReading reading,
                                           std::istream* standardInput = nullptr);

/// A text of any form, as large as a preset may be.
[[nodiscard]] std::string readTextInput(const std::string& path, InputReading reading);

/// The file that a verb writes, whole or not at all. An existing one is replaced only by force: the
/// constructor fails early, before any work is wasted, and `write` checks again. Both throw a
/// `CommandFailure` with `exitCannotCreate`. With a stream "-" is that stream, whose owner flushes it.
class OutputFile {
public:
    OutputFile(std::string path, bool force, std::ostream* standardOutput = nullptr);

    void write(std::span<const std::uint8_t> bytes) const;

private:
    std::string path_;
    bool force_;
    std::ostream* stream_;  ///< null for a file
};

}  // namespace quillo
