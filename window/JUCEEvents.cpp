// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/JUCEEvents.hpp"

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include <juce_events/native/juce_linux_EventLoopInternal.h>

#include "window/XErrorShield.hpp"

namespace juce {
/// Of JUCE's own hosts, for whose use it declares it: does what waits, once. False when nothing did.
bool dispatchNextMessageOnSystemQueue(bool returnIfNoPendingMessages);
}  // namespace juce

namespace quillo {

namespace {

constexpr int mostRounds = 100;

/// JUCE looks for events where the connection arrives. A thread that waits for an answer of the server takes
/// events from there too, and keeps them: JUCE would not see these until the next one comes.
bool dispatchEventsThatWereTaken() {
    auto* display = static_cast<Display*>(XErrorShield::juceConnection());
    if (display == nullptr || XEventsQueued(display, QueuedAlready) == 0) {
        return false;
    }
    juce::LinuxEventLoopInternal::invokeEventLoopCallbackForFd(ConnectionNumber(display));
    return true;
}

}  // namespace

void dispatchJUCEEvents() {
    for (int round = 0; round < mostRounds; ++round) {
        const bool taken = dispatchEventsThatWereTaken();
        if (!juce::dispatchNextMessageOnSystemQueue(true) && !taken) {
            return;
        }
    }
}

}  // namespace quillo
