// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quillo {

/// How a run of the program ends, in the numbers that shell programs agree on. A run that did what it was
/// asked to ends with 0.
inline constexpr int exitSuccess = 0;
inline constexpr int exitBadPreset = 1;  ///< `check`: the preset is damaged, or cannot run
inline constexpr int exitAdvice = 1;     ///< `check --strict`: a rule may be a mistake
inline constexpr int exitDifferent = 1;  ///< `diff`, `test`: what leaves is not the same, or not as expected
inline constexpr int exitTrouble = 2;    ///< `diff`, `test`: a file cannot be read or written, or is damaged
inline constexpr int exitUsage = 64;     ///< wrong arguments
inline constexpr int exitBadData = 65;   ///< an input file is damaged
inline constexpr int exitNoInput = 66;   ///< an input file cannot be read
inline constexpr int exitUnavailable = 69;  ///< what the program works with is not there: a server, a display
inline constexpr int exitFatal = 70;        ///< a fatal error of the unit
inline constexpr int exitCannotCreate = 73;  ///< the output cannot be written, or is there already

/// Ends a verb: the text is for the user, the status for the shell.
class CommandFailure : public std::runtime_error {
public:
    CommandFailure(int status, const std::string& text) : std::runtime_error(text), status_(status) {}

    [[nodiscard]] int status() const { return status_; }

private:
    int status_;
};

/// The arguments are wrong; the user is shown how the verb is used.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Runs a program's `command` and returns its exit status. What the command throws is reported on `err`
/// behind the program's name, and the status that goes with it is returned; after a wrong command line,
/// `teach` writes how to use the program.
int reportErrors(std::string_view program, std::ostream& err, const std::function<int()>& command,
                 const std::function<void()>& teach);

}  // namespace quillo
