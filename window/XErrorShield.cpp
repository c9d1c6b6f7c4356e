// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/XErrorShield.hpp"

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

namespace {

/// The handlers are the process's, and so is what is known of them. Ours may be installed already:
/// another component that saved them has restored them after the last shield was gone.
int shields = 0;
XErrorHandler hostErrorHandler = nullptr;
XIOErrorHandler hostBrokenConnectionHandler = nullptr;

bool isToolkits(Display* display) {
    return display == XErrorShield::juceConnection();
}

int passOver(Display* display, XErrorEvent* error) {
    return isToolkits(display) ? 0 : hostErrorHandler(display, error);
}

int passOverBrokenConnection(Display* display) {
    return isToolkits(display) ? 0 : hostBrokenConnectionHandler(display);
}

/// In the place of what ends the process after a connection broke.
void stay(Display* /*display*/, void* /*unused*/) {}

}  // namespace

void* XErrorShield::juceConnection() {
    const auto* system = juce::XWindowSystem::getInstanceWithoutCreating();
    return system != nullptr ? system->getDisplay() : nullptr;
}

XErrorShield::XErrorShield() {
    if (shields++ == 0) {
        if (const auto before = XSetErrorHandler(passOver); before != passOver) {
            hostErrorHandler = before;
        }
        if (const auto before = XSetIOErrorHandler(passOverBrokenConnection);
            before != passOverBrokenConnection) {
            hostBrokenConnectionHandler = before;
        }
    }
    if (auto* display = static_cast<Display*>(juceConnection())) {
        XSetIOErrorExitHandler(display, stay, nullptr);
    }
}

XErrorShield::~XErrorShield() {
    if (auto* display = static_cast<Display*>(juceConnection())) {
        XSync(display, False);
    }
    if (--shields > 0) {
        return;
    }
    if (const auto current = XSetErrorHandler(hostErrorHandler); current != passOver) {
        XSetErrorHandler(current);
    }
    if (const auto current = XSetIOErrorHandler(hostBrokenConnectionHandler);
        current != passOverBrokenConnection) {
        XSetIOErrorHandler(current);
    }
}

}  // namespace quillo
