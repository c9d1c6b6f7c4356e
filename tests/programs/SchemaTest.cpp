// SPDX-License-Identifier: GPL-3.0-or-later
#include <filesystem>

#include "persistence/JSONParser.hpp"
#include "platform/AtomicFile.hpp"
#include "programs/CommandLineFixture.hpp"
#include "support/SchemaCheck.hpp"

namespace quillo {
namespace {

using SchemaVerbTest = fixture::CommandLineTest;

TEST_F(SchemaVerbTest, PrintsASchemaThatEveryShippedPresetFits) {
    const auto result = run({"schema"});
    EXPECT_EQ(result.status, exitSuccess);
    const auto schema = nlohmann::json::parse(result.out);
    int presets = 0;
    for (const auto& file : std::filesystem::directory_iterator(QUILLO_PRESETS)) {
        if (file.path().extension() == ".json") {
            EXPECT_TRUE(test::SchemaCheck::fits(parseJSON(readWholeFile(file.path())), schema))
                << file.path();
            ++presets;
        }
    }
    EXPECT_GE(presets, 30);
    EXPECT_EQ(run({"schema", "p.json"}).status, exitUsage);
}

}  // namespace
}  // namespace quillo
