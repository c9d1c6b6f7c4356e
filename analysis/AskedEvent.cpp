// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/AskedEvent.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"
#include "platform/HexText.hpp"
#include "platform/PlainText.hpp"
#include "platform/QuotedText.hpp"
#include "words/MessageWords.hpp"

namespace quillo {

namespace {

std::string words(const MIDIMessage& message) {
    return shownBytes(message) + ": " + messageWords(message.bytes());
}

std::string words(HostTransportTriggerVariantsV2 change) {
    switch (change) {
    case HostTransportTriggerVariantsV2::Start: return "host start: the host's transport starts";
    case HostTransportTriggerVariantsV2::Continue: return "host continue: the host's transport continues";
    case HostTransportTriggerVariantsV2::Stop: return "host stop: the host's transport stops";
    }
    return {};
}

std::string words(PluginLoad) {
    return "load: the plug-in is loaded";
}

using Bytes = std::vector<std::uint8_t>;

constexpr int hexadecimal = 16;

std::string hex(std::uint8_t byte) {
    return hexText({&byte, 1}, HexCase::lower);
}

AskedEvent parseHostEvent(std::span<const std::string> words) {
    using Transport = HostTransportTriggerVariantsV2;
    if (words.size() == 2 && words[1] == "start") {
        return Transport::Start;
    }
    if (words.size() == 2 && words[1] == "continue") {
        return Transport::Continue;
    }
    if (words.size() == 2 && words[1] == "stop") {
        return Transport::Stop;
    }
    throw AskedEventError("the host's transport can start, continue and stop");
}

bool isHexadecimal(const std::string& word) {
    return word.find_first_not_of("0123456789abcdef") == std::string::npos;
}

Bytes bytesOf(std::span<const std::string> words) {
    if (words.empty()) {
        throw AskedEventError("it is empty");
    }
    Bytes bytes;
    for (const auto& word : words) {
        if (!isHexadecimal(word)) {
            throw AskedEventError(inQuotes(word) + " is not hexadecimal");
        }
        if (word.size() % 2 != 0) {
            throw AskedEventError(inQuotes(word) + " has an odd number of digits; two make a byte");
        }
        for (std::size_t i = 0; i < word.size(); i += 2) {
            std::from_chars(word.data() + i, word.data() + i + 2, bytes.emplace_back(), hexadecimal);
        }
    }
    return bytes;
}

/// What keeps the bytes from being one MIDI message.
void requireShortMessage(const Bytes& bytes) {
    const auto status = bytes.front();
    if (midi::isData(status)) {
        throw AskedEventError(hex(status) + " cannot begin a message: the first byte is 80 to ff");
    }
    const auto length = messageLength(status);
    if (length == 0) {
        throw AskedEventError(hex(status) + " does not begin a MIDI message");
    }
    if (length != bytes.size()) {
        throw AskedEventError("a message that begins with " + hex(status) + " has " +
                              countWords(length, "byte") + "; here are " + std::to_string(bytes.size()));
    }
    const auto wrong = std::find_if_not(bytes.begin() + 1, bytes.end(), midi::isData);
    if (wrong != bytes.end()) {
        throw AskedEventError(hex(*wrong) + " is not a data byte: those are 00 to 7f");
    }
}

AskedEvent parseMessage(std::span<const std::string> words) {
    const auto bytes = bytesOf(words);
    if (!midi::isSystemExclusive(bytes)) {
        requireShortMessage(bytes);
    }
    return MIDIMessage::copyOf(bytes);
}

}  // namespace

AskedEvent askedEvent(const EventLogEntryVariants& entry) {
    if (const auto* host = entry.host()) {
        return host->trigger;
    }
    return entry.midi()->message;
}

std::string eventWords(const AskedEvent& event) {
    return std::visit([](const auto& asked) { return words(asked); }, event);
}

std::string shownBytes(const MIDIMessage& message) {
    constexpr std::size_t most = 16;
    const auto bytes = message.bytes();
    if (bytes.size() <= most) {
        return hexText(bytes, HexCase::lower);
    }
    return hexText(bytes.first(most), HexCase::lower) + " ... (" + std::to_string(bytes.size()) + " bytes)";
}

AskedEvent parseAskedEvent(std::string_view text) {
    const auto words = splitAtBlanks(inLowerCase(std::string(text)));
    if (!words.empty() && (words.front() == "host" || words.front() == "transport")) {
        return parseHostEvent(words);
    }
    if (words.size() == 1 && words.front() == "load") {
        return PluginLoad{};
    }
    return parseMessage(words);
}

std::vector<std::uint8_t> parseBytes(std::string_view text) {
    return bytesOf(splitAtBlanks(inLowerCase(std::string(text))));
}

}  // namespace quillo
