// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <set>

#include "platform/UUID.hpp"

namespace quillo {

/// Which cards of a list are shown in one line, and which with their fields: all in the one form or in the
/// other, but for those that were changed by themselves.
class CardForms {
public:
    explicit CardForms(bool allInOneLine) : allInOneLine_(allInOneLine) {}

    [[nodiscard]] bool areAllInOneLine() const { return allInOneLine_; }
    [[nodiscard]] bool isInOneLine(const UUID& card) const {
        return changed_.contains(card) != allInOneLine_;
    }

    /// Those that were changed by themselves follow.
    void setAllInOneLine(bool inOneLine) {
        allInOneLine_ = inOneLine;
        changed_.clear();
    }

    /// Changes a card by itself.
    void set(const UUID& card, bool inOneLine) {
        if (inOneLine == allInOneLine_) {
            changed_.erase(card);
        } else {
            changed_.insert(card);
        }
    }

private:
    bool allInOneLine_;
    std::set<UUID> changed_;
};

}  // namespace quillo
