// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/cli/InputFiles.hpp"

#include <utility>

#include "hosts/cli/CommandFailure.hpp"
#include "hosts/cli/ExitStatus.hpp"
#include "hosts/cli/MIDIFileError.hpp"
#include "hosts/cli/MIDIFileReader.hpp"
#include "persistence/DecodingError.hpp"
#include "platform/AtomicFile.hpp"

namespace quillo {

std::vector<std::uint8_t> readInput(const std::string& path) {
    try {
        return readWholeFile(path);
    } catch (const FileError& error) {
        throw CommandFailure(exitNoInput, error.what());
    }
}

MIDIFile readMIDIInput(const std::string& path) {
    const auto bytes = readInput(path);
    try {
        return readMIDIFile(bytes);
    } catch (const MIDIFileError& error) {
        throw CommandFailure(exitBadData, path + ": " + error.what());
    }
}

PresetInput readPresetInput(const std::string& path, int badPreset) {
    auto bytes = readInput(path);
    try {
        auto document = readDocument(bytes);
        return {std::move(bytes), std::move(document)};
    } catch (const DecodingError& error) {
        throw CommandFailure(badPreset, path + ": " + error.mostUseful());
    }
}

}  // namespace quillo
