// SPDX-License-Identifier: GPL-3.0-or-later
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include "window/HostKeyboard.hpp"

#include <algorithm>
#include <utility>
#include <vector>

#include "window/XErrorShield.hpp"

namespace quillo {

namespace {

/// The type of the event; JUCE takes X's name for it away.
constexpr int keyPressEvent = 2;

/// The key symbol of one of JUCE's key codes: a character, or the low byte of another key's symbol.
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
    return static_cast<Display*>(XErrorShield::juceConnection());
}

/// The key of the number pad that types this sign, or 0. JUCE calls its minus a soft hyphen.
KeyCode padKeyOf(int sign) {
    switch (sign) {
    case '+': return XKeysymToKeycode(connection(), XK_KP_Add);
    case XK_hyphen: return XKeysymToKeycode(connection(), XK_KP_Subtract);
    case '*': return XKeysymToKeycode(connection(), XK_KP_Multiply);
    case '/': return XKeysymToKeycode(connection(), XK_KP_Divide);
    default: return 0;
    }
}

/// JUCE calls the keys of the number pad by what they type: where no other key types that with these
/// modifiers, it is one of them.
KeyCode keyOf(const juce::KeyPress& key) {
    const auto symbol = symbolOf(key.getKeyCode());
    const auto code = XKeysymToKeycode(connection(), symbol);
    const auto padKey = padKeyOf(key.getKeyCode());
    const int level = key.getModifiers().isShiftDown() ? 1 : 0;
    return padKey == 0 || XkbKeycodeToKeysym(connection(), code, 0, level) == symbol ? code : padKey;
}

unsigned stateOf(juce::ModifierKeys modifiers) {
    return (modifiers.isShiftDown() ? ShiftMask : 0U) | (modifiers.isCtrlDown() ? ControlMask : 0U) |
           (modifiers.isAltDown() ? Mod1Mask : 0U);
}

/// Those of the windows that are open.
std::vector<HostKeyboard*> keyboards;

/// Whose the keyboard was before JUCE took its events.
std::uintptr_t ownerBefore = 0;

/// Whose the keyboard is while one of our windows has it: 0 while none has, or the host itself gave it to
/// one.
std::uintptr_t borrowedFrom = 0;

std::uintptr_t ownerNow() {
    Window focused = 0;
    int revertTo = 0;
    XGetInputFocus(connection(), &focused, &revertTo);
    return focused;
}

}  // namespace

HostKeyboard::HostKeyboard(std::uintptr_t window, std::uintptr_t parent,
                           std::function<bool()> viewAsksForKeys)
    : window_(window), parent_(parent), viewAsksForKeys_(std::move(viewAsksForKeys)) {
    keyboards.push_back(this);
}

HostKeyboard::~HostKeyboard() {
    std::erase(keyboards, this);
}

bool HostKeyboard::mayUse(const juce::ComponentPeer& window, const juce::KeyPress& key) {
    return !key.isKeyCode(juce::KeyPress::tabKey) || window.isFocused();
}

void HostKeyboard::noteOwner() {
    if (!keyboards.empty()) {
        ownerBefore = ownerNow();
    }
}

void HostKeyboard::settle() {
    const auto owner = keyboards.empty() ? 0 : ownerNow();
    const auto* taker = ofWindow(owner);
    if (taker == nullptr) {
        borrowedFrom = 0;
        return;
    }
    if (ofWindow(ownerBefore) == nullptr) {
        borrowedFrom = ownerBefore;
    }
    if (borrowedFrom != 0 && !taker->viewAsksForKeys_()) {
        XSetInputFocus(connection(), borrowedFrom, RevertToParent, CurrentTime);
        borrowedFrom = 0;
    }
}

/// Null for a window that is not ours.
const HostKeyboard* HostKeyboard::ofWindow(std::uintptr_t window) {
    const auto found = std::ranges::find(keyboards, window, &HostKeyboard::window_);
    return found == keyboards.end() ? nullptr : *found;
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
    event.xkey.keycode = keyOf(key);
    event.xkey.same_screen = True;
    event.xkey.type = keyPressEvent;
    XSendEvent(display, parent_, True, KeyPressMask, &event);
    event.xkey.type = KeyRelease;
    XSendEvent(display, parent_, True, KeyReleaseMask, &event);
}

}  // namespace quillo
