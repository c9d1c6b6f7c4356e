// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/MessageWords.hpp"

#include <algorithm>

#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"
#include "rules/MIDIVocabulary.hpp"

namespace quillo {

namespace {

constexpr unsigned greatestChannel = 16;

constexpr unsigned bitsPerDataByte = 7;

std::string onChannel(std::uint8_t status) {
    return ", channel " + channelLabel(status & midi::channelMask);
}

/// Only for complete messages.
std::string voiceWords(std::span<const std::uint8_t> bytes) {
    const auto data1 = bytes[1];
    const auto data2 = bytes.size() > 2 ? bytes[2] : std::uint8_t{0};
    const auto velocity = ", velocity " + std::to_string(data2);
    switch (bytes[0] & midi::kindMask) {
    case midi::noteOff: return "note-off " + noteLabel(data1) + velocity;
    case midi::noteOn: return "note-on " + noteLabel(data1) + velocity;
    case midi::notePressure: return "pressure on note " + noteLabel(data1) + ", " + std::to_string(data2);
    case midi::controlChange:
        return "controller " + controllerWords(data1) + ", value " + std::to_string(data2);
    case midi::programChange: return "program " + std::to_string(data1);
    case midi::channelPressure: return "channel pressure " + std::to_string(data1);
    default: return "pitch bend " + std::to_string(data1 | unsigned{data2} << bitsPerDataByte);
    }
}

std::string systemWords(std::uint8_t status) {
    switch (status) {
    case midi::systemExclusive: return "system exclusive";
    case midi::timeCode: return "MIDI time code";
    case midi::songPosition: return "song position";
    case midi::songSelect: return "song select";
    case midi::tuneRequest: return "tune request";
    case midi::timingClock: return "timing clock";
    case midi::startCommand: return "MIDI Start";
    case midi::continueCommand: return "MIDI Continue";
    case midi::stopCommand: return "MIDI Stop";
    case midi::activeSensing: return "active sensing";
    case midi::systemReset: return "system reset";
    default: return "";
    }
}

}  // namespace

std::string numberWords(std::int64_t value, bool inRange) {
    return std::to_string(value) + (inRange ? "" : " (out of range)");
}

std::string dataByteWords(unsigned value) {
    return numberWords(value, value <= midi::greatestDataByte);
}

std::string noteWords(std::uint8_t note) {
    return midi::isData(note) ? noteLabel(note) : dataByteWords(note);
}

std::string controllerWords(std::uint8_t controller) {
    if (!midi::isData(controller)) {
        return dataByteWords(controller);
    }
    return dataByteWords(controller) + " (" + std::string(controllerName(controller)) + ")";
}

std::string channelWords(unsigned zeroBased) {
    return "channel " + numberWords(zeroBased + 1, zeroBased < greatestChannel);
}

std::string messageWords(std::span<const std::uint8_t> bytes) {
    if (isCompleteChannelMessage(bytes)) {
        return voiceWords(bytes) + onChannel(bytes[0]);
    }
    const bool isSystem = isCompleteShortMessage(bytes) || midi::isSystemExclusive(bytes);
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
