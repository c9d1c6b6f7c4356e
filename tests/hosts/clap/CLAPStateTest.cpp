// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string_view>

#include "hosts/clap/CLAPExtensions.hpp"
#include "hosts/clap/CLAPTestHost.hpp"
#include "persistence/PluginData.hpp"
#include "session/Session.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<ScriptMessage>;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

Bytes documentOf(std::vector<Rule> rules) {
    return PluginData{std::move(rules)}.write();
}

/// A document of more than 1 MB.
Bytes longDocument() {
    const auto body = std::vector<std::uint8_t>(1000, 0x55);
    return documentOf(std::vector(1000, rule(onNoteOn(exactly(1)), send(systemExclusive(body)), "long")));
}

class CLAPState : public testing::Test {
protected:
    /// What the extension makes of a stream whose `read` is this.
    bool load(std::int64_t (*read)(const clap_istream_t*, void*, std::uint64_t)) {
        std::uint64_t calls = 0;
        const clap_istream_t stream{&calls, read};
        return table().load(host.plugin, &stream);
    }

    bool save(std::int64_t (*write)(const clap_ostream_t*, const void*, std::uint64_t)) {
        std::uint64_t calls = 0;
        const clap_ostream_t stream{&calls, write};
        return table().save(host.plugin, &stream);
    }

    [[nodiscard]] const clap_plugin_state_t& table() const {
        return host.extension<clap_plugin_state_t>(CLAP_EXT_STATE);
    }

    CLAPTestHost host;
    const Bytes swap = documentOf(
        {rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 61, 5), 10), "swap")});
};

TEST_F(CLAPState, IsSavedAsItWasLoadedByteForByte) {
    for (const auto& document :
         {swap, documentOf({}), documentOf({rule(onLoad(), send(noteOn(0, 1, 1)), "Ä")})}) {
        ASSERT_TRUE(host.load(document));
        EXPECT_EQ(host.save(), document);
    }
}

TEST_F(CLAPState, KeepsWhatIsSwitchedOff) {
    const auto off = rule(onNoteOn(), send(noteOn(0, 61, 5)), "off");
    const auto document = PluginData{{off}, {{0, off}, {1, off}}}.write();
    ASSERT_TRUE(host.load(document));
    EXPECT_EQ(host.save(), document);
}

TEST_F(CLAPState, OfAFreshPluginIsAnEmptyList) {
    EXPECT_EQ(host.save(), documentOf({}));
}

TEST_F(CLAPState, PassesThroughStreamsThatTakeAndGiveLittleAtATime) {
    for (const std::size_t piece : {1U, 7U, 65537U}) {
        ASSERT_TRUE(host.load(swap, piece));
        EXPECT_EQ(host.save(piece), swap);
    }
}

TEST_F(CLAPState, OfAMegabyteIsSavedAsItWasLoaded) {
    const auto document = longDocument();
    ASSERT_GT(document.size(), 1U << 20U);
    ASSERT_TRUE(host.load(document));
    EXPECT_EQ(host.save(4096), document);
}

TEST_F(CLAPState, ThatIsEmptyOrDamagedIsRefusedAndLeavesTheRules) {
    ASSERT_TRUE(host.load(swap));
    for (const auto* damaged :
         {"", " ", "{", "[1]", "null", R"({"rules":[{}]})", R"({"rules":[]} x)", "\xff\xfe"}) {
        EXPECT_FALSE(host.load(bytesOf(damaged))) << damaged;
        EXPECT_EQ(host.save(), swap);
    }
}

TEST_F(CLAPState, OfAMegabyteOfNoiseIsRefused) {
    ASSERT_TRUE(host.load(swap));
    std::mt19937 generator(1);
    for (int i = 0; i < 3; ++i) {
        Bytes noise(1U << 20U);
        for (auto& byte : noise) {
            byte = static_cast<std::uint8_t>(generator());
        }
        EXPECT_FALSE(host.load(noise));
    }
    EXPECT_EQ(host.save(), swap);
}

TEST_F(CLAPState, ThatTheRulesCannotBeMadeOfIsRefusedAndLeavesTheRules) {
    ASSERT_TRUE(host.load(swap));
    EXPECT_FALSE(host.load(documentOf({rule(onLoad(), send(noteOn(0, 1, 1), -1))})));
    EXPECT_EQ(host.save(), swap);
}

/// Which gave its rules names by their numbers.
TEST_F(CLAPState, OfAnEarlierGenerationIsReadAndSavedAsTheCurrentOne) {
    const auto current = documentOf({rule(onMIDIStart(), send(noteOn(0, 61, 5), 10), "Message #1")});
    const std::string text(current.begin(), current.end());
    const auto list = text.find('[');
    ASSERT_TRUE(host.load(bytesOf(text.substr(list, text.rfind(']') + 1 - list))));
    EXPECT_EQ(host.save(), current);
}

