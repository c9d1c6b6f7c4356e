// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/MarkedLog.hpp"

#include <algorithm>

namespace quillo {

namespace {

using Mark = MarkedEntry::Mark;

std::string changeWords(std::size_t added, std::size_t gone) {
    if (gone == 0) {
        return std::to_string(added) + " more would be sent";
    }
    const auto without = std::to_string(gone) + " would not";
    return added == 0 ? without + " be sent" : std::to_string(added) + " would be sent, " + without;
}

}  // namespace

std::size_t MarkedLog::count(Mark mark) const {
    return static_cast<std::size_t>(std::ranges::count(entries, mark, &MarkedEntry::mark));
}

std::string markedText(const MarkedEntry& entry) {
    switch (entry.mark) {
    case Mark::gone: return text(entry.entry) + ", would not be sent now";
    case Mark::added: return text(entry.entry) + ", would be sent now";
    case Mark::none: break;
    }
    return text(entry.entry);
}

std::string sumText(const MarkedLog& log) {
    const auto added = log.count(Mark::added);
    const auto gone = log.count(Mark::gone);
    if (added + gone > 0) {
        return changeWords(added, gone) + "; " + std::to_string(log.alike) + " alike";
    }
    return log.isReordered ? "Only the order would be different" : "Nothing would be different";
}

}  // namespace quillo
