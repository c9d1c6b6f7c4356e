// SPDX-License-Identifier: GPL-3.0-or-later
// A MIDI file: read, written as it is and read as the same; played through rules, written, read again.
#include <optional>

#include "FuzzInput.hpp"
#include "FuzzRules.hpp"
#include "midifile/MIDIFile.hpp"
#include "offline/OfflineHost.hpp"
#include "offline/Score.hpp"

using namespace quillo;
using fuzz::require;

namespace {

void requireWritable(const MIDIFile& file) {
    try {
        require(readMIDIFile(writeMIDIFile(file)) == file, "what was written reads as the same");
    } catch (const MIDIFileError&) {
        return;  // the format cannot say it
    }
}

void play(const MIDIFile& file) {
    constexpr std::uint32_t sampleRate = 8000;
    const Score score(file, sampleRate);
    OfflineHost host({.sampleRate = sampleRate, .block = 64, .tail = 1}, fuzz::fuzzRules());
    const auto performance = host.play(score.messages(), score.end());
    require(performance.cutOff == 0, "no rule's delay is longer than the tail");
    requireWritable(score.fileWith(performance.outputs));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const auto file = readMIDIFile({data, size});
        requireWritable(file);
        play(file);
    } catch (const MIDIFileError&) {
        return 0;
    }
    return 0;
}
