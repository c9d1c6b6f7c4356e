// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "hosts/formats/FormatScript.hpp"
#include "rules/Rule.hpp"

/// A session for the sequencer qtractor: one track, whose clip goes through the plug-in and from there to the
/// probe.
namespace quillo::test {

/// At 120 beats of 960 ticks a minute, and 48000 frames a second.
inline constexpr std::int64_t framesPerTick = 25;

/// The rules that the plug-in is given: each note comes again 100 ms later with a velocity of 5; the
/// transport is heard by controller 20, where it starts or goes on.
[[nodiscard]] std::vector<Rule> sessionRules();

/// What the clip holds, in order. It ends with the same program change eight times, because a sequencer that
/// is late leaves out blocks.
[[nodiscard]] std::vector<ScriptMessage> sessionMessages();

/// Writes session.qtr and its clip. Throws when it cannot.
void writeSession(const std::filesystem::path& folder, const std::filesystem::path& plugin,
                  const std::filesystem::path& probe);

}  // namespace quillo::test
