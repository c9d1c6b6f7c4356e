// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillo {

/// Keeps what the server's library would write to standard error for as long as this lives; without one its
/// words are dropped: the program has its own. One at a time. [main]
class LibraryMessages {
public:
    /// [before any client] Makes the library speak to nobody else.
    static void silenceLibrary();

    LibraryMessages();
    ~LibraryMessages();
    LibraryMessages(const LibraryMessages&) = delete;
    LibraryMessages& operator=(const LibraryMessages&) = delete;

    /// What it has said, one message a line, each behind `indent`.
    [[nodiscard]] std::string lines(const std::string& indent) const;
};

}  // namespace quillo
