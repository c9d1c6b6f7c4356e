// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleChain.hpp"

namespace quillo {

const MIDIRuleInternal* RuleChain::next() QUILLO_REALTIME {
    if (lastOneEats_) {
        consumed_ = true;
        return nullptr;
    }
    const auto matching = matches_.next();
    if (*eatNonMatching_ < matching) {
        consumed_ = true;
        return nullptr;
    }
    if (matching == noRule) {
        return nullptr;
    }
    if (matching == *eatNonMatching_) {
        ++eatNonMatching_;
    }
    const auto& rule = rules_[matching];
    lastOneEats_ = rule.passThrough == PassThroughV2::EatMatching;
    return &rule;
}

RuleOrdinal RuleChain::consumer(const MIDIRuleInternal* last) const {
    if (!consumed_) {
        return noRule;
    }
    return lastOneEats_ ? static_cast<RuleOrdinal>(last - rules_.data()) : *eatNonMatching_;
}

}  // namespace quillo
