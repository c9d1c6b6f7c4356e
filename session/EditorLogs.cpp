// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/EditorLogs.hpp"

namespace quillo {

EditorLogs::EditorLogs(LogCallback& input, LogCallback& output) {
    input = [mailbox = input_](const EventLogEntry& entry) { mailbox->post(entry); };
    output = [mailbox = output_](const EventLogEntry& entry) { mailbox->post(entry); };
}

void EditorLogs::moveTo(QuilloModel& model) const {
    model.appendToInLog(input_->takeAll());
    model.appendToOutLog(output_->takeAll());
}

}  // namespace quillo
