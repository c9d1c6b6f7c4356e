// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LogPrinter.hpp"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <ostream>
#include <sstream>
#include <utility>

#include "words/MessageWords.hpp"

namespace quillo {

namespace {

using Direction = LogTape::Direction;

LogCallback::Function recordOn(LogTape& tape, Direction direction) {
    return [&tape, direction](const EventLogEntry& entry) QUILLO_REALTIME { tape.record(direction, entry); };
}

/// A terminal, opened once more for writes that wait for nothing: it says that there is room where there is
/// less than a line needs, and the description that the program was given is the shell's, too.
Descriptor openTerminal(int descriptor) {
    if (::isatty(descriptor) == 0) {
        return {};
    }
    const auto path = "/proc/self/fd/" + std::to_string(descriptor);
    return Descriptor(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

}  // namespace

void LogPrinter::listenTo(LogCallback& input, LogCallback& output) {
    terminal_ = openTerminal(descriptor_);
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

/// A pipe that has room takes pieces of this size without waiting.
void LogPrinter::printText(std::chrono::milliseconds patience) {
    std::size_t printed = 0;
    std::size_t taken = 1;
    while (printed < text_.size() && taken > 0 && hasRoom(patience)) {
        taken = printPiece(std::string_view(text_).substr(printed, PIPE_BUF));
        printed += taken;
    }
    text_.erase(0, printed);
}

bool LogPrinter::hasRoom(std::chrono::milliseconds patience) const {
    pollfd watched{descriptor_, POLLOUT, 0};
    return descriptor_ < 0 || ::poll(&watched, 1, static_cast<int>(patience.count())) > 0;
}

/// How much of it was taken.
std::size_t LogPrinter::printPiece(std::string_view piece) {
    if (!terminal_.isOpen()) {
        out_ << piece << std::flush;
        return piece.size();
    }
    const auto count = ::write(terminal_.number(), piece.data(), piece.size());
    return static_cast<std::size_t>(std::max<ssize_t>(count, 0));
}

}  // namespace quillo
