// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <string>
#include <variant>

#include "platform/Data.hpp"

namespace quillo {

/// Data, a string, a number, or, last, a value of any other kind, of which nobody asks more.
using StateValue = std::variant<Data, std::string, double, std::monostate>;

/// What a host saves with its project: values by key.
using StateDictionary = std::map<std::string, StateValue>;

}  // namespace quillo
