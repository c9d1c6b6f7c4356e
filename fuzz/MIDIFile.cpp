// SPDX-License-Identifier: GPL-3.0-or-later
// A MIDI file: read, written as it is and read as the same; played through rules, written, read again.
#include <optional>
#include <span>

#include "FuzzInput.hpp"
#include "FuzzRules.hpp"
#include "midifile/MIDIFile.hpp"
#include "offline/OfflineHost.hpp"
#include "offline/Score.hpp"

using namespace quillo;
using fuzz::require;

namespace {

std::optional<MIDIFile> readAsMIDIFile(std::span<const std::uint8_t> bytes) try {
    return readMIDIFile(bytes);
} catch (const MIDIFileError&) {
    return std::nullopt;
}

/// Nothing for what the format cannot say.
std::optional<fuzz::Bytes> written(const MIDIFile& file) try {
    return writeMIDIFile(file);
} catch (const MIDIFileError&) {
    return std::nullopt;
}

void requireReadable(const std::optional<fuzz::Bytes>& bytes, const MIDIFile& file) {
    require(!bytes || readAsMIDIFile(*bytes) == file, "what was written reads as the same");
}

void play(const MIDIFile& file) {
    constexpr std::uint32_t sampleRate = 8000;
    const Score score(file, sampleRate);
    OfflineHost host({.sampleRate = sampleRate, .block = 64, .tail = 1}, fuzz::fuzzRules());
    const auto performance = host.play(score.messages(), score.end());
    require(performance.cutOff == 0, "no rule's delay is longer than the tail");
    const auto played = score.fileWith(performance.outputs);
    requireReadable(written(played), played);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const auto file = readAsMIDIFile({data, size})) {
        requireReadable(written(*file), *file);
        play(*file);
    }
    return 0;
}
