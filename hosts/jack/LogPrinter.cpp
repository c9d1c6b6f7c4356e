// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LogPrinter.hpp"

#include <poll.h>

#include <climits>
#include <ostream>
#include <sstream>
#include <string_view>

#include "words/MessageWords.hpp"

namespace quillo {

namespace {

using Direction = LogTape::Direction;

LogCallback::Function recordOn(LogTape& tape, Direction direction) {
    return [&tape, direction](const EventLogEntry& entry) QUILLO_REALTIME { tape.record(direction, entry); };
}

}  // namespace

void LogPrinter::listenTo(LogCallback& input, LogCallback& output) {
    input.also(recordOn(tape_, Direction::in));
    output.also(recordOn(tape_, Direction::out));
}

void LogPrinter::print(std::chrono::milliseconds patience) {
    printText(patience);
    if (text_.empty()) {
        text_ = takeTape();
        printText(patience);
    }
}

std::string LogPrinter::takeTape() {
    std::ostringstream text;
    const auto contents = tape_.takeAll();
    for (const auto& [direction, entry] : contents.records) {
        text << (direction == Direction::in ? "in  " : "out ") << traceLine(entry) << '\n';
    }
    if (contents.lost > 0) {
        text << "    " << contents.lost << " entries came too fast and are missing here\n";
    }
    return std::move(text).str();
}

/// A pipe that has room takes this much without waiting.
void LogPrinter::printText(std::chrono::milliseconds patience) {
    std::size_t printed = 0;
    while (printed < text_.size() && hasRoom(patience)) {
        const auto piece = std::string_view(text_).substr(printed, PIPE_BUF);
        out_ << piece << std::flush;
        printed += piece.size();
    }
    text_.erase(0, printed);
}

bool LogPrinter::hasRoom(std::chrono::milliseconds patience) const {
    pollfd watched{descriptor_, POLLOUT, 0};
    return descriptor_ < 0 || ::poll(&watched, 1, static_cast<int>(patience.count())) > 0;
}

}  // namespace quillo
