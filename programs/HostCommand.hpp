// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <iosfwd>

namespace quillo {

/// Plays a host application from a script: one action a line, blank lines skipped, the answers on `out`.
/// Returns the exit status:
///
/// - 0 when the script was played to its end; - 65 at the first line that is no action, which `err` names,
/// and of which nothing is done; - 66 when the script cannot be read on; - 70 at a fatal error of the unit,
/// whose line is the last on `out`.
[[nodiscard]] int runHostCommand(std::istream& script, std::ostream& out, std::ostream& err);

}  // namespace quillo
