// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// The current form of the state document, as it is stored. Programs that know no shelf ignore it and run the
/// same rules; without one the document is theirs, byte for byte.
struct PluginDataV3 {
    std::vector<Rule> rules;
    std::optional<RuleShelf> shelf = std::nullopt;  ///< never empty when written

    bool operator==(const PluginDataV3&) const = default;
};

}  // namespace quillo

/// Equal rule lists have equal hashes. Names must be valid UTF-8.
template <>
struct std::hash<quillo::PluginDataV3> {
    std::size_t operator()(const quillo::PluginDataV3& data) const;
};
