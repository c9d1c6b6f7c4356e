// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillo {

/// How names, paths and every other text from outside are written to a terminal or a log. What would act on a
/// terminal, break the line or turn its direction is escaped, as in JSON: control characters of both kinds,
/// bidirectional overrides and isolates, line and paragraph separators. A byte that is not UTF-8 stands as
/// `\xff`. Any other text stays as it is, and so does what this has escaped already: escaping twice does no
/// harm.
///
///     escaped("a\x1b[2Jb")    a\u001b[2Jb
[[nodiscard]] std::string escaped(std::string_view text);

/// The same for a text of several lines, whose ends stay.
[[nodiscard]] std::string escapedLines(std::string_view text);

/// The same as `escaped` in quotes: a quote and a backslash in the text are escaped, too, so that it can be
/// read back.
///
///     inQuotes("say \"hi\"")    "say \"hi\""
[[nodiscard]] std::string inQuotes(std::string_view text);

/// As `inQuotes`, for a column of at most `most` characters: what is too long for it ends in an ellipsis.
[[nodiscard]] std::string inQuotes(std::string_view text, std::size_t most);

/// How many characters a UTF-8 text has.
[[nodiscard]] std::size_t characterCount(std::string_view text);

}  // namespace quillo
