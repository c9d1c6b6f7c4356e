// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hosts/clap/CLAPIdleTimer.hpp"
#include "hosts/clap/CLAPInstance.hpp"
#include "window/EmbeddedEditor.hpp"

namespace quillo {

/// An instance's editor in the host's window, and what makes it run. [main]
struct CLAPEditor {
    explicit CLAPEditor(CLAPInstance& instance) : view(instance.session), timer(instance.host) {}

    EmbeddedEditor view;
    CLAPIdleTimer timer;
};

}  // namespace quillo
