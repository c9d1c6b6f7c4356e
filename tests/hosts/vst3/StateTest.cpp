// SPDX-License-Identifier: GPL-3.0-or-later
// What a project keeps of the built plug-in.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <utility>

#include <public.sdk/source/common/memorystream.h>

#include "hosts/vst3/VST3Host.hpp"
#include "persistence/PluginData.hpp"
#include "session/Session.hpp"
#include "support/TestRules.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

using namespace test;
using Steinberg::kResultFalse;
using Steinberg::kResultOk;

constexpr std::uint32_t stateBlockLength = 64;

/// The document of a rule that answers each note with this one, and so often over with nothing.
Bytes answerWith(std::uint8_t note, std::size_t silentRules = 0) {
    std::vector<Rule> rules(silentRules, rule(onNoteOff(exactly(1)), send(noteOn(0, 1, 1)), "never"));
    rules.push_back(rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, note, 5)), "answer"));
    return PluginData{std::move(rules)}.write();
}

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

class VST3State : public testing::Test {
protected:
    /// The notes that answer one. Those of answers before may end meanwhile.
    Bytes answers() {
        input.clear();
        plugIn.give(input, 0, Bytes{0x90, 60, 1});
        EXPECT_EQ(plugIn.process(stateBlockLength, input, nullptr), kResultOk);
        Bytes notes;
        for (const auto& message : plugIn.sent()) {
            if (message.bytes[0] == 0x90) {
                notes.push_back(message.bytes[1]);
            }
        }
        return notes;
    }

    VST3Instance plugIn;
    VST3Input input;
};

TEST_F(VST3State, TheChunkIsTheDocumentAndWhatTheWrapperPutsBehindIt) {
    const auto document = answerWith(61);
    ASSERT_EQ(plugIn.setState(document), kResultOk);
    const auto chunk = plugIn.state();
    ASSERT_GT(chunk.size(), document.size());
    EXPECT_EQ(Bytes(chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(document.size())), document);
    const Bytes behind(chunk.begin() + static_cast<std::ptrdiff_t>(document.size()), chunk.end());
    EXPECT_EQ(Bytes(behind.begin(), behind.begin() + 8), Bytes(8));
    constexpr std::string_view mark = "JUCEPrivateData";
    EXPECT_TRUE(std::equal(mark.begin(), mark.end(), behind.end() - mark.size()));
    EXPECT_LT(behind.size(), 100U);
}

TEST_F(VST3State, AChunkKeepsWhatIsSwitchedOff) {
    const auto off = rule(onNoteOn(), send(noteOn(0, 61, 5)), "off");
    const auto document = PluginData{{off}, {{0, off}, {1, off}}}.write();
    ASSERT_EQ(plugIn.setState(document), kResultOk);
    const auto chunk = plugIn.state();
    ASSERT_GT(chunk.size(), document.size());
    EXPECT_TRUE(std::equal(document.begin(), document.end(), chunk.begin()));
}

TEST_F(VST3State, AChunkIsTakenBackByAnotherInstanceByteForByte) {
    ASSERT_EQ(plugIn.setState(answerWith(61)), kResultOk);
    const auto chunk = plugIn.state();
    VST3Instance other;
    ASSERT_EQ(other.setState(chunk), kResultOk);
    EXPECT_EQ(other.state(), chunk);
}

TEST_F(VST3State, IsTakenBeforeAndAfterActivationAndWhileDeactivatedAndTwice) {
    ASSERT_EQ(plugIn.setState(answerWith(61)), kResultOk);
    plugIn.activate();
    EXPECT_EQ(answers(), Bytes{61});
    ASSERT_EQ(plugIn.setState(answerWith(62)), kResultOk);
    EXPECT_EQ(answers(), Bytes{62});
    plugIn.deactivate();
    ASSERT_EQ(plugIn.setState(answerWith(63)), kResultOk);
    ASSERT_EQ(plugIn.setState(answerWith(64)), kResultOk);
    plugIn.activate();
    EXPECT_EQ(answers(), Bytes{64});
}

