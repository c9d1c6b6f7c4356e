// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "persistence/Documents.hpp"
#include "persistence/PluginData.hpp"
#include "platform/FatalError.hpp"
#include "support/Vandal.hpp"

namespace quillo {
namespace {

/// Reads rules that can be stored again, or fails with a text.
void expectRulesOrError(const std::string& document) {
    try {
        const auto data = documents::read(document);
        ASSERT_EQ(documents::read(documents::written(data)), data) << document;
    } catch (const DecodingError& error) {
        ASSERT_FALSE(std::string_view(error.what()).empty()) << document;
        ASSERT_FALSE(error.mostUseful().empty()) << document;
    } catch (const FatalError& error) {
        ASSERT_NE(std::string_view(error.what()).find("of a V1 rule is above 255"), std::string_view::npos)
            << document;
    }
}

void expectToSurviveDamage(const std::string& document) {
    for (unsigned seed = 0; seed < 10'000; ++seed) {
        test::Vandal vandal(seed);
        auto damaged = document;
        for (unsigned times = 0; times <= seed % 3; ++times) {
            vandal.damage(damaged);
        }
        expectRulesOrError(damaged);
    }
}

TEST(DamagedDocument, OfTheCurrentFormReadsOrFailsWithAnError) {
    expectToSurviveDamage(documents::currentDocument());
}

TEST(DamagedDocument, WithRulesThatAreSwitchedOffReadsOrFailsWithAnError) {
    expectToSurviveDamage(documents::documentWithShelf());
}

TEST(DamagedDocument, OfTheSecondFormReadsOrFailsWithAnError) {
    expectToSurviveDamage(std::string(documents::bareArrayV2));
}

TEST(DamagedDocument, OfTheOldestFormReadsOrFailsWithAnError) {
    expectToSurviveDamage("[" + std::string(documents::noteRuleV1) +
                          R"(,{"output":{"message":{"Prime":{"_0":{"PitchWheel":{"_0":{"value":4},)"
                          R"("_1":{"value":200}}}}},"delay":{"ms":0}},"trigger":{"OnLoad":{}}}])");
}

TEST(DamagedDocument, OfRandomBytesFailsWithAnError) {
    for (unsigned seed = 0; seed < 2'000; ++seed) {
        std::mt19937 random(seed);
        std::string bytes(random() % 64, '\0');
        for (auto& byte : bytes) {
            byte = static_cast<char>(random() % 256);
        }
        EXPECT_THROW((void)documents::read(bytes), DecodingError) << seed;
    }
}

}  // namespace
}  // namespace quillo
