// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/MessageWords.hpp"

#include <algorithm>

#include "midi/MessageLength.hpp"
#include "rules/MIDIVocabulary.hpp"
#include "words/NumberWords.hpp"

namespace quillo {

namespace {

constexpr unsigned bitsPerDataByte = 7;

std::string onChannel(std::uint8_t status) {
    return ", channel " + channelLabel(status & 0x0FU);
}

/// Only for complete messages.
std::string voiceWords(std::span<const std::uint8_t> bytes) {
    const auto data1 = bytes[1];
    const auto data2 = bytes.size() > 2 ? bytes[2] : std::uint8_t{0};
    const auto velocity = ", velocity " + std::to_string(data2);
    switch (bytes[0] & 0xF0U) {
    case 0x80: return "note-off " + noteLabel(data1) + velocity;
    case 0x90: return "note-on " + noteLabel(data1) + velocity;
    case 0xA0: return "pressure on note " + noteLabel(data1) + ", " + std::to_string(data2);
    case 0xB0: return "controller " + controllerWords(data1) + ", value " + std::to_string(data2);
    case 0xC0: return "program " + std::to_string(data1);
    case 0xD0: return "channel pressure " + std::to_string(data1);
    default: return "pitch wheel " + std::to_string(data1 | unsigned{data2} << bitsPerDataByte);
    }
}

std::string systemWords(std::uint8_t status) {
    switch (status) {
    case 0xF0: return "system exclusive";
    case 0xF1: return "MIDI time code";
    case 0xF2: return "song position";
    case 0xF3: return "song select";
    case 0xF6: return "tune request";
    case 0xF8: return "timing clock";
    case 0xFA: return "MIDI Start";
    case 0xFB: return "MIDI Continue";
    case 0xFC: return "MIDI Stop";
    case 0xFE: return "active sensing";
    case 0xFF: return "system reset";
    default: return "";
    }
}

}  // namespace

std::string messageWords(std::span<const std::uint8_t> bytes) {
    constexpr std::uint8_t systemExclusive = 0xF0;
    if (isCompleteChannelMessage(bytes)) {
        return voiceWords(bytes) + onChannel(bytes[0]);
    }
    const bool isSystem = isCompleteShortMessage(bytes) || (!bytes.empty() && bytes[0] == systemExclusive);
    return isSystem ? systemWords(bytes[0]) : "";
}

std::string traceLine(const EventLogEntry& entry) {
    constexpr std::size_t wordsColumn = 24;
    auto line = text(entry);
    const auto* midi = entry.variants.midi();
    const auto words = midi != nullptr ? messageWords(midi->message.bytes()) : "";
    if (!words.empty()) {
        line.resize(std::max(wordsColumn, line.size() + 2), ' ');
        line += words;
    }
    return line;
}

}  // namespace quillo
