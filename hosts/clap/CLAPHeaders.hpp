// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The C interface of CLAP, wherever the system keeps it: whole, or without the header that gathers the
/// others.
#if __has_include(<clap/clap.h>)
#include <clap/clap.h>
#else
#include <clap/entry.h>
#include <clap/events.h>
#include <clap/ext/gui.h>
#include <clap/ext/note-ports.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>
#include <clap/host.h>
#include <clap/plugin-factory.h>
#include <clap/plugin.h>
#include <clap/process.h>
#include <clap/stream.h>
#endif
