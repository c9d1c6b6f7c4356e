// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "log/EventMailbox.hpp"
#include "log/LogCallback.hpp"
#include "session/QuilloModel.hpp"

namespace quillo {

/// The way of the two logs from the render thread to the editor's model. [main]
class EditorLogs {
public:
    /// From now on what `input` and `output` report is kept, in the place of what they did before. They may
    /// be called for longer than this object lives.
    EditorLogs(LogCallback& input, LogCallback& output);

    /// Appends what was reported in the blocks that have ended since the last call to the model's logs.
    void moveTo(QuilloModel& model) const;

private:
    std::shared_ptr<EventMailbox> input_ = std::make_shared<EventMailbox>();
    std::shared_ptr<EventMailbox> output_ = std::make_shared<EventMailbox>();
};

}  // namespace quillo
