// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>

namespace quillo {

/// What the program does, its verbs, and where to read on.
[[nodiscard]] std::string_view generalHelp();

/// How a verb is called, in one line; that of the program for a word that is no verb.
[[nodiscard]] std::string_view usageOf(std::string_view verb);

/// All about a verb, with examples. Nothing for a word that is no verb.
[[nodiscard]] std::optional<std::string_view> helpFor(std::string_view verb);

}  // namespace quillo
