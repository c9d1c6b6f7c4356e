// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/UserMessages.hpp"

#include <gtest/gtest.h>

#include <sstream>

namespace quillo {
namespace {

TEST(UserMessages, WriteLinesThatDoNothingToTheTerminal) {
    std::ostringstream err;
    Session session;
    UserMessages messages(err, session);
    messages.say("hears \x1b[2J\u009b\u202e:out");
    messages.warn("JACK says:\n  \x1b]0;title\a");
    EXPECT_EQ(err.str(), "midi-quillo-jack: hears \\u001b[2J\\u009b\\u202e:out\n"
                         "midi-quillo-jack: JACK says:\n  \\u001b]0;title\\u0007\n");
}

}  // namespace
}  // namespace quillo
