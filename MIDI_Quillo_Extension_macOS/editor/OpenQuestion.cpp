// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/OpenQuestion.hpp"

#include "editor/JuceText.hpp"

namespace quillo {

namespace {

RuleRemark remarkOf(const RuleReason& reason) {
    return {juceText(reason.text()), reason.fired ? RuleRemark::Mark::fired : RuleRemark::Mark::passedOver};
}

}  // namespace

void OpenQuestion::ask(const EventLogEntryVariants& event) {
    event_ = event;
    askAgain();
}

/// Rules that run and are not shown have no cards.
void OpenQuestion::askAgain() {
    remarks_.clear();
    firstConcerned_.reset();
    if (!event_ || editor_.whyNotEditable()) {
        return;
    }
    const auto reasons = unit_.why(*event_);
    const auto& rules = editor_.rules();
    for (std::size_t rule = 0; rule < std::min(reasons.size(), rules.size()); ++rule) {
        remarks_.emplace(rules[rule].id, remarkOf(reasons[rule]));
        if (!firstConcerned_ && (reasons[rule].fired || reasons[rule].consumed)) {
            firstConcerned_ = rules[rule].id;
        }
    }
}

void OpenQuestion::close() {
    event_.reset();
    askAgain();
}

std::optional<RuleRemark> OpenQuestion::remark(const UUID& id) const {
    const auto found = remarks_.find(id);
    return found != remarks_.end() ? std::optional(found->second) : std::nullopt;
}

}  // namespace quillo
