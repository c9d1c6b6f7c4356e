// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <exception>
#include <optional>
#include <source_location>
#include <stdexcept>
#include <string>

#include "platform/OSStatus.hpp"
#include "platform/RealTime.hpp"

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

/// Where the render thread leaves a fatal error: nothing is thrown there, so the error waits in this slot and
/// the render step returns `kQuilloErr_FatalError`. The host looks here after a cycle that did not return
/// `noErr`. The slot keeps the first error until it is raised.
class FatalErrorSlot {
public:
    /// [render] Keeps the error, unless one is waiting already, and returns `kQuilloErr_FatalError`.
    /// `message` must be a literal: only its address is kept.
    OSStatus set(const char* message,
                 std::source_location where = std::source_location::current()) QUILLO_REALTIME;

    /// [any] Whether an error waits.
    [[nodiscard]] bool isSet() const QUILLO_REALTIME;

    /// [any but render] The error that waits; nothing when none does.
    [[nodiscard]] std::optional<FatalError> error() const;

    /// [any, while no cycle runs] Empties the slot and throws the `FatalError` that waited in it; does
    /// nothing when none waits.
    void raise();

private:
    const char* message_ = nullptr;
    std::source_location where_;
    std::atomic<bool> set_{false};
};

}  // namespace quillo
