// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/PolicyWords.hpp"

#include <gtest/gtest.h>

#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

TEST(PolicyWords, AreThoseOfTheEditorsMenu) {
    EXPECT_EQ(policyWords(PassThroughV2::PassThrough), "Pass through");
    EXPECT_EQ(policyWords(PassThroughV2::EatMatching), "Consume matching");
    EXPECT_EQ(policyWords(PassThroughV2::EatNonMatching), "Consume non-matching");
}

TEST(PolicyWords, EveryTriggerButLoadingHasAPolicy) {
    EXPECT_EQ(policyOf(onMIDIStart(PassThroughV2::EatMatching)), PassThroughV2::EatMatching);
    EXPECT_EQ(policyOf(onHost(HostTransportTriggerVariantsV2::Stop, PassThroughV2::EatNonMatching)),
              PassThroughV2::EatNonMatching);
    EXPECT_EQ(policyOf(onLoad()), std::nullopt);
}

TEST(PolicyWords, NameARuleByItsNumberFromOneAndItsName) {
    const std::vector<Rule> rules{rule(onLoad(), send(noteOn(0, 1, 1)), "Reset"),
                                  rule(onMIDIStart(), send(noteOn(0, 1, 1)), std::string(100, 'n'))};
    EXPECT_EQ(ruleWords(rules, 0), "rule 1 \"Reset\"");
    EXPECT_EQ(ruleWords({rule(onLoad(), send(noteOn(0, 1, 1)))}, 0), "rule 1");
    EXPECT_EQ(ruleAndPolicyWords(rules, 0), "rule 1 \"Reset\"");
    EXPECT_EQ(ruleAndPolicyWords(rules, 1), "rule 2 \"" + std::string(37, 'n') + "…\" (Pass through)");
}

}  // namespace
}  // namespace quillo
