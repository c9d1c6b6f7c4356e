// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline/Arguments.hpp"

#include <gmock/gmock.h>

#include <array>
#include <locale>

#include "commandline/CommandFailure.hpp"

namespace quillo {
namespace {

using testing::ElementsAre;

constexpr std::array<Option, 4> known{
    {{"--preset", true}, {"--block", true}, {"--tail", true}, {"--force", false}}};

Arguments parse(const std::vector<std::string>& words) {
    return {words, known};
}

/// The text of the error, or "none".
template <class Action>
std::string errorOf(Action action) {
    try {
        action();
        return "none";
    } catch (const UsageError& error) {
        return error.what();
    }
}

std::string parseError(const std::vector<std::string>& words) {
    return errorOf([&] { parse(words); });
}

std::string blockError(const std::string& value) {
    return errorOf(
        [&] { static_cast<void>(parse({"--block=" + value}).wholeNumber("--block", 1, 4096, 512)); });
}

std::string tailError(const std::string& value) {
    return errorOf([&] { static_cast<void>(parse({"--tail=" + value}).number("--tail", 0, 86400, 60)); });
}

TEST(Arguments, SortsOptionsFromOperandsInAnyOrder) {
    const auto arguments = parse({"--force", "in.mid", "--preset", "p.json", "out.mid"});
    EXPECT_THAT(arguments.operands(), ElementsAre("in.mid", "out.mid"));
    EXPECT_TRUE(arguments.has("--force"));
    EXPECT_EQ(arguments.text("--preset"), "p.json");
}

TEST(Arguments, TakesAValueBehindAnEqualsSign) {
    EXPECT_EQ(parse({"--preset=p=q.json"}).text("--preset"), "p=q.json");
    EXPECT_EQ(parse({"--preset=--force"}).text("--preset"), "--force");
    EXPECT_EQ(parse({"--preset="}).text("--preset"), "");
}

TEST(Arguments, KnowsThatAnOptionIsNotThere) {
    const auto arguments = parse({"in.mid"});
    EXPECT_FALSE(arguments.has("--force"));
    EXPECT_EQ(arguments.text("--preset"), std::nullopt);
}

TEST(Arguments, TakesEverythingBehindTwoHyphensForOperands) {
    EXPECT_THAT(parse({"a", "--", "--force", "--"}).operands(), ElementsAre("a", "--force", "--"));
}

TEST(Arguments, TakesASingleHyphenForAnOperand) {
    EXPECT_THAT(parse({"-"}).operands(), ElementsAre("-"));
}

TEST(Arguments, RejectsAnUnknownOption) {
    EXPECT_EQ(parseError({"--frobnicate"}), "unknown option --frobnicate");
    EXPECT_EQ(parseError({"--forc"}), "unknown option --forc");
    EXPECT_EQ(parseError({"--frobnicate=1"}), "unknown option --frobnicate");
    EXPECT_EQ(parseError({"-f"}), "unknown option -f");
}

TEST(Arguments, RejectsAnOptionWithoutItsValue) {
    EXPECT_EQ(parseError({"--preset"}), "option --preset needs a value");
    EXPECT_EQ(parseError({"--preset", "--force"}), "option --preset needs a value");
}

TEST(Arguments, RejectsAValueThatAnOptionDoesNotTake) {
    EXPECT_EQ(parseError({"--force=yes"}), "option --force takes no value");
}

TEST(Arguments, RejectsAnOptionThatIsGivenTwice) {
    EXPECT_EQ(parseError({"--force", "--force"}), "option --force is given twice");
    EXPECT_EQ(parseError({"--block=1", "--block", "2"}), "option --block is given twice");
}

TEST(Arguments, ReadsWholeNumbersUpToTheirBounds) {
    EXPECT_EQ(parse({"--block", "1"}).wholeNumber("--block", 1, 4096, 512), 1u);
    EXPECT_EQ(parse({"--block=4096"}).wholeNumber("--block", 1, 4096, 512), 4096u);
    EXPECT_EQ(parse({}).wholeNumber("--block", 1, 4096, 512), 512u);
}

TEST(Arguments, RejectsWhatIsNotExactlyAWholeNumberInBounds) {
    EXPECT_EQ(blockError("64"), "none");
    for (const std::string wrong :
         {"0", "4097", "-1", "", "64x", " 64", "64 ", "+64", "6.4", "0x40", "1e2", "99999999999999999999"}) {
        EXPECT_EQ(blockError(wrong),
                  "option --block: \"" + wrong + "\" is not a whole number from 1 to 4096");
    }
}

TEST(Arguments, ReadsNumbersWithDecimals) {
    EXPECT_EQ(parse({"--tail", "2.5"}).number("--tail", 0, 86400, 60), 2.5);
    EXPECT_EQ(parse({"--tail=0"}).number("--tail", 0, 86400, 60), 0);
    EXPECT_EQ(parse({}).number("--tail", 0, 86400, 60), 60);
}

/// Of a country where decimals stand behind a comma.
class DecimalComma : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

TEST(Arguments, ReadsDecimalsBehindAPointInEveryCountry) {
    const auto before = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
    EXPECT_EQ(parse({"--tail", "2.5"}).number("--tail", 0, 86400, 60), 2.5);
    EXPECT_NE(tailError("1,5"), "none");
    std::locale::global(before);
}

TEST(Arguments, RejectsWhatIsNotExactlyANumberInBounds) {
    EXPECT_EQ(tailError("86400"), "none");
    for (const std::string wrong :
         {"-0.1", "86400.5", "nan", "inf", "", ".", "1s", " 1", "1 ", "1,5", "1.2.3", "+1", "0x10", "1e2"}) {
        EXPECT_EQ(tailError(wrong), "option --tail: \"" + wrong + "\" is not a number from 0 to 86400");
    }
}

}  // namespace
}  // namespace quillo
