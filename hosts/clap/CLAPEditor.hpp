// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hosts/adapter/EmbeddedEditor.hpp"
#include "hosts/clap/CLAPIdleTimer.hpp"
#include "hosts/clap/CLAPInstance.hpp"

namespace quillo {

/// An instance's editor in the host's window, and what makes it run. [main]
struct CLAPEditor {
    explicit CLAPEditor(CLAPInstance& instance) : view(instance.hosted), timer(instance.host) {}

    EmbeddedEditor view;
    CLAPIdleTimer timer;
};

}  // namespace quillo
