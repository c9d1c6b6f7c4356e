// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "persistence/DecodingError.hpp"

namespace quillo {

/// Why a document could not be read, in sentences for a musician: the number and the name of the rule, the
/// field as the editor calls it, and what is wrong with it.
///
///     Rule 4 "Echo", Incoming: missing key "passTrough".
///     Switched-off rule 1 "Echo": expected a place from 0 to 3, found 7.
///
/// Of a document that is no list of rules at all they say just this. `document` is what was read; the name is
/// looked up in it. Nothing in the sentences can break a line or reach the terminal as a command.
[[nodiscard]] std::string problemInWords(const DecodingError& error, std::span<const std::uint8_t> document);

/// Whether a document is a list of rules, of which one could not be read.
[[nodiscard]] bool isAboutRule(const DecodingError& error);

}  // namespace quillo
