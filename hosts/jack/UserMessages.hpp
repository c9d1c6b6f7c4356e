// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <iosfwd>
#include <string>

#include "session/Session.hpp"

namespace quillo {

/// The messages of the program to its user while it runs. [main]
class UserMessages {
public:
    UserMessages(std::ostream& err, Session& session) : err_(err), session_(session) {}

    /// A line on the error stream.
    void say(const std::string& text);

    /// The same, and an alert in the editor: for what must not be overlooked.
    void warn(const std::string& text);

    /// Takes this alert away if the user has not dismissed it: it no longer holds.
    void takeBack(const std::string& text);

private:
    std::ostream& err_;
    Session& session_;
};

}  // namespace quillo
