// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UUID.hpp"
#include "rules/RuleEntry.hpp"

namespace quillo {

/// An element of the editor's rule list: an entry under an identity that stays while the rule is moved and
/// edited.
struct RuleEntryIdentifiable {
    UUID id;
    RuleEntry rule;

    bool operator==(const RuleEntryIdentifiable&) const = default;
};

}  // namespace quillo
