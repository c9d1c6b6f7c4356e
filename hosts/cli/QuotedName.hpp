// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillo {

/// A rule's name in quotes. Whatever in it would break the line or the quotes is escaped as in JSON.
[[nodiscard]] std::string quotedName(std::string_view name);

/// The same for a column of at most `most` characters: what is too long for it ends in an ellipsis.
[[nodiscard]] std::string quotedName(std::string_view name, std::size_t most);

/// How many characters a UTF-8 text has.
[[nodiscard]] std::size_t characterCount(std::string_view text);

}  // namespace quillo
