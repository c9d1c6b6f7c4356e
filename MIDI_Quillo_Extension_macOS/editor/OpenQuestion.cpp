// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/OpenQuestion.hpp"

#include <algorithm>
#include <span>

#include "editor/JuceText.hpp"
#include "words/RunWords.hpp"

namespace quillo {

namespace {

/// The reason of the rule that fired or consumed the event speaks for the run; else what all have in common,
/// "it waits for 36 (C1) to 47 (B1)".
RuleReason reasonOfRun(std::span<const RuleReason> reasons) {
    for (const auto what : {&RuleReason::fired, &RuleReason::consumed}) {
        if (const auto found = std::ranges::find(reasons, true, what); found != reasons.end()) {
            return *found;
        }
    }
    auto reason = reasons.front();
    reason.words = sentenceFromTo(reason.words, reasons.back().words);
    return reason;
}

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
    for (const auto& card : editor_.cards()) {
        if (card.first + card.count > reasons.size()) {
            return;
        }
        const auto& id = editor_.rules()[card.first].id;
        const auto reason = reasonOfRun(std::span(reasons).subspan(card.first, card.count));
        remarks_.emplace(id, remarkOf(reason));
        if (!firstConcerned_ && (reason.fired || reason.consumed)) {
            firstConcerned_ = id;
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
