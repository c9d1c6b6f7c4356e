// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

/// The keyboard of a host in whose window the editor lives. The editor has it only while one of its views
/// asks for keys; everything else that is typed is the host's, such as the space bar that starts its
/// transport.
///
/// JUCE takes the keyboard at every click, and cannot be kept from it: so it is given back afterwards. A
/// window under the mouse gets keys even then, in hosts whose own window has the keyboard: those that the
/// editor has no use for are handed on.
///
/// JUCE has one connection for all windows of the process, and takes the events of all of them in the turn of
/// any: so what is done before and after is done for all.
///
/// Windows are those of JUCE's connection; used under an `XErrorShield`. The user-interface thread.
class HostKeyboard {
public:
    /// `window` is the editor's, inside the host's window `parent`. `viewAsksForKeys` is called after JUCE
    /// took its events.
    HostKeyboard(std::uintptr_t window, std::uintptr_t parent, std::function<bool()> viewAsksForKeys);
    ~HostKeyboard();
    HostKeyboard(const HostKeyboard&) = delete;
    HostKeyboard& operator=(const HostKeyboard&) = delete;

    /// Whether the editor may use a key that came to its window and that nothing in it has used. Not Tab,
    /// which would let the keyboard in, while it came by the mouse's place only.
    [[nodiscard]] static bool mayUse(const juce::ComponentPeer& window, const juce::KeyPress& key);

    /// Before JUCE takes its events: whose the keyboard is now.
    static void noteOwner();

    /// After JUCE took its events: gives the keyboard back if JUCE took it for a window in which no view
    /// asks for keys.
    static void settle();

    /// Presses and releases a key in the host's window.
    void handOn(const juce::KeyPress& key) const;

private:
    [[nodiscard]] static const HostKeyboard* ofWindow(std::uintptr_t window);

    std::uintptr_t window_;
    std::uintptr_t parent_;
    std::function<bool()> viewAsksForKeys_;
};

}  // namespace quillo
