// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace quillo {

/// A buffer of bytes, as opposed to text.
using Data = std::vector<std::uint8_t>;

/// Data, a string, a number, or, last, a value of any other kind, of which nobody asks more.
using StateValue = std::variant<Data, std::string, double, std::monostate>;

/// What a host saves with its project: values by key.
using StateDictionary = std::map<std::string, StateValue>;

}  // namespace quillo
