// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SessionKeeper.hpp"

#include <exception>
#include <utility>

#include "platform/AtomicFile.hpp"
#include "platform/FatalError.hpp"

namespace quillo {

namespace {

/// What the newest version holds; nothing when it is missing or cannot be read.
std::optional<Data> newestOf(const SessionFiles& files) try {
    return readRegularFile(files.file(0));
} catch (const FileError&) {
    return std::nullopt;
}

}  // namespace

SessionKeeper::SessionKeeper(SessionFiles files, std::function<Data()> read)
    : files_(std::move(files)), read_(std::move(read)) {}

void SessionKeeper::changed(Time now) {
    if (!firstUnsaved_) {
        firstUnsaved_ = now;
    }
    lastChange_ = now;
    failed_ = false;
}

std::optional<std::string> SessionKeeper::keepUp(Time now) {
    const bool isDue =
        firstUnsaved_ && (now - lastChange_ >= restBeforeSaving || now - *firstUnsaved_ >= longestUnsaved);
    return isDue ? keepBeforehand(now) : std::nullopt;
}

std::optional<std::string> SessionKeeper::keepBeforehand(Time now) {
    return failed_ ? std::nullopt : keepNow(now);
}

std::optional<std::string> SessionKeeper::keepNow(Time now) try {
    if (firstUnsaved_) {
        save(now);
        firstUnsaved_.reset();
        failed_ = false;
    }
    return std::nullopt;
} catch (const std::exception& error) {
    failed_ = true;
    return "The rules cannot be saved: " + wordsOf(error);
}

void SessionKeeper::save(Time now) {
    const auto document = read_();
    if (newestOf(files_) == document) {
        return;
    }
    if (versionBegan_ && now - *versionBegan_ < versionSpan) {
        files_.replaceNewest(document);
    } else {
        files_.add(document);
        versionBegan_ = now;
    }
}

}  // namespace quillo
