// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

/// The keyboard of a host in whose window the editor lives. The editor has it only while one of its views asks
/// for keys; everything else that is typed is the host's, such as the space bar that starts its transport.
///
/// The toolkit takes the keyboard at every click, and cannot be told not to: so it is given back afterwards. A
/// window under the mouse gets keys even then, in hosts whose own window has the keyboard: those that the
/// editor has no use for are handed on.
///
/// Windows are those of the toolkit's connection; used under an `XErrorShield`. The user-interface thread.
class HostKeyboard {
public:
    /// `window` is the editor's, inside the host's window `parent`.
    HostKeyboard(std::uintptr_t window, std::uintptr_t parent) : window_(window), parent_(parent) {}

    /// Before the toolkit takes its events: whose the keyboard is now.
    void noteOwner();

    /// After the toolkit took its events: gives the keyboard back if the toolkit took it, and no view asks for
    /// keys.
    void settle(bool viewAsksForKeys);

    /// Presses and releases a key in the host's window.
    void handOn(const juce::KeyPress& key) const;

private:
    [[nodiscard]] std::uintptr_t owner() const;

    std::uintptr_t window_;
    std::uintptr_t parent_;
    std::uintptr_t ownerBefore_ = 0;
    std::uintptr_t borrowedFrom_ = 0;  ///< 0 while the toolkit has not taken the keyboard
};

}  // namespace quillo
