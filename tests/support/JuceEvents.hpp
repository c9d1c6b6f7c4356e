// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <utility>

#include <juce_gui_basics/juce_gui_basics.h>

/// What a user does, sent through JUCE's own dispatch into the window around a view. Points are in the
/// view's coordinates. The clock is the tests' own: deeds are seconds apart, the clicks of one deed are not.
namespace quillo::test {

inline juce::int64 eventTime = 1'000'000;

inline void mouse(juce::Component& view, juce::Point<int> point, juce::ModifierKeys buttons) {
    auto* peer = view.getPeer();
    const auto inWindow = peer->getComponent().getLocalPoint(&view, point.toFloat());
    peer->handleMouseEvent(juce::MouseInputSource::InputSourceType::mouse, inWindow, buttons,
                           juce::MouseInputSource::defaultPressure,
                           juce::MouseInputSource::defaultOrientation, ++eventTime);
}

inline juce::Point<int> centre(const juce::Component& view) {
    return view.getLocalBounds().getCentre();
}

inline void moveMouse(juce::Component& view, juce::Point<int> point) {
    mouse(view, point, {});
}

/// Presses and releases the left button so many times in a row, while these keys are held.
inline void click(juce::Component& view, juce::Point<int> point, int times = 1,
                  juce::ModifierKeys held = {}) {
    eventTime += 5'000;
    const juce::Component::SafePointer<juce::Component> window(view.getTopLevelComponent());
    const auto inWindow = window->getLocalPoint(&view, point);
    moveMouse(*window, inWindow);
    const auto keysBefore = std::exchange(juce::ModifierKeys::currentModifiers, held);
    for (; times > 0 && window != nullptr; --times) {
        mouse(*window, inWindow, held.withFlags(juce::ModifierKeys::leftButtonModifier));
        mouse(*window, inWindow, held);
    }
    juce::ModifierKeys::currentModifiers = keysBefore;
}

inline void click(juce::Component& view) {
    click(view, centre(view));
}

/// Presses the left button and moves the mouse from point to point, without a release.
inline void dragAlong(juce::Component& view, const std::vector<juce::Point<int>>& points) {
    eventTime += 5'000;
    auto& window = *view.getTopLevelComponent();
    std::vector<juce::Point<int>> path;
    for (const auto point : points) {
        path.push_back(window.getLocalPoint(&view, point));
    }
    moveMouse(window, path.front());
    for (const auto point : path) {
        mouse(window, point, juce::ModifierKeys::leftButtonModifier);
        eventTime += 50;
    }
}

inline void release(juce::Component& window, juce::Point<int> point) {
    mouse(window, point, {});
}

/// Drags from a point to another one, on the way of which the mouse is seen in the middle, and lets go.
inline void drag(juce::Component& view, juce::Point<int> from, juce::Point<int> to) {
    const juce::Component::SafePointer<juce::Component> window(view.getTopLevelComponent());
    const auto end = window->getLocalPoint(&view, to);
    dragAlong(view, {from, (from + to) / 2, to});
    release(*window, end);
}

/// Turns the wheel over a point; away from the user is positive.
inline void wheel(juce::Component& view, juce::Point<int> point, float turn) {
    eventTime += 5'000;
    auto& window = *view.getTopLevelComponent();
    const auto inWindow = window.getLocalPoint(&view, point);
    moveMouse(window, inWindow);
    juce::MouseWheelDetails details{};
    details.deltaY = turn;
    window.getPeer()->handleMouseWheel(juce::MouseInputSource::InputSourceType::mouse, inWindow.toFloat(),
                                       ++eventTime, details);
}

inline void wheel(juce::Component& view, float turn) {
    wheel(view, centre(view), turn);
}

/// Presses a key in the window around a view; it goes to what has the keyboard focus there. True when it was
/// used.
inline bool key(juce::Component& view, const juce::KeyPress& press) {
    return view.getPeer()->handleKeyPress(press);
}

inline bool key(juce::Component& view, int code, juce::ModifierKeys modifiers = {}) {
    return key(view, juce::KeyPress(code, modifiers, code < 0x80 ? static_cast<juce::juce_wchar>(code) : 0));
}

/// Types a text, character by character.
inline void type(juce::Component& view, const juce::String& text) {
    for (auto character = text.getCharPointer(); !character.isEmpty(); ++character) {
        key(view, juce::KeyPress(static_cast<int>(*character), {}, *character));
    }
}

/// Lets JUCE do what it has put off.
inline void settle() {
    juce::MessageManager::getInstance()->runDispatchLoopUntil(1);
}

}  // namespace quillo::test
