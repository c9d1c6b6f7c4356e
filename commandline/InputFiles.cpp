// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline/InputFiles.hpp"

#include <limits>
#include <utility>

#include "commandline/CommandFailure.hpp"
#include "commandline/ExitStatus.hpp"
#include "midifile/MIDIFileError.hpp"
#include "midifile/MIDIFileReader.hpp"
#include "persistence/DecodingError.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr std::uint64_t mostMIDI = 1024UL * 1024 * 1024;

std::vector<std::uint8_t> readBytes(const std::string& path, InputReading reading, std::uint64_t most) {
    switch (reading) {
    case InputReading::bounded: return readWholeFile(path, most);
    case InputReading::unbounded: return readWholeFile(path, std::numeric_limits<std::uint64_t>::max());
    case InputReading::prompt: return readRegularFile(path, most);
    }
    return {};
}

std::vector<std::uint8_t> readInput(const std::string& path, InputReading reading, std::uint64_t most) {
    try {
        return readBytes(path, reading, most);
    } catch (const FileTooLarge& error) {
        const bool mayBeForced = reading == InputReading::bounded;
        throw CommandFailure(exitNoInput, std::string(error.what()) +
                                              (mayBeForced ? "; --force-size reads it all the same" : ""));
    } catch (const FileError& error) {
        throw CommandFailure(exitNoInput, error.what());
    }
}

}  // namespace

InputReading inputReading(const Arguments& arguments) {
    return arguments.has(forceSizeOption.name) ? InputReading::unbounded : InputReading::bounded;
}

MIDIFile readMIDIInput(const std::string& path, InputReading reading) {
    const auto bytes = readInput(path, reading, mostMIDI);
    try {
        return readMIDIFile(bytes);
    } catch (const MIDIFileError& error) {
        throw CommandFailure(exitBadData, escaped(path) + ": " + error.what());
    }
}

ReadDocument readPresetInput(const std::string& path, int badPreset, InputReading reading) {
    const auto bytes = readInput(path, reading, usualSizeLimit);
    try {
        return readDocument(bytes);
    } catch (const DecodingError& error) {
        throw CommandFailure(badPreset, escaped(path) + ": " + error.mostUseful());
    }
}

std::string readTextInput(const std::string& path, InputReading reading) {
    const auto bytes = readInput(path, reading, usualSizeLimit);
    return {bytes.begin(), bytes.end()};
}

}  // namespace quillo
