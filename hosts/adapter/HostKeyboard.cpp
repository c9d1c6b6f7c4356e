// SPDX-License-Identifier: GPL-3.0-or-later
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include "hosts/adapter/HostKeyboard.hpp"

#include "hosts/adapter/XErrorShield.hpp"

namespace quillo {

namespace {

/// The type of the event; the toolkit takes X's name for it away.
constexpr int keyPressEvent = 2;

/// The key symbol of one of the toolkit's key codes: a character, or the low byte of another key's symbol.
KeySym symbolOf(int keyCode) {
    constexpr int otherKey = 0x10000000;
    constexpr int firstCharacter = 0x20;
    constexpr int latinEnd = 0x100;
    constexpr KeySym otherSymbols = 0xFF00;
    constexpr KeySym unicodeSymbols = 0x01000000;
    const auto symbol = static_cast<KeySym>(keyCode);
    if ((keyCode & otherKey) != 0 || keyCode < firstCharacter) {
        return otherSymbols | (symbol & 0xFF);
    }
    return keyCode < latinEnd ? symbol : unicodeSymbols | symbol;
}

Display* connection() {
    return static_cast<Display*>(XErrorShield::toolkitConnection());
}

unsigned stateOf(juce::ModifierKeys modifiers) {
    return (modifiers.isShiftDown() ? ShiftMask : 0U) | (modifiers.isCtrlDown() ? ControlMask : 0U) |
           (modifiers.isAltDown() ? Mod1Mask : 0U);
}

}  // namespace

std::uintptr_t HostKeyboard::owner() const {
    Window focused = 0;
    int revertTo = 0;
    XGetInputFocus(connection(), &focused, &revertTo);
    return focused;
}

void HostKeyboard::noteOwner() {
    ownerBefore_ = owner();
}

void HostKeyboard::settle(bool viewAsksForKeys) {
    if (owner() != window_) {
        return;
    }
    if (ownerBefore_ != window_) {
        borrowedFrom_ = ownerBefore_;
    }
    if (borrowedFrom_ != 0 && !viewAsksForKeys) {
        XSetInputFocus(connection(), borrowedFrom_, RevertToParent, CurrentTime);
        borrowedFrom_ = 0;
    }
}

void HostKeyboard::handOn(const juce::KeyPress& key) const {
    auto* display = connection();
    XEvent event{};
    event.xkey.display = display;
    event.xkey.window = parent_;
    event.xkey.root = DefaultRootWindow(display);
    event.xkey.subwindow = window_;
    event.xkey.time = CurrentTime;
    event.xkey.state = stateOf(key.getModifiers());
    event.xkey.keycode = XKeysymToKeycode(display, symbolOf(key.getKeyCode()));
    event.xkey.same_screen = True;
    event.xkey.type = keyPressEvent;
    XSendEvent(display, parent_, True, KeyPressMask, &event);
    event.xkey.type = KeyRelease;
    XSendEvent(display, parent_, True, KeyReleaseMask, &event);
}

}  // namespace quillo
