// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace quillo {

/// Ends a verb: the text is what the user is told, the status what the shell is.
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

}  // namespace quillo
