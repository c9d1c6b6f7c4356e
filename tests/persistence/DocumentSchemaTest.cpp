// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/DocumentSchema.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "persistence/Documents.hpp"
#include "platform/FatalError.hpp"
#include "support/SchemaCheck.hpp"
#include "support/Vandal.hpp"

namespace quillo {
namespace {

using namespace documents;

JSON parsed(const std::string& text) {
    return parseJSON(bytesOf(text));
}

const JSON& schema() {
    static const auto whole = parsed(documentSchema());
    return whole;
}

bool fits(const std::string& document) {
    return test::SchemaCheck::fits(parsed(document), schema());
}

std::vector<std::string> everyForm() {
    return {currentDocument(), documentWithShelf(), std::string(bareArrayV2),
            "[" + std::string(noteRuleV1) + "]", R"({"rules":[],"shelf":null,"more":1})"};
}

TEST(DocumentSchema, FitsDocumentsOfEveryForm) {
    for (const auto& document : everyForm()) {
        EXPECT_TRUE(fits(document)) << document;
    }
}

TEST(DocumentSchema, FitsNothingElse) {
    for (const auto* document :
         {"{}", "5", R"({"rules":{}})", R"([{"output":{}}])", R"({"rules":[],"shelf":[{"place":-1}]})"}) {
        EXPECT_FALSE(fits(document)) << document;
    }
}

/// What reading says; nothing of a text that is no JSON, and where the schema cannot say it.
std::optional<bool> reads(const std::string& document) {
    try {
        static_cast<void>(parsed(document));
    } catch (const DecodingError&) {
        return std::nullopt;
    }
    try {
        static_cast<void>(read(document));
        return true;
    } catch (const DecodingError& error) {
        return std::string(error.what()).find("expected a place from") == std::string::npos
                   ? std::optional(false)
                   : std::nullopt;
    } catch (const FatalError&) {
        return std::nullopt;
    }
}

TEST(DocumentSchema, FitsADamagedDocumentWhereItCanStillBeRead) {
    int readable = 0;
    int unreadable = 0;
    for (const auto& document : everyForm()) {
        for (unsigned seed = 0; seed < 1000; ++seed) {
            auto damaged = document;
            test::Vandal(seed).damage(damaged);
            if (const auto expected = reads(damaged)) {
                ++(*expected ? readable : unreadable);
                ASSERT_EQ(fits(damaged), *expected) << damaged;
            }
        }
    }
    EXPECT_GT(readable, 100);
    EXPECT_GT(unreadable, 100);
}

}  // namespace
}  // namespace quillo
