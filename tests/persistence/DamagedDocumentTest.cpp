// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>

#include "persistence/Documents.hpp"
#include "persistence/PluginData.hpp"
#include "platform/FatalError.hpp"

namespace quillo {
namespace {

/// Damages a document at random, the same way for the same seed.
class Vandal {
public:
    explicit Vandal(unsigned seed) : random_(seed) {}

    void damage(std::string& text) {
        switch (below(5)) {
        case 0: text[below(text.size())] = static_cast<char>(below(256)); break;
        case 1: text.resize(below(text.size())); break;
        case 2: text.insert(below(text.size()), snippets[below(snippets.size())]); break;
        case 3: text.erase(below(text.size()), 1 + below(20)); break;
        default: copyPart(text); break;
        }
        text += text.empty() ? " " : "";
    }

private:
    static constexpr std::array<std::string_view, 12> snippets{"{}",
                                                               "[]",
                                                               "null",
                                                               "-1",
                                                               "256",
                                                               "1e2",
                                                               "0.5",
                                                               "\"",
                                                               "{\"Value\":{\"_0\":1}}",
                                                               "9223372036854775808",
                                                               "\xF0\x9F",
                                                               "\"_0\":"};

    std::size_t below(std::size_t limit) { return random_() % limit; }

    void copyPart(std::string& text) {
        const auto part = text.substr(below(text.size()), below(40));
        text.insert(below(text.size()), part);
    }

    std::mt19937 random_;
};

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
        Vandal vandal(seed);
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
        expectRulesOrError(bytes);
    }
}

}  // namespace
}  // namespace quillo
