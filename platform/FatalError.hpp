// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <source_location>
#include <stdexcept>
#include <string>

namespace quillo {

/// A state that the system must never reach. Its text begins with "Fatal error" and names the source file
/// and line: `Fatal error: negative delay (RuleCompiler.cpp:31)`.
///
/// Each host decides what it means: a program of our own says it in words and exits with status 70; inside
/// somebody else's process the plug-in reports the operation as failed and goes on with what the user had.
class FatalError : public std::runtime_error {
public:
    /// `remedy` is a sentence for the user: what to do about it.
    FatalError(const std::string& message, const std::source_location& where, const std::string& remedy = {});

    /// The same for a musician, without a source file: `A delay is negative: -1 ms. Type 0 or more.`, or,
    /// about a subject, `Rule 2 "Echo": a delay is negative: -1 ms. Type 0 or more.`
    [[nodiscard]] std::string inWords() const;

    /// The same error, whose `inWords` says what it is about.
    [[nodiscard]] FatalError about(const std::string& subject) const;

private:
    std::string message_;
    std::string remedy_;
    std::string subject_;
};

/// The one way to stop. Not for the render thread, where nothing is thrown: see `FatalErrorSlot`.
[[noreturn]] void fatalError(const std::string& message,
                             const std::source_location& where = std::source_location::current());

/// The same with a remedy.
[[noreturn]] void fatalError(const std::string& message, const std::string& remedy,
                             const std::source_location& where = std::source_location::current());

/// What an exception says to a musician: `inWords` of a fatal error, the text of any other.
[[nodiscard]] std::string wordsOf(const std::exception& error);

}  // namespace quillo
