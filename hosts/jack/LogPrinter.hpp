// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <iosfwd>

#include "hosts/jack/LogTape.hpp"
#include "log/LogCallback.hpp"

namespace quillo {

/// Prints both logs, an entry a line, as they come: "in  [480] 90 3c 64    note-on 60 (C3), ...". [main]
class LogPrinter {
public:
    explicit LogPrinter(std::ostream& out) : out_(out) {}

    /// Listens from now on, besides those who do already. Nothing must be rendered after the printer is gone.
    void listenTo(LogCallback& input, LogCallback& output);

    /// Prints what has come since the last call. Nothing more is printed once the stream has failed.
    void print();

private:
    static constexpr std::size_t capacity = 16384;

    std::ostream& out_;
    LogTape tape_{capacity};
};

}  // namespace quillo
