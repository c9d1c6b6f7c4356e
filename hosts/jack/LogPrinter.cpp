// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LogPrinter.hpp"

#include <ostream>

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

void LogPrinter::print() {
    const auto contents = tape_.takeAll();
    for (const auto& [direction, entry] : contents.records) {
        out_ << (direction == Direction::in ? "in  " : "out ") << traceLine(entry) << '\n';
    }
    if (contents.lost > 0) {
        out_ << "    " << contents.lost << " entries came too fast and are missing here\n";
    }
    if (!contents.records.empty() || contents.lost > 0) {
        out_.flush();
    }
}

}  // namespace quillo
