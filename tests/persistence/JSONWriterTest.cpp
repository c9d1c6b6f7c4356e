// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/JSONWriter.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "persistence/DecodingError.hpp"
#include "persistence/Documents.hpp"
#include "persistence/JSONReader.hpp"

namespace quillo {
namespace {

using std::string_literals::operator""s;

TEST(JSONWriter, EscapesQuotesBackslashesAndSlashes) {
    EXPECT_EQ(encode("say \"hi\""s), R"("say \"hi\"")");
    EXPECT_EQ(encode("C:\\midi"s), R"("C:\\midi")");
    EXPECT_EQ(encode("in/out"s), R"("in\/out")");
    EXPECT_EQ(encode("\\/"s), R"("\\\/")");
}

TEST(JSONWriter, EscapesEveryControlCharacter) {
    EXPECT_EQ(encode("\b\f\n\r\t"s), R"("\b\f\n\r\t")");
    EXPECT_EQ(encode("\0\x01\x1b\x1f"s), R"("\u0000\u0001\u001b\u001f")");
    EXPECT_EQ(encode("\x7f"s), "\"\x7f\"");
}

TEST(JSONWriter, LeavesCharactersBeyondASCIIAsTheyAre) {
    EXPECT_EQ(encode("Flügel ♪ 🎹"s), "\"Flügel ♪ 🎹\"");
    EXPECT_EQ(encode("\u2028"s), "\"\u2028\"");
}

TEST(JSONWriter, SeparatesElementsWithACommaAlone) {
    EXPECT_EQ(encode(std::vector<std::string>{}), "[]");
    EXPECT_EQ(encode(std::vector<std::string>{"["}), R"(["["])");
    EXPECT_EQ(encode(std::vector<std::string>{"{", "[", ""}), R"(["{","[",""])");
}

TEST(JSONWriter, RejectsAStringThatIsNotUTF8) {
    EXPECT_THROW(static_cast<void>(encode("\xFF"s)), EncodingError);
    EXPECT_THROW(static_cast<void>(encode("cut short: \xF0\x9F\x8E"s)), EncodingError);
}

TEST(JSONWriter, WritesWhatTheReaderReadsForEveryCharacterOfAByte) {
    for (int code = 0; code < 128; ++code) {
        const std::string name(3, static_cast<char>(code));
        const auto value = parseJSON(documents::bytesOf(encode(name)));
        EXPECT_EQ(JSONReader().read<std::string>(value, {}), name) << code;
    }
}

}  // namespace
}  // namespace quillo
