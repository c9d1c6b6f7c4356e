// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleChain.hpp"

namespace quillo {

const MIDIRuleInternal* RuleChain::next() QUILLO_REALTIME {
    if (consumer_ != noRule) {
        return nullptr;
    }
    const auto matching = matches_.next();
    if (*eatNonMatching_ < matching) {
        consumer_ = *eatNonMatching_;
        return nullptr;
    }
    if (matching == noRule) {
        return nullptr;
    }
    if (matching == *eatNonMatching_) {
        ++eatNonMatching_;
    }
    const auto& rule = rules_[matching];
    if (rule.passThrough == PassThroughV2::EatMatching) {
        consumer_ = matching;
    }
    return &rule;
}

}  // namespace quillo
