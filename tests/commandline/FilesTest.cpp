// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline/Files.hpp"

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>

#include "commandline/CommandFailure.hpp"
#include "persistence/PluginData.hpp"
#include "programs/CommandLineFixture.hpp"
#include "support/MIDIFileBytes.hpp"

namespace quillo {
namespace {

class InputFilesTest : public fixture::CommandLineTest {
protected:
    /// A file that holds so many bytes, none of which takes room.
    std::string sparse(const std::string& name, std::uintmax_t bytes) {
        const auto path = folder.with(name, std::string());
        std::filesystem::resize_file(path, bytes);
        return path;
    }

    /// A document of one mebibyte more than is read, most of it blanks.
    std::string largePreset() {
        auto text = PluginData{}.write();
        text.resize(65UL << 20U, ' ');
        return folder.with("large.json", text);
    }
};

constexpr auto presetIsTooLarge =
    ": cannot be read: it is larger than 64 MiB; --force-size reads it all the same\n";

TEST_F(InputFilesTest, NoVerbReadsMoreThan64MebibytesOfPreset) {
    const auto midi = folder.with("in.mid", fixture::oneTrackFile("00 ff 2f 00"));
    for (const auto& preset : {sparse("6G.json", std::uintmax_t{6} << 30U), std::string("/dev/zero")}) {
        for (const auto& words : std::vector<std::vector<std::string>>{
                 {"check", preset},
                 {"explain", "load", "--preset", preset},
                 {"render", midi, folder / "out.mid", "--preset", preset}}) {
            const auto result = run(words);
            EXPECT_EQ(result.status, exitNoInput);
            EXPECT_EQ(result.err, "midi-quillo: " + preset + presetIsTooLarge);
        }
    }
}

TEST_F(InputFilesTest, ForceReadsALargerPreset) {
    const auto preset = largePreset();
    const auto midi = folder.with("in.mid", fixture::oneTrackFile("00 ff 2f 00"));
    EXPECT_EQ(run({"check", preset}).status, exitNoInput);
    EXPECT_EQ(run({"check", preset, "--force-size"}).out, preset + ": generation 3 (current), 0 rules\n");
    EXPECT_EQ(run({"explain", "load", "--preset", preset, "--force-size"}).status, exitSuccess);
    EXPECT_EQ(run({"render", midi, folder / "out.mid", "--preset", preset, "--force-size"}).status,
              exitSuccess);
}

TEST_F(InputFilesTest, ReadsNoMoreThan64MebibytesOfMIDI) {
    const auto preset = folder.with("p.json", PluginData{}.write());
    const auto midi = sparse("large.mid", (std::uintmax_t{64} << 20U) + 1);
    const auto result = run({"render", midi, folder / "out.mid", "--preset", preset});
    EXPECT_EQ(result.status, exitNoInput);
    EXPECT_EQ(result.err,
              "midi-quillo: " + midi +
                  ": cannot be read: it is larger than 64 MiB; --force-size reads it all the same\n");
}

TEST_F(InputFilesTest, APresetMayComeThroughAPipe) {
    const auto pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(pipe) << R"({"rules":[]})"; });
    EXPECT_EQ(run({"check", pipe}).out, pipe + ": generation 3 (current), 0 rules\n");
    writer.join();
}

TEST_F(InputFilesTest, APromptReaderNeverWaitsForAPipe) {
    const auto pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    try {
        static_cast<void>(readPresetInput(pipe, exitBadData, InputReading::prompt));
        FAIL() << "read from a pipe that nobody writes to";
    } catch (const CommandFailure& failure) {
        EXPECT_EQ(failure.status(), exitNoInput);
        EXPECT_EQ(failure.what(), pipe + ": cannot be read: it is not a regular file");
    }
}

TEST_F(InputFilesTest, APromptReaderOffersNoForce) {
    const auto preset = largePreset();
    try {
        static_cast<void>(readPresetInput(preset, exitBadData, InputReading::prompt));
        FAIL() << "read more than 64 MiB";
    } catch (const CommandFailure& failure) {
        EXPECT_EQ(failure.what(), preset + ": cannot be read: it is larger than 64 MiB");
    }
}

TEST_F(InputFilesTest, AScriptWithoutLineEndsIsRejected) {
    const auto result = run({"host", "/dev/zero"});
    EXPECT_EQ(result.status, exitBadData);
    EXPECT_EQ(result.err, "line 1: longer than 128 MiB\n");
}

TEST_F(InputFilesTest, NoVerbReadsMoreOfStandardInput) {
    const std::string large((64UL << 20U) + 1, ' ');
    const auto result = run({"check", "-"}, large);
    EXPECT_EQ(result.status, exitNoInput);
    EXPECT_EQ(result.err,
              "midi-quillo: standard input: it is larger than 64 MiB; --force-size reads it all the "
              "same\n");
    EXPECT_EQ(run({"check", "-", "--force-size"}, large).status, exitBadPreset);
}

}  // namespace
}  // namespace quillo
