// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "hosts/clap/CLAPHeaders.hpp"
#include "hosts/clap/CLAPHost.hpp"
#include "hosts/clap/CLAPRenderer.hpp"
#include "session/Session.hpp"

namespace quillo {

struct CLAPEditor;

/// What an instance of the plug-in consists of, from the host's `init` until it is destroyed. [main]
struct CLAPInstance {
    /// The thread that makes it is the main thread. Throws what `Session` throws.
    explicit CLAPInstance(const clap_host_t& theHost);

    /// Has the host process again when there is something to do that it cannot know of.
    void wake();

    /// Does what there is to do, now that the host has called.
    void idle();

    CLAPHost host;
    Session session;
    CLAPRenderer renderer;

    /// While the host has a window open for it. Without JUCE there is never one.
    std::shared_ptr<CLAPEditor> editor;
};

}  // namespace quillo