TEST_F(VST3State, AMegabyteOfRulesIsTakenAndSavedByteForByte) {
    const auto document = answerWith(61, 10000);
    ASSERT_GT(document.size(), 1U << 20U);
    ASSERT_EQ(plugIn.setState(document), kResultOk);
    const auto chunk = plugIn.state();
    EXPECT_TRUE(std::equal(document.begin(), document.end(), chunk.begin()));
    plugIn.activate();
    EXPECT_EQ(answers(), Bytes{61});
}

TEST_F(VST3State, AnEmptyOneIsRefusedAndTheRulesStay) {
    ASSERT_EQ(plugIn.setState(answerWith(61)), kResultOk);
    EXPECT_NE(plugIn.setState({}), kResultOk);
    plugIn.activate();
    EXPECT_EQ(answers(), Bytes{61});
}

TEST_F(VST3State, ADamagedOneIsReportedAsNotRestoredAndLeavesTheRules) {
    const auto document = answerWith(61);
    ASSERT_EQ(plugIn.setState(document), kResultOk);
    const auto chunk = plugIn.state();
    const auto other = answerWith(62);
    for (std::size_t length = 1; length < other.size(); ++length) {
        EXPECT_EQ(plugIn.setState(std::span(other).first(length)), kResultFalse) << length;
    }
    std::mt19937 generator(1);
    Bytes noise(1U << 20U);
    std::ranges::generate(noise, [&generator] { return static_cast<std::uint8_t>(generator()); });
    for (const auto& damaged : {noise, Bytes{0}, Bytes{'{', '}'}, Bytes(1000)}) {
        EXPECT_EQ(plugIn.setState(damaged), kResultFalse) << damaged.size();
    }
    EXPECT_EQ(plugIn.state(), chunk);
    plugIn.activate();
    EXPECT_EQ(answers(), Bytes{61});
}

/// What JUCE's wrapper writes behind the document says how long it is.
TEST_F(VST3State, AChunkThatIsDamagedBehindTheDocumentIsReportedAsNotRestored) {
    ASSERT_EQ(plugIn.setState(answerWith(61)), kResultOk);
    const auto chunk = plugIn.state();
    constexpr std::size_t markSize = 15;
    for (const auto byte : Bytes{0x7F, 0xFF}) {
        for (std::size_t place = 1; place <= 8; ++place) {
            auto damaged = chunk;
            damaged[chunk.size() - markSize - place] = byte;
            EXPECT_EQ(plugIn.setState(damaged), kResultFalse) << place;
        }
    }
    const auto behind = std::span(chunk).subspan(answerWith(61).size());
    EXPECT_EQ(plugIn.setState(behind), kResultFalse) << "without a document";
    EXPECT_EQ(plugIn.setState(behind.subspan(8)), kResultFalse);
    EXPECT_EQ(plugIn.state(), chunk);
    EXPECT_EQ(plugIn.setState(chunk), kResultOk);
}

/// A chunk as JUCE's wrapper writes it, with these data of its own.
Bytes chunkWith(Bytes document, const Bytes& wrappersData) {
    document.insert(document.end(), 8, 0);
    document.insert(document.end(), wrappersData.begin(), wrappersData.end());
    for (std::size_t i = 0; i < 8; ++i) {
        document.push_back(static_cast<std::uint8_t>(wrappersData.size() >> (8 * i)));
    }
    const auto mark = bytesOf("JUCEPrivateData");
    document.insert(document.end(), mark.begin(), mark.end());
    return document;
}

