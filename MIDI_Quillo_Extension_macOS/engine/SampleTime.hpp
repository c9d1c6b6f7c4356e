// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "platform/RealTime.hpp"

namespace quillo {

/// An absolute sample position on the host's render timeline, or a distance between two, in samples.
using SampleTime = std::int64_t;

/// Stores `time + distance` in `sum`. False, and `sum` meaningless, when it is beyond 64 bits.
[[nodiscard]] inline bool tryAdd(SampleTime time, SampleTime distance, SampleTime& sum) QUILLO_REALTIME {
    return !__builtin_add_overflow(time, distance, &sum);
}

}  // namespace quillo
