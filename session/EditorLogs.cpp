// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/EditorLogs.hpp"

namespace quillo {

namespace {

void collect(LogCallback& log, const std::shared_ptr<EventMailbox>& mailbox) {
    log.listen([mailbox](const EventLogEntry& entry) QUILLO_REALTIME { mailbox->post(entry); },
               [mailbox]() QUILLO_REALTIME { mailbox->handOver(); });
}

}  // namespace

EditorLogs::EditorLogs(LogCallback& input, LogCallback& output) {
    collect(input, input_);
    collect(output, output_);
}

void EditorLogs::moveTo(QuilloModel& model) const {
    model.appendToInLog(input_->takeAll());
    model.appendToOutLog(output_->takeAll());
}

}  // namespace quillo
