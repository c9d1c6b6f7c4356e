// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "rules/Rule.hpp"

namespace quillo {

/// The current form of the state document, as it is stored.
struct PluginDataV3 {
    std::vector<Rule> rules;

    bool operator==(const PluginDataV3&) const = default;
};

}  // namespace quillo

/// Equal rule lists have equal hashes. Names must be valid UTF-8.
template <>
struct std::hash<quillo::PluginDataV3> {
    std::size_t operator()(const quillo::PluginDataV3& data) const;
};
