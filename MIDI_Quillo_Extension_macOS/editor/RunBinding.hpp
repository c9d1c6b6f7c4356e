// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>

#include "rules/RuleOutputV2.hpp"
#include "rules/RuleRun.hpp"

namespace quillo {

/// The run that a card stands for, as its fields read and change it; a binding that is made without functions
/// is that of a single rule, and is only read. [main] only.
struct RunBinding {
    std::function<RuleRun()> get = [] { return RuleRun(); };
    std::function<void(std::uint8_t from, std::uint8_t to)> setRange{};
    std::function<void(int offset)> transpose{};
    /// Sends the same value with each of its rules.
    std::function<void(const GenericByteV2& value)> sendAlike{};
};

}  // namespace quillo
