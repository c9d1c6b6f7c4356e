// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

#include "hosts/jack/LogTape.hpp"
#include "log/LogCallback.hpp"
#include "platform/Descriptor.hpp"

namespace quillo {

/// Prints both logs, an entry a line, as they come: "in  [480] 90 3c 64    note-on 60 (C3), ...". A pipe or a
/// terminal that stands still keeps nobody waiting; its reader is told how many entries are missing. Only a
/// terminal that is another user's, as after `su`, may: it cannot be opened for that. [main]
class LogPrinter {
public:
    /// `descriptor` is where `out` writes to; -1 when it never has to wait.
    explicit LogPrinter(std::ostream& out, int descriptor = -1) : out_(out), descriptor_(descriptor) {}

    /// Listens from now on, besides those who do already. Nothing must be rendered after the printer is gone.
    void listenTo(LogCallback& input, LogCallback& output);

    /// Prints what has come since the last call, or since the reader took the last line; it has so long for
    /// each piece, and gets the rest with the next call.
    void print(std::chrono::milliseconds patience = {});

private:
    static constexpr std::size_t capacity = 16384;

    [[nodiscard]] std::string takeTape();
    void printText(std::chrono::milliseconds patience);
    [[nodiscard]] bool hasRoom(std::chrono::milliseconds patience) const;
    std::size_t printPiece(std::string_view piece);

    std::ostream& out_;
    const int descriptor_;
    Descriptor terminal_;  ///< when `out` writes to one that may be opened
    std::string text_;     ///< that is not printed yet
    LogTape tape_{capacity};
};

}  // namespace quillo
