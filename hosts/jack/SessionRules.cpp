// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SessionRules.hpp"

#include <array>
#include <ctime>
#include <exception>
#include <utility>

#include "commandline/CommandFailure.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"
#include "words/PlainWords.hpp"

namespace quillo {

namespace {

std::string localTime(std::chrono::system_clock::time_point time) {
    const auto seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    std::array<char, 32> text{};
    ::localtime_r(&seconds, &parts);
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &parts)};
}

std::string contentsOf(const SessionFiles::Version& version) try {
    return countInPlainWords(version.read());
} catch (const std::exception& error) {
    return "damaged: " + escaped(wordsOf(error));
}

}  // namespace

void SessionRules::keepIn(const std::optional<std::filesystem::path>& folder, const std::string& name) {
    if (!folder) {
        messages_.warn("Neither XDG_STATE_HOME nor HOME is set: changed rules are not kept.");
        return;
    }
    try {
        claim(*folder, name);
    } catch (const FileError& error) {
        messages_.warn(std::string("Changed rules are not kept: ") + error.what());
    }
}

void SessionRules::claim(const std::filesystem::path& folder, const std::string& name) {
    auto session = name;
    for (int number = 2; !lock_; ++number) {
        files_.emplace(folder, session);
        files_->makeFolder();
        lock_ = SessionLock::tryTake(files_->lockFile());
        if (lock_) {
            files_->removeLeftovers();
            keeper_.emplace(*files_, [this] { return session_.save(); });
        } else {
            session = name + "-" + std::to_string(number);
        }
    }
    if (session != name) {
        messages_.say("another " + inQuotes(name) + " is running; this one keeps its rules as " +
                      inQuotes(session));
    }
}

std::optional<std::filesystem::path> SessionRules::file() const {
    return keeper_ ? std::optional(files_->file(0)) : std::nullopt;
}

void SessionRules::load() {
    if (!files_) {
        return;
    }
    std::string problems;
    for (const auto& version : files_->versions()) {
        if (const auto problem = tryToUse(version)) {
            problems += *problem + '\n';
            continue;
        }
        if (!problems.empty()) {
            messages_.warn(problems + "The rules are those of " + localTime(version.saved) + ", from " +
                           escaped(version.file.string()) + ".");
        }
        return;
    }
    if (!problems.empty()) {
        messages_.warn(problems +
                       "No version of the last session's rules can be used: there are no rules now.");
    }
}

/// No editor is open yet: the first one shows them.
std::optional<std::string> SessionRules::tryToUse(const SessionFiles::Version& version) try {
    auto [rules, shelf] = version.read();
    session_.install(std::move(rules), std::move(shelf));
    return std::nullopt;
} catch (const std::exception& error) {
    return "The last session's rules in " + escaped(version.file.string()) +
           " cannot be used: " + wordsOf(error);
}

void SessionRules::goBack(std::size_t versions) {
    if (!files_) {
        throw CommandFailure(exitNoInput, "there is no session to go back in");
    }
    for (const auto& version : files_->versions()) {
        if (version.age != versions) {
            continue;
        }
        if (const auto problem = tryToUse(version)) {
            messages_.warn(*problem);
            throw CommandFailure(exitBadData, "--history lists the versions that can be used");
        }
        return;
    }
    throw CommandFailure(exitNoInput, escaped(files_->file(versions).string()) +
                                          ": there is no such version; --history lists them");
}

void SessionRules::changed(SessionKeeper::Time now) {
    if (keeper_) {
        keeper_->changed(now);
    }
}

void SessionRules::keepUp(SessionKeeper::Time now) {
    if (keeper_) {
        tell(keeper_->keepUp(now));
    }
}

void SessionRules::keepBeforehand(SessionKeeper::Time now) {
    if (keeper_) {
        tell(keeper_->keepBeforehand(now));
    }
}

void SessionRules::keepNow(SessionKeeper::Time now) {
    if (keeper_) {
        tell(keeper_->keepNow(now));
    }
}

void SessionRules::tell(const std::optional<std::string>& problem) {
    if (problem) {
        messages_.warn(*problem);
    }
}

std::string historyText(const SessionFiles& files) {
    std::string text;
    for (const auto& version : files.versions()) {
        text += (version.age == 0 ? "    newest" : "--go-back " + std::to_string(version.age)) + "   " +
                localTime(version.saved) + "   " + contentsOf(version) + "   " +
                escaped(version.file.string()) + '\n';
    }
    return text.empty() ? "No rules have been kept yet.\n" : text;
}

}  // namespace quillo
