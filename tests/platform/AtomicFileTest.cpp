// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AtomicFile.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/FileSizeLimit.hpp"
#include "support/TemporaryFolder.hpp"

namespace {

/// The folders that were made durable, by their inodes.
std::vector<ino_t> durableFolders;

}  // namespace

/// In the place of the system's, which it calls.
extern "C" int fsync(int descriptor) {
    struct stat status{};
    if (::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        durableFolders.push_back(status.st_ino);
    }
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace quillo {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Bytes = std::vector<std::uint8_t>;

const Bytes oldBytes{1, 2, 3};
const Bytes newBytes{9, 8, 7, 6};

class AtomicFile : public testing::Test {
protected:
    /// What the folder holds: a failed write must leave nothing behind.
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(folder.path())) {
            found.push_back(entry.path().filename().string());
        }
        return found;
    }

    void writeOldFile() const { writeWholeFile(file, oldBytes, Existing::keep); }

    TemporaryFolder folder;
    const fs::path file = folder / "song.mid";
};

/// What the `FileError` of `action` says; empty when it succeeds.
template <class Action>
std::string failureOf(Action&& action) {
    try {
        action();
    } catch (const FileError& error) {
        return error.what();
    }
    return {};
}

fs::perms modeOf(const fs::path& path) {
    return fs::status(path).permissions();
}

struct stat statusOf(const fs::path& path) {
    struct stat status{};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status;
}

/// A group that this process may give a file to, other than its own where there is one.
gid_t anotherGroup() {
    if (::geteuid() == 0) {
        return ::getegid() + 1;
    }
    std::vector<gid_t> groups(static_cast<std::size_t>(::getgroups(0, nullptr)));
    EXPECT_EQ(::getgroups(static_cast<int>(groups.size()), groups.data()), static_cast<int>(groups.size()));
    const auto other = std::ranges::find_if(groups, [](gid_t group) { return group != ::getegid(); });
    return other != groups.end() ? *other : ::getegid();
}

/// Runs with a file-creation mask of its own.
class Mask {
public:
    explicit Mask(mode_t mask) : before_(::umask(mask)) {}
    ~Mask() { ::umask(before_); }
    Mask(const Mask&) = delete;
    Mask& operator=(const Mask&) = delete;

private:
    mode_t before_;
};

TEST_F(AtomicFile, WritesANewFileAndNothingBesideIt) {
    writeWholeFile(file, newBytes, Existing::keep);
    EXPECT_EQ(readWholeFile(file), newBytes);
    EXPECT_THAT(names(), ElementsAre("song.mid"));
}

TEST_F(AtomicFile, WritesANewFileWhenReplacingIsAllowed) {
    writeWholeFile(file, newBytes, Existing::replace);
    EXPECT_EQ(readWholeFile(file), newBytes);
    EXPECT_THAT(names(), ElementsAre("song.mid"));
}

TEST_F(AtomicFile, KeepsAFileThatIsThere) {
    writeOldFile();
    const auto failure = failureOf([&] { writeWholeFile(file, newBytes, Existing::keep); });
    EXPECT_EQ(failure, file.string() + ": cannot be written: File exists");
    EXPECT_EQ(readWholeFile(file), oldBytes);
    EXPECT_THAT(names(), ElementsAre("song.mid"));
}

TEST_F(AtomicFile, ReplacesAFileWhenAsked) {
    writeOldFile();
    writeWholeFile(file, newBytes, Existing::replace);
    EXPECT_EQ(readWholeFile(file), newBytes);
    EXPECT_THAT(names(), ElementsAre("song.mid"));
}

TEST_F(AtomicFile, APathThatCannotBeLookedUpFailsAsAnyOther) {
    const auto path = folder.path() / std::string(300, 'n');
    for (const auto existing : {Existing::keep, Existing::replace}) {
        EXPECT_EQ(failureOf([&] { writeWholeFile(path, newBytes, existing); }),
                  path.string() + ": cannot be put in place: File name too long");
    }
}

