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

using StateValue = std::variant<Data, std::string, double>;

/// What a host saves with its project: values by key.
using StateDictionary = std::map<std::string, StateValue>;

}  // namespace quillo
