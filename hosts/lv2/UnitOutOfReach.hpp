// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "session/EditorUnit.hpp"

namespace quillo {

/// Stands in an editor for a unit that it cannot reach, and says why. A preset that is imported is not kept
/// either: the same notice is the alert. [main]
class UnitOutOfReach final : public EditorUnit {
public:
    explicit UnitOutOfReach(std::string notice);

    [[nodiscard]] const std::shared_ptr<QuilloModel>& model() const override { return model_; }
    void viewDidLoad() override {}
    void onRulesChanged(std::vector<Rule> rules, RuleShelf shelf = {}) override;
    void onInstantMessageClick(const RuleOutputVariantsV2& message) override;
    void tellUser(std::string message) override;
    void drain() override {}

private:
    std::string notice_;
    std::shared_ptr<QuilloModel> model_ = std::make_shared<QuilloModel>();
};

}  // namespace quillo
