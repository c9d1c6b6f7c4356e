// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillo {

/// How often a rule has fired since the list was loaded, and how long ago last, in seconds of what was
/// rendered.
struct RuleHits {
    std::uint64_t count = 0;
    double secondsAgo = 0.0;  ///< only means something when `count` is not 0

    bool operator==(const RuleHits&) const = default;
};

}  // namespace quillo
