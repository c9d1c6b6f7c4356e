// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace quillo {

/// What the verbs say to scripts: an object whose keys keep their order.
using JSONAnswer = nlohmann::ordered_json;

/// The answer in one line with its end, harmless to a terminal. A byte of a path or a name that is not UTF-8
/// is replaced by U+FFFD.
[[nodiscard]] std::string jsonText(const JSONAnswer& answer);

/// A rule as answers have it: its number, from 1 on, and its name.
[[nodiscard]] JSONAnswer jsonOfRule(std::size_t position, const std::string& name);

}  // namespace quillo
