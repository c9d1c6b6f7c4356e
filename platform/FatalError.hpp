// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <source_location>
#include <stdexcept>
#include <string>

namespace quillo {

/// A state that the system must never reach. Its text begins with "Fatal error" and names the source file
/// and line: `Fatal error: negative delay (RuleCompiler.cpp:31)`.
///
/// Each host decides what it means: a program of our own prints it and exits with status 70; inside somebody
/// else's process the adapter reports the operation as failed and goes on with what the user had.
class FatalError : public std::runtime_error {
public:
    FatalError(const std::string& message, const std::source_location& where);
};

/// The one way to stop. Not for the render thread, where nothing is thrown: see `FatalErrorSlot`.
[[noreturn]] void fatalError(const std::string& message,
                             const std::source_location& where = std::source_location::current());

}  // namespace quillo
