// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/EventLogEntry.hpp"

#include <string_view>

#include "platform/HexText.hpp"

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
        line += hexText(entry.variants.midi()->message.bytes(), HexCase::lower);
    }
    return line;
}

}  // namespace quillo