/// JUCE reads a tree of values from them: it makes room for as many children as it is told of, and takes a
/// level of the stack for each level of the tree.
TEST_F(VST3State, WhatIsNoBypassInTheWrappersDataIsLeftAloneAndTheRulesAreTaken) {
    const Bytes aBillionChildren{'a', 0, 0, 4, 0, 0, 0, 0x40};
    Bytes manyLevels;
    for (int level = 0; level < 100000; ++level) {
        manyLevels.insert(manyLevels.end(), {'a', 0, 0, 1, 1});
    }
    std::uint8_t note = 61;
    plugIn.activate();
    for (const auto& data : {aBillionChildren, manyLevels, Bytes(100), Bytes{}}) {
        EXPECT_EQ(plugIn.setState(chunkWith(answerWith(note), data)), kResultOk);
        EXPECT_EQ(answers(), Bytes{note++});
    }
}

TEST_F(VST3State, ThePlugInIsBypassedAsItWasAndNotByAChunkWhoseRulesAreRefused) {
    const auto bypassed = [](std::uint8_t kind) {
        auto data = bytesOf("JUCEPrivateData");
        for (const auto& part : {Bytes{0, 1, 1}, bytesOf("Bypass"), Bytes{0, 1, 1, kind, 0}}) {
            data.insert(data.end(), part.begin(), part.end());
        }
        return data;
    };
    const auto yes = bypassed(2);
    const auto no = bypassed(3);
    plugIn.activate();
    ASSERT_EQ(plugIn.setState(chunkWith(answerWith(61), yes)), kResultOk);
    EXPECT_EQ(plugIn.state(), chunkWith(answerWith(61), yes));
    EXPECT_EQ(answers(), Bytes{60}) << "what passes";
    EXPECT_EQ(plugIn.setState(chunkWith(bytesOf("{"), no)), kResultFalse);
    EXPECT_EQ(plugIn.state(), chunkWith(answerWith(61), yes));
    ASSERT_EQ(plugIn.setState(chunkWith(answerWith(62), no)), kResultOk);
    EXPECT_EQ(plugIn.state(), chunkWith(answerWith(62), no));
    EXPECT_EQ(answers(), Bytes{62});
}

/// A stream that says that it has given more than there was room for.
class BoastingStream final : public Steinberg::MemoryStream {
public:
    Steinberg::tresult PLUGIN_API read(void* /*buffer*/, Steinberg::int32 bytes,
                                       Steinberg::int32* count) override {
        *count = bytes << 16;
        return kResultOk;
    }
};

/// A stream that does not go back to its beginning.
class StuckStream final : public Steinberg::MemoryStream {
public:
    Steinberg::tresult PLUGIN_API seek(Steinberg::int64 /*position*/, Steinberg::int32 /*from*/,
                                       Steinberg::int64* /*reached*/) override {
        return kResultFalse;
    }
};

TEST_F(VST3State, ThatCannotBeReadLeavesTheRules) {
    ASSERT_EQ(plugIn.setState(answerWith(61)), kResultOk);
    BoastingStream boasting;
    StuckStream stuck;
    for (auto* stream : std::initializer_list<Steinberg::IBStream*>{&boasting, &stuck}) {
        EXPECT_EQ(plugIn.setState(*stream), kResultFalse);
    }
    plugIn.activate();
    EXPECT_EQ(answers(), Bytes{61});
}

TEST_F(VST3State, IsReadFromItsBeginningWhereverTheStreamStands) {
    auto document = answerWith(61);
    Steinberg::MemoryStream stream(document.data(), static_cast<Steinberg::TSize>(document.size()));
    stream.seek(0, Steinberg::IBStream::kIBSeekEnd, nullptr);
    ASSERT_EQ(plugIn.setState(stream), kResultOk);
    plugIn.activate();
    EXPECT_EQ(answers(), Bytes{61});
}

/// A stream of zeros without an end, until the plug-in has had enough.
class EndlessStream final : public Steinberg::MemoryStream {
public:
    Steinberg::tresult PLUGIN_API read(void* buffer, Steinberg::int32 bytes,
                                       Steinberg::int32* count) override {
        std::memset(buffer, 0, static_cast<std::size_t>(bytes));
        *count = given < most ? bytes : 0;
        given += static_cast<std::size_t>(*count);
        return kResultOk;
    }