TEST_F(CLAPState, ThatWasLoadedBeforeTheRateWasKnownKeepsItsMilliseconds) {
    ASSERT_TRUE(host.load(swap));
    ASSERT_TRUE(host.plugin->activate(host.plugin, 96000.0, 1, 4096));
    ASSERT_TRUE(host.plugin->start_processing(host.plugin));
    host.process(4096, Bytes{0x90, 60, 1});
    EXPECT_EQ(host.take(), (Messages{{960, {0x90, 61, 5}}}));
}

TEST_F(CLAPState, ThatIsLoadedWhileItPlaysHoldsFromTheNextBlock) {
    host.start();
    host.process(64, Bytes{0x90, 60, 1});
    ASSERT_TRUE(host.load(swap));
    host.process(1024, Bytes{0x90, 60, 1});
    EXPECT_EQ(host.take(), (Messages{{0, {0x90, 60, 1}}, {64 + 480, {0x90, 61, 5}}}));
}

TEST_F(CLAPState, IsNotDirtyForBeingLoadedOrSaved) {
    ASSERT_TRUE(host.load(swap));
    EXPECT_EQ(host.save(), swap);
    EXPECT_EQ(host.dirtyMarks, 0);
}

TEST_F(CLAPState, OfAStreamThatFailsIsRefusedAndLeavesTheRules) {
    ASSERT_TRUE(host.load(swap));
    EXPECT_FALSE(load([](const clap_istream_t*, void*, std::uint64_t) { return std::int64_t{-1}; }));
    EXPECT_FALSE(load([](const clap_istream_t* stream, void* buffer, std::uint64_t) -> std::int64_t {
        constexpr std::string_view empty = R"({"rules":[]})";
        if ((*static_cast<std::uint64_t*>(stream->ctx))++ > 0) {
            return -1;
        }
        std::memcpy(buffer, empty.data(), empty.size());
        return static_cast<std::int64_t>(empty.size());
    }));
    EXPECT_EQ(host.save(), swap);
}

TEST_F(CLAPState, OfAStreamThatSaysItReadMoreThanItWasAskedForIsRefusedAtOnce) {
    int calls = 0;
    const clap_istream_t stream{&calls, [](const clap_istream_t* self, void*, std::uint64_t size) {
                                    ++*static_cast<int*>(self->ctx);
                                    return static_cast<std::int64_t>(size + 1);
                                }};
    EXPECT_FALSE(table().load(host.plugin, &stream));
    EXPECT_EQ(calls, 1);
}

TEST_F(CLAPState, OfAStreamThatNeverEndsIsRefusedOnceItIsTooLong) {
    std::uint64_t given = 0;
    const clap_istream_t stream{&given, [](const clap_istream_t* self, void*, std::uint64_t size) {
                                    *static_cast<std::uint64_t*>(self->ctx) += size;
                                    return static_cast<std::int64_t>(size);
                                }};
    EXPECT_FALSE(table().load(host.plugin, &stream));
    EXPECT_GT(given, Session::longestDocument);
    EXPECT_LE(given, Session::longestDocument + (std::uint64_t{1} << 16U));
}

TEST_F(CLAPState, ThatAStreamDoesNotTakeIsNotSaved) {
    EXPECT_FALSE(save([](const clap_ostream_t*, const void*, std::uint64_t) { return std::int64_t{-1}; }));
    EXPECT_FALSE(save([](const clap_ostream_t*, const void*, std::uint64_t) { return std::int64_t{0}; }));
}

TEST_F(CLAPState, OfWhichAStreamSaysItTookMoreThanThereIsIsNotSavedAnyFurther) {
    int calls = 0;
    const clap_ostream_t stream{&calls, [](const clap_ostream_t* self, const void*, std::uint64_t size) {
                                    ++*static_cast<int*>(self->ctx);
                                    return static_cast<std::int64_t>(size + 1);
                                }};
    EXPECT_FALSE(table().save(host.plugin, &stream));
    EXPECT_EQ(calls, 1);
}

TEST_F(CLAPState, WithoutAStreamIsNeitherLoadedNorSaved) {
    const clap_istream_t withoutRead{};
    const clap_ostream_t withoutWrite{};
    EXPECT_FALSE(table().load(host.plugin, nullptr));
    EXPECT_FALSE(table().load(host.plugin, &withoutRead));
    EXPECT_FALSE(table().save(host.plugin, nullptr));
    EXPECT_FALSE(table().save(host.plugin, &withoutWrite));
}

}  // namespace
}  // namespace quillo
