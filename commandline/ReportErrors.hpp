// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <iosfwd>
#include <string_view>

namespace quillo {

/// Runs a program's `command` and answers its exit status. What the command throws is told on `err` behind the
/// program's name, and answered with the status that goes with it; after a wrong command line, `teach` writes
/// how to use the program.
int reportErrors(std::string_view program, std::ostream& err, const std::function<int()>& command,
                 const std::function<void()>& teach);

}  // namespace quillo
