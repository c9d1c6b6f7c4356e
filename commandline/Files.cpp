// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline/Files.hpp"

#include <array>
#include <filesystem>
#include <istream>
#include <limits>
#include <ostream>
#include <system_error>
#include <utility>

#include "commandline/CommandFailure.hpp"
#include "midifile/MIDIFile.hpp"
#include "persistence/DecodingError.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

std::uint64_t limitOf(InputReading reading) {
    return reading == InputReading::unbounded ? std::numeric_limits<std::uint64_t>::max() : usualSizeLimit;
}

/// Throws as the readers of files do.
std::vector<std::uint8_t> readStream(std::istream& in, std::uint64_t most) {
    std::vector<std::uint8_t> bytes;
    std::array<char, 65536> part{};
    while (in.read(part.data(), part.size()), in.gcount() > 0) {
        bytes.insert(bytes.end(), part.begin(), part.begin() + in.gcount());
        if (bytes.size() > most) {
            throw FileTooLarge("standard input: it is larger than " + std::to_string(most >> 20U) + " MiB");
        }
    }
    if (in.bad()) {
        throw FileError("standard input: cannot be read");
    }
    return bytes;
}

std::vector<std::uint8_t> readBytes(const std::string& path, InputReading reading,
                                    std::istream* standardInput) {
    if (standardInput != nullptr && path == standardStream) {
        return readStream(*standardInput, limitOf(reading));
    }
    return reading == InputReading::prompt ? readRegularFile(path) : readWholeFile(path, limitOf(reading));
}

std::vector<std::uint8_t> readInput(const std::string& path, InputReading reading,
                                    std::istream* standardInput) {
    try {
        return readBytes(path, reading, standardInput);
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

std::ostream& streamOfWords(std::string_view target, const Console& console) {
    return target == standardStream ? console.err : console.out;
}

std::string inputName(const std::string& path) {
    return path == standardStream ? "standard input" : escaped(path);
}

MIDIFile readMIDIInput(const std::string& path, InputReading reading, std::istream* standardInput) {
    const auto bytes = readInput(path, reading, standardInput);
    try {
        return readMIDIFile(bytes);
    } catch (const MIDIFileError& error) {
        throw CommandFailure(exitBadData, inputName(path) + ": " + error.what());
    }
}

ReadDocument readPresetInput(const std::string& path, int badPreset, InputReading reading,
                             std::istream* standardInput) {
    const auto bytes = readInput(path, reading, standardInput);
    try {
        return readDocument(bytes);
    } catch (const DecodingError& error) {
        throw CommandFailure(badPreset, inputName(path) + ": " + error.mostUseful());
    }
}

std::string readTextInput(const std::string& path, InputReading reading) {
    const auto bytes = readInput(path, reading, nullptr);
    return {bytes.begin(), bytes.end()};
}

OutputFile::OutputFile(std::string path, bool force, std::ostream* standardOutput)
    : path_(std::move(path)), force_(force), stream_(path_ == standardStream ? standardOutput : nullptr) {
    std::error_code error;
    if (stream_ == nullptr && !force_ && std::filesystem::exists(path_, error)) {
        throw CommandFailure(exitCannotCreate, escaped(path_) + ": is there already; --force replaces it");
    }
}

void OutputFile::write(std::span<const std::uint8_t> bytes) const {
    if (stream_ != nullptr) {
        stream_->write(reinterpret_cast<const char*>(bytes.data()),
                       static_cast<std::streamsize>(bytes.size()));
        return;
    }
    try {
        writeWholeFile(path_, bytes, force_ ? Existing::replace : Existing::keep);
    } catch (const FileError& error) {
        throw CommandFailure(exitCannotCreate, error.what());
    }
}

}  // namespace quillo
