// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/NumberWords.hpp"

#include "rules/MIDIVocabulary.hpp"

namespace quillo {

namespace {

constexpr unsigned greatestDataByte = 127;
constexpr unsigned greatestChannel = 16;

}  // namespace

std::string numberWords(std::int64_t value, bool inRange) {
    return std::to_string(value) + (inRange ? "" : " (out of range)");
}

std::string dataByteWords(unsigned value) {
    return numberWords(value, value <= greatestDataByte);
}

std::string noteWords(std::uint8_t note) {
    return note <= greatestDataByte ? noteLabel(note) : dataByteWords(note);
}

std::string controllerWords(std::uint8_t controller) {
    if (controller > greatestDataByte) {
        return dataByteWords(controller);
    }
    return dataByteWords(controller) + " (" + std::string(controllerName(controller)) + ")";
}

std::string channelWords(unsigned zeroBased) {
    return "channel " + numberWords(zeroBased + 1, zeroBased < greatestChannel);
}

}  // namespace quillo
