// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/UserMessages.hpp"

#include <ostream>

#include "platform/QuotedText.hpp"

namespace quillo {

void UserMessages::say(const std::string& text) {
    err_ << "midi-quillo-jack: " << escapedLines(text) << '\n' << std::flush;
}

void UserMessages::warn(const std::string& text) {
    say(text);
    session_.tellUser(text);
}

void UserMessages::takeBack(const std::string& text) {
    session_.takeBack(text);
}

}  // namespace quillo
