// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace quillo {

/// How `midi-quillo-jack` is called, in one line.
[[nodiscard]] std::string_view jackUsage();

/// All about it.
[[nodiscard]] std::string_view jackHelp();

/// What to do when there is no server, to be put behind the sentence that says so.
[[nodiscard]] std::string howToGetAServer();

}  // namespace quillo
