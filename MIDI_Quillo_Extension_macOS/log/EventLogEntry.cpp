// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/EventLogEntry.hpp"

#include <string_view>

namespace quillo {

namespace {

std::string_view name(HostTransportTriggerVariantsV2 trigger) {
    switch (trigger) {
    case HostTransportTriggerVariantsV2::Start: return "AU Host Start";
    case HostTransportTriggerVariantsV2::Continue: return "AU Host Continue";
    case HostTransportTriggerVariantsV2::Stop: break;
    }
    return "AU Host Stop";
}

std::string hexadecimal(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const auto byte : bytes) {
        if (!text.empty()) {
            text += ' ';
        }
        text += digits[byte >> 4U];
        text += digits[byte & 0x0FU];
    }
    return text;
}

}  // namespace

bool EventLogEntryVariants::operator==(const EventLogEntryVariants& other) const QUILLO_REALTIME {
    if (isHost_ != other.isHost_) {
        return false;
    }
    return isHost_ ? host_.trigger == other.host_.trigger : midi_.message == other.midi_.message;
}

std::string text(const EventLogEntry& entry) {
    std::string line = "[";
    line += std::to_string(entry.timestamp);
    line += "] ";
    if (const auto* host = entry.variants.host()) {
        line += name(host->trigger);
    } else {
        line += hexadecimal(entry.variants.midi()->message.bytes());
    }
    return line;
}

}  // namespace quillo
