// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/CompiledRules.hpp"
#include "engine/SampleTime.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// Samples per second until the host says otherwise.
inline constexpr std::uint64_t defaultSampleRate = 44100;

/// `delay` in samples at `sampleRate` samples per second, truncated: 1 ms at 44100 is 44. A negative delay,
/// and one whose product with the rate exceeds 64 bits, is a fatal error.
[[nodiscard]] SampleTime delayInSamples(DelayV2 delay, std::uint64_t sampleRate);

/// [any but render] Compiles a rule list. Fatal errors: those of `delayInSamples`, and an on-load or
/// host-transport rule whose output takes something from a triggering message; in words they name the rule,
/// with its number among all, those on the shelf as well.
[[nodiscard]] CompiledRules compileRules(std::vector<Rule> rules, std::uint64_t sampleRate,
                                         const RuleShelf& shelf = {});

/// The messages of an output that must not depend on a trigger; otherwise a fatal error that names
/// `purpose`, such as "an on-load rule".
[[nodiscard]] MessageList compileFixed(const RuleOutputVariantsV2& output, const std::string& purpose);

}  // namespace quillo
