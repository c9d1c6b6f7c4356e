// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "log/EventLogEntry.hpp"

namespace quillo {

/// A message of the Out log, or one that would stand there.
struct MarkedEntry {
    enum class Mark {
        none,   ///< it would be sent as well, or no event of the In log is why it was sent
        gone,   ///< it was sent, and would not be sent now
        added,  ///< it was not sent, and would be sent now
    };

    EventLogEntry entry;
    Mark mark = Mark::none;

    bool operator==(const MarkedEntry&) const = default;
};

/// The Out log, and what other rules would make of it.
struct MarkedLog {
    std::vector<MarkedEntry> entries;  ///< in order of time
    std::size_t alike = 0;             ///< how many of these were sent and would be sent now
    bool isReordered = false;          ///< whether messages of one time would leave in another order

    [[nodiscard]] std::size_t count(MarkedEntry::Mark mark) const;
};

/// The entry as the log shows it, and what its mark says: "[512] 90 3c 7f, would be sent now".
[[nodiscard]] std::string markedText(const MarkedEntry& entry);

/// "2 would be sent, 1 would not; 98 alike", "Nothing would be different".
[[nodiscard]] std::string sumText(const MarkedLog& log);

}  // namespace quillo