TEST_F(AtomicFile, AReaderOfTheOldFileGoesOnReadingIt) {
    writeOldFile();
    const auto oldFile = folder / "old.mid";
    fs::create_hard_link(file, oldFile);
    writeWholeFile(file, newBytes, Existing::replace);
    EXPECT_EQ(readWholeFile(oldFile), oldBytes);
    EXPECT_EQ(readWholeFile(file), newBytes);
}

TEST_F(AtomicFile, WritesAndReadsAnEmptyFile) {
    writeWholeFile(file, {}, Existing::keep);
    EXPECT_TRUE(fs::exists(file));
    EXPECT_THAT(readWholeFile(file), IsEmpty());
}

TEST_F(AtomicFile, ReadsBackMoreThanOneChunkOfBytes) {
    Bytes many(3 * 65536 + 1);
    std::generate(many.begin(), many.end(), [next = std::uint8_t{0}]() mutable { return next++; });
    writeWholeFile(file, many, Existing::keep);
    EXPECT_EQ(readWholeFile(file), many);
}

TEST_F(AtomicFile, ANewFileHasTheModeThatTheMaskLeavesIt) {
    const Mask mask(027);
    writeWholeFile(file, newBytes, Existing::keep);
    EXPECT_EQ(modeOf(file), fs::perms{0640});
}

TEST_F(AtomicFile, AReplacedFileKeepsItsModeWhateverTheMask) {
    const Mask mask(022);
    writeOldFile();
    for (const auto mode : {fs::perms{0600}, fs::perms{0666}, fs::perms{0444}}) {
        fs::permissions(file, mode);
        writeWholeFile(file, newBytes, Existing::replace);
        EXPECT_EQ(modeOf(file), mode);
    }
}

TEST_F(AtomicFile, AReplacedFileKeepsItsOwnerAndItsGroup) {
    writeOldFile();
    const auto owner = ::geteuid() == 0 ? ::geteuid() + 1 : ::geteuid();
    ASSERT_EQ(::chown(file.c_str(), owner, anotherGroup()), 0);
    fs::permissions(file, fs::perms{02750});
    writeWholeFile(file, newBytes, Existing::replace);
    EXPECT_EQ(statusOf(file).st_uid, owner);
    EXPECT_EQ(statusOf(file).st_gid, anotherGroup());
    EXPECT_EQ(modeOf(file), fs::perms{02750});
}

TEST_F(AtomicFile, TheFoldersNewNameOutlastsALossOfPower) {
    for (const auto existing : {Existing::keep, Existing::replace}) {
        durableFolders.clear();
        writeWholeFile(folder / (existing == Existing::keep ? "new.mid" : "song.mid"), newBytes, existing);
        EXPECT_THAT(durableFolders, ElementsAre(statusOf(folder.path()).st_ino));
    }
}

TEST_F(AtomicFile, TheFolderBehindALinkIsTheOneMadeDurable) {
    const TemporaryFolder other;
    writeOldFile();
    fs::create_symlink(file, other / "link.mid");
    durableFolders.clear();
    writeWholeFile(other / "link.mid", newBytes, Existing::replace);
    EXPECT_THAT(durableFolders, Contains(statusOf(folder.path()).st_ino));
}

TEST_F(AtomicFile, WritesAFileThatIsNamedWithoutItsFolder) {
    const auto before = fs::current_path();
    fs::current_path(folder.path());
    durableFolders.clear();
    writeWholeFile("song.mid", newBytes, Existing::keep);
    fs::current_path(before);
    EXPECT_EQ(readWholeFile(file), newBytes);
    EXPECT_THAT(durableFolders, ElementsAre(statusOf(folder.path()).st_ino));
}

TEST_F(AtomicFile, FollowsALinkAndLeavesItALink) {
    writeOldFile();
    const auto link = folder / "link.mid";
    fs::create_symlink("song.mid", link);
    writeWholeFile(link, newBytes, Existing::replace);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(readWholeFile(file), newBytes);
    EXPECT_THAT(names(), UnorderedElementsAre("song.mid", "link.mid"));
}

