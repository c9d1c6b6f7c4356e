// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/UnitOutOfReach.hpp"

#include <utility>

#include "platform/FatalError.hpp"

namespace quillo {

UnitOutOfReach::UnitOutOfReach(std::string notice) : notice_(std::move(notice)) {
    model_->setNotEditable(notice_);
}

void UnitOutOfReach::onRulesChanged(std::vector<Rule> /*rules*/, RuleShelf /*shelf*/) {
    fatalError(notice_);
}

void UnitOutOfReach::onInstantMessageClick(const RuleOutputVariantsV2& /*message*/) {
    fatalError(notice_);
}

void UnitOutOfReach::tellUser(std::string message) {
    model_->alert(std::move(message));
}

}  // namespace quillo
