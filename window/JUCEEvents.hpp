// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillo {

/// Where the host has the event loop: does what waits for JUCE, its window's events among it, and
/// returns. What is done may bring up new work without end, and a turn of the host's loop is for others too:
/// some of it may be left for the next turn. Used under an `XErrorShield`.
void dispatchJUCEEvents();

}  // namespace quillo
