// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/JSONParser.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "persistence/Documents.hpp"

namespace quillo {
namespace {

JSON parse(std::string_view text) {
    return parseJSON(documents::bytesOf(text));
}

std::string parserErrorOf(std::string_view text) {
    try {
        static_cast<void>(parse(text));
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "parsed without an error";
}

TEST(JSONParser, BuildsEveryKindOfValue) {
    const auto value = parse(R"( {"a" : [1, -2, 1.5, "text", true, false, null, {}, []]} )");
    EXPECT_EQ(value.dump(), R"({"a":[1,-2,1.5,"text",true,false,null,{},[]]})");
}

TEST(JSONParser, TakesAnyWhitespaceAndAnyTopLevelValue) {
    EXPECT_EQ(parse("\t\r\n 7 \n").dump(), "7");
    EXPECT_EQ(parse("\"\"").dump(), "\"\"");
}

TEST(JSONParser, SkipsAByteOrderMark) {
    EXPECT_EQ(parse("\xEF\xBB\xBF[]").dump(), "[]");
}

TEST(JSONParser, KeepsTheLastOfEqualKeys) {
    EXPECT_EQ(parse(R"({"a":1,"b":2,"a":{"c":3}})").dump(), R"({"a":{"c":3},"b":2})");
}

TEST(JSONParser, MakesANumberWholeByItsText) {
    EXPECT_TRUE(parse("5.0").is_number_unsigned());
    EXPECT_TRUE(parse("1e1").is_number_unsigned());
    EXPECT_TRUE(parse("-5.0").is_number_integer());
    EXPECT_TRUE(parse("255.0000000000000001").is_number_float());
    EXPECT_TRUE(parse("-9223372036854775809").is_number_float());
}

TEST(JSONParser, SaysWhereTheTextEndsTooEarly) {
    EXPECT_EQ(parserErrorOf("{\n \"a\": [1,"), "not JSON: line 2, column 10: unexpected end of input");
    EXPECT_EQ(parserErrorOf(""), "not JSON: column 1: unexpected end of input");
    EXPECT_EQ(parserErrorOf("\n\n"), "not JSON: line 3, column 1: unexpected end of input");
}

TEST(JSONParser, SaysWhatDoesNotBelong) {
    EXPECT_EQ(parserErrorOf("[1] 2"), "not JSON: column 5: unexpected number literal");
    EXPECT_EQ(parserErrorOf("[1,]"), "not JSON: column 4: unexpected ']'");
    EXPECT_EQ(parserErrorOf("[tru]"), "not JSON: column 5: invalid literal");
    EXPECT_EQ(parserErrorOf("// no"), "not JSON: column 1: invalid literal");
}

TEST(JSONParser, RejectsTextThatIsNotUTF8) {
    EXPECT_EQ(parserErrorOf("[\"\xFF\"]"), "not JSON: column 3: invalid string: ill-formed UTF-8 byte");
    EXPECT_EQ(parserErrorOf("[\"\xC0\xAF\"]"), "not JSON: column 3: invalid string: ill-formed UTF-8 byte");
    EXPECT_EQ(parserErrorOf("[\"\xED\xA0\x80\"]"),
              "not JSON: column 4: invalid string: ill-formed UTF-8 byte");
    EXPECT_NE(parserErrorOf("\xFF\xFE[\0]\0").find("not JSON"), std::string::npos);
}

TEST(JSONParser, RejectsHalfASurrogatePair) {
    EXPECT_NE(parserErrorOf(R"(["\ud83c"])").find("must be followed by"), std::string::npos);
    EXPECT_EQ(parse(R"(["\ud83c\udfb9"])")[0], "\xF0\x9F\x8E\xB9");
}

TEST(JSONParser, RejectsAZeroByteAnywhere) {
    using std::string_view_literals::operator""sv;
    EXPECT_EQ(parserErrorOf("[]\0"sv), "not JSON: column 3: a zero byte");
    EXPECT_EQ(parserErrorOf("[]\0[]"sv), "not JSON: column 3: a zero byte");
    EXPECT_EQ(parserErrorOf("\n[\"\0\"]"sv), "not JSON: line 2, column 3: a zero byte");
}

TEST(JSONParser, RejectsANumberThatNoDoubleHolds) {
    EXPECT_EQ(parserErrorOf("[1e400]"), "not JSON: column 6: a number beyond the range of a double");
    EXPECT_EQ(parserErrorOf("[-" + std::string(400, '9') + "]"),
              "not JSON: column 402: a number beyond the range of a double");
}

TEST(JSONParser, ReadsTheDeepestNestingThatItPromises) {
    const auto nested = [](std::size_t levels) {
        return std::string(levels, '[') + std::string(levels, ']');
    };
    EXPECT_EQ(parse(nested(maximumNesting)).dump(), nested(maximumNesting));
    EXPECT_EQ(parserErrorOf(nested(maximumNesting + 1)), "nested deeper than 512 levels");
}

TEST(JSONParser, CountsOnlyTheLevelsThatAreOpen) {
    std::string text = "[";
    for (int element = 0; element < 1000; ++element) {
        text += "[[]],{\"a\":{}},";
    }
    EXPECT_EQ(parse(text + "0]").size(), 2001U);
}

TEST(JSONParser, RejectsAHundredThousandBracketsOfEitherKind) {
    std::string objects;
    for (int level = 0; level < 100'000; ++level) {
        objects += "{\"a\":";
    }
    EXPECT_EQ(parserErrorOf(objects), "nested deeper than 512 levels");
    EXPECT_EQ(parserErrorOf(std::string(100'000, '[')), "nested deeper than 512 levels");
    EXPECT_EQ(parserErrorOf(std::string(100'000, ']')), "not JSON: column 1: unexpected ']'");
}

}  // namespace
}  // namespace quillo