    static constexpr std::size_t most = 2 * Session::longestDocument;
    std::size_t given = 0;
};

TEST_F(VST3State, IsReadNoFurtherThanItCanBeRestored) {
    EndlessStream stream;
    EXPECT_EQ(plugIn.setState(stream), kResultFalse);
    EXPECT_LE(stream.given, Session::longestDocument + 4096);
}

/// A host's stream that takes seven bytes at a time, up to so many.
class NarrowStream final : public Steinberg::MemoryStream {
public:
    explicit NarrowStream(Steinberg::TSize room) : room_(room) {}

    Steinberg::tresult PLUGIN_API write(void* buffer, Steinberg::int32 bytes,
                                        Steinberg::int32* count) override {
        const auto left = static_cast<Steinberg::int32>(room_ - getSize());
        return MemoryStream::write(buffer, std::min({7, bytes, left}), count);
    }

private:
    Steinberg::TSize room_;
};

TEST_F(VST3State, IsSavedWholeOrNotAtAll) {
    ASSERT_EQ(plugIn.setState(answerWith(61)), kResultOk);
    const auto chunk = plugIn.state();
    const auto size = static_cast<Steinberg::TSize>(chunk.size());
    NarrowStream exact(size);
    EXPECT_EQ(plugIn.getState(exact), kResultOk);
    EXPECT_EQ(Bytes(exact.getData(), exact.getData() + exact.getSize()), chunk);
    NarrowStream tooShort(size - 1);
    EXPECT_EQ(plugIn.getState(tooShort), kResultFalse);
}

/// A host's stream whose second reading gives something else than the first.
class ChangingStream final : public Steinberg::MemoryStream {
public:
    ChangingStream(Bytes first, Bytes then) : first_(std::move(first)), then_(std::move(then)) {
        setSize(static_cast<Steinberg::TSize>(first_.size()));
    }

    Steinberg::tresult PLUGIN_API read(void* buffer, Steinberg::int32 bytes,
                                       Steinberg::int32* count) override {
        const auto& document = isRead_ ? then_ : first_;
        const auto piece = std::min(document.size() - at_, static_cast<std::size_t>(bytes));
        std::memcpy(buffer, document.data() + at_, piece);
        at_ += piece;
        *count = static_cast<Steinberg::int32>(piece);
        if (piece == 0) {
            isRead_ = true;
            at_ = 0;
        }
        return kResultOk;
    }

private:
    Bytes first_;
    Bytes then_;
    std::size_t at_ = 0;
    bool isRead_ = false;
};

TEST_F(VST3State, IsWhatWasCheckedAndNothingElse) {
    ChangingStream stream(answerWith(61), answerWith(62));
    ASSERT_EQ(plugIn.setState(stream), kResultOk);
    plugIn.activate();
    EXPECT_EQ(answers(), Bytes{61});
}

TEST_F(VST3State, MayBeReplacedAndSavedWhileAnotherThreadProcesses) {
    const Bytes documents[2] = {answerWith(61), answerWith(62, 50)};
    ASSERT_EQ(plugIn.setState(documents[0]), kResultOk);
    plugIn.activate();
    std::atomic<bool> done{false};
    std::atomic<int> heard[2]{};
    const auto process = [&](std::size_t) {
        while (!done) {
            const auto notes = answers();
            ASSERT_EQ(notes.size(), 1U);
            ASSERT_TRUE(notes[0] == 61 || notes[0] == 62) << int{notes[0]};
            ++heard[notes[0] - 61];
        }
    };
    const Threads render(1, process);
    for (std::size_t round = 1; round <= 200 || ((heard[0] == 0 || heard[1] == 0) && !HasFailure());
         ++round) {
        const auto& document = documents[round % 2];
        EXPECT_EQ(plugIn.setState(document), kResultOk);
        const auto chunk = plugIn.state();
        EXPECT_TRUE(std::equal(document.begin(), document.end(), chunk.begin()));
    }
    done = true;
}

}  // namespace
}  // namespace quillo
