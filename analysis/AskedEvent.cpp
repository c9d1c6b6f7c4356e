// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/AskedEvent.hpp"

#include "platform/HexText.hpp"
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

}  // namespace quillo