TEST_F(AtomicFile, FollowsALinkToAFileInAnotherFolder) {
    const TemporaryFolder other;
    writeOldFile();
    const auto link = other / "link.mid";
    fs::create_symlink(file, link);
    writeWholeFile(link, newBytes, Existing::replace);
    EXPECT_EQ(readWholeFile(file), newBytes);
    EXPECT_THAT(names(), ElementsAre("song.mid"));
}

TEST_F(AtomicFile, KeepsTheFileBehindALink) {
    writeOldFile();
    const auto link = folder / "link.mid";
    fs::create_symlink("song.mid", link);
    EXPECT_THROW(writeWholeFile(link, newBytes, Existing::keep), FileError);
    EXPECT_EQ(readWholeFile(file), oldBytes);
}

TEST_F(AtomicFile, RejectsALinkThatLeadsNowhere) {
    const auto link = folder / "link.mid";
    fs::create_symlink("gone.mid", link);
    for (const auto existing : {Existing::keep, Existing::replace}) {
        const auto failure = failureOf([&] { writeWholeFile(link, newBytes, existing); });
        EXPECT_EQ(failure, link.string() + ": cannot be written: it is a link that leads nowhere");
    }
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_THAT(names(), ElementsAre("link.mid"));
}

TEST_F(AtomicFile, RejectsAFolderAndADevice) {
    for (const auto& path : {folder.path(), fs::path("/dev/null")}) {
        const auto failure = failureOf([&] { writeWholeFile(path, newBytes, Existing::replace); });
        EXPECT_EQ(failure, path.string() + ": cannot be written: it is not a regular file");
    }
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(AtomicFile, StepsAroundWhatAnInterruptedProcessOfTheSameNumberLeft) {
    constexpr int leftOvers = 200;
    for (int i = 0; i < leftOvers; ++i) {
        std::ofstream(file.string() + ".tmp-" + std::to_string(::getpid()) + "-" + std::to_string(i))
            << "old";
    }
    writeWholeFile(file, newBytes, Existing::keep);
    EXPECT_EQ(readWholeFile(file), newBytes);
    EXPECT_EQ(names().size(), leftOvers + 1U);
}

TEST_F(AtomicFile, WhatAnInterruptedProcessLeftIsKnownByItsName) {
    EXPECT_TRUE(isUnfinished("song.mid.tmp-4711-0", "song.mid"));
    for (const auto* name :
         {"song.mid", "song.mid.tmp", "song.mid.tmp-", "song.mid.tmp-4711", "song.mid.tmp-4711-",
          "song.mid.tmp--0", "song.mid.tmp-4711-0-1", "song.mid.tmp-4711-0 ", "song.mid.4711-0",
          "song.mid.2026-11-20", "a song.mid.tmp-4711-0", "song.tmp-4711-0"}) {
        EXPECT_FALSE(isUnfinished(name, "song.mid")) << name;
    }
}

TEST_F(AtomicFile, MayHaveAsLongANameAsTheFolderTakes) {
    const std::string longest(255, 'n');
    writeWholeFile(folder.path() / longest, oldBytes, Existing::keep);
    writeWholeFile(folder.path() / longest, newBytes, Existing::replace);
    EXPECT_EQ(readWholeFile(folder.path() / longest), newBytes);
    EXPECT_THAT(names(), ElementsAre(longest));
}

TEST_F(AtomicFile, SaysWhenTheFolderIsMissing) {
    const auto lost = folder / "missing/song.mid";
    const auto failure = failureOf([&] { writeWholeFile(lost, newBytes, Existing::keep); });
    EXPECT_EQ(failure, lost.string() + ": cannot be written in this folder: No such file or directory");
}

TEST_F(AtomicFile, SaysWhenTheFolderIsAFile) {
    writeOldFile();
    const auto lost = folder / "song.mid/song.mid";
    const auto failure = failureOf([&] { writeWholeFile(lost, newBytes, Existing::replace); });
    EXPECT_EQ(failure, lost.string() + ": cannot be written in this folder: Not a directory");
    EXPECT_EQ(readWholeFile(file), oldBytes);
}

TEST_F(AtomicFile, AWriteThatFailsHalfWayLeavesTheOldFileAndNoTrace) {
    writeOldFile();
    const Bytes tooMany(10000, 0x55);
    const FileSizeLimit limit(4096);
    for (const auto& [path, existing] :
         {std::pair(file, Existing::replace), std::pair(folder / "new.mid", Existing::keep)}) {
        const auto failure = failureOf([&] { writeWholeFile(path, tooMany, existing); });
        EXPECT_EQ(failure, path.string() + ": cannot be written: File too large");
    }
    EXPECT_EQ(readWholeFile(file), oldBytes);
    EXPECT_THAT(names(), ElementsAre("song.mid"));
}

/// Reads a file whole, and as a regular file only.
const auto bothReaders = {&readWholeFile, &readRegularFile};

TEST_F(AtomicFile, SaysWhatCannotBeRead) {
    for (const auto read : bothReaders) {
        EXPECT_EQ(failureOf([&] { (void)read(file, usualSizeLimit); }),
                  file.string() + ": cannot be opened: No such file or directory");
    }
    EXPECT_EQ(failureOf([&] { (void)readWholeFile(folder.path()); }),
              folder.path().string() + ": cannot be read: Is a directory");
}

TEST_F(AtomicFile, NamesAFileWithoutItsControlCharacters) {
    EXPECT_EQ(failureOf([&] { (void)readWholeFile("/missing/\x1b[2J\n.mid"); }),
              "/missing/\\u001b[2J\\n.mid: cannot be opened: No such file or directory");
    EXPECT_EQ(failureOf([&] { writeWholeFile("/missing/\x1b[2J\n.mid", newBytes, Existing::keep); }),
              "/missing/\\u001b[2J\\n.mid: cannot be written in this folder: No such file or directory");
}

TEST_F(AtomicFile, ReadsAsManyBytesAsItMayAndNotOneMore) {
    const Bytes many(100'000, 7);
    writeWholeFile(file, many, Existing::keep);
    for (const auto read : bothReaders) {
        EXPECT_EQ(read(file, 100'000), many);
        EXPECT_EQ(failureOf([&] { (void)read(file, 99'999); }),
                  file.string() + ": cannot be read: it is larger than 99999 bytes");
    }
}

TEST_F(AtomicFile, AFileThatIsTooLargeIsAFailureOfItsOwnKind) {
    writeOldFile();
    for (const auto read : bothReaders) {
        EXPECT_THROW((void)read(file, oldBytes.size() - 1), FileTooLarge);
    }
}

/// The most that this process has ever held in memory, in kilobytes.
long mostMemory() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST_F(AtomicFile, ReadsNothingOfAFileThatIsFarTooLarge) {
    std::ofstream(file).close();
    fs::resize_file(file, std::uintmax_t{6} << 30U);
    const auto memoryBefore = mostMemory();
    for (const auto read : bothReaders) {
        EXPECT_EQ(failureOf([&] { (void)read(file, usualSizeLimit); }),
                  file.string() + ": cannot be read: it is larger than 64 MiB");
    }
    EXPECT_LT(mostMemory(), memoryBefore + 10'000);
}

TEST_F(AtomicFile, ADeviceWithoutAnEndIsReadToTheLimit) {
    EXPECT_EQ(failureOf([] { (void)readWholeFile("/dev/zero"); }),
              "/dev/zero: cannot be read: it is larger than 64 MiB");
}

TEST_F(AtomicFile, ReadsAPipeToItsEnd) {
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    const Bytes many(200'000, 7);
    std::thread writer([&] {
        std::ofstream(file, std::ios::binary)
            .write(reinterpret_cast<const char*>(many.data()), static_cast<std::streamsize>(many.size()));
    });
    EXPECT_EQ(readWholeFile(file), many);
    writer.join();
}

TEST_F(AtomicFile, ARegularFileIsAskedForAndNoPipeDeviceOrFolderWaitedFor) {
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    for (const auto& path : {file, fs::path("/dev/zero"), folder.path()}) {
        EXPECT_EQ(failureOf([&] { (void)readRegularFile(path); }),
                  path.string() + ": cannot be read: it is not a regular file");
    }
}

}  // namespace
}  // namespace quillo
