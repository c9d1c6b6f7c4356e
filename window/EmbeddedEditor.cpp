// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/EmbeddedEditor.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/EditorShell.hpp"
#include "editor/Fonts.hpp"
#include "window/HostKeyboard.hpp"
#include "window/JUCEEvents.hpp"
#include "window/XErrorShield.hpp"

namespace quillo {

namespace {

/// In pixels: the window system's lengths have 16 bits, and their sign.
constexpr std::uint32_t greatestLength = 32767;

/// What JUCE needs around every use in a host's process: the thread that the host uses now is its own.
class Turn {
public:
    Turn() { juce::MessageManager::getInstance()->setCurrentThreadAsMessageThread(); }

private:
    XErrorShield shield_;
};

std::uint32_t pixels(double points, double scale) {
    return static_cast<std::uint32_t>(std::lround(std::min(points * scale, double{greatestLength})));
}

/// As many points as it takes to cover the pixels.
int pointsCovering(std::uint32_t length, double scale) {
    constexpr double tolerance = 1e-6;
    return static_cast<int>(std::ceil(length / scale - tolerance));
}

/// What fills the host's window: the view, as large as its points are on this screen.
class Window final : public juce::Component {
public:
    Window(EditorUnit& unit, double scale) : shell_(unit), scale_(scale) {
        setOpaque(true);
        addAndMakeVisible(view_);
        // A view is made in the size that it should open with.
        setSize({pixels(view_.getWidth(), scale), pixels(view_.getHeight(), scale)});
    }

    void attachTo(std::uintptr_t parent) {
        removeFromDesktop();
        addToDesktop(juce::ComponentPeer::windowIsResizable, std::bit_cast<void*>(parent));
        keyboard_.emplace(handle(), parent, [this] { return view_.hasKeyboardFocus(true); });
    }

    [[nodiscard]] EditorShell& shell() { return shell_; }

    [[nodiscard]] std::uintptr_t handle() const {
        return getPeer() != nullptr ? reinterpret_cast<std::uintptr_t>(getPeer()->getNativeHandle()) : 0;
    }

    [[nodiscard]] double scale() const { return scale_; }
    void setScale(double scale) {
        scale_ = scale;
        resized();
    }

    [[nodiscard]] EmbeddedEditor::Size size() const {
        const auto scale = juceScale();
        return {pixels(getWidth(), scale), pixels(getHeight(), scale)};
    }
    void setSize(EmbeddedEditor::Size size) {
        const auto scale = juceScale();
        Component::setSize(pointsCovering(size.width, scale), pointsCovering(size.height, scale));
    }

    void resized() override {
        const auto [width, height] = size();
        view_.setTransform(juce::AffineTransform::scale(static_cast<float>(scale_ / juceScale())));
        view_.setBounds(0, 0, pointsCovering(width, scale_), pointsCovering(height, scale_));
    }

    /// A key that nothing in the view has used. Tab then moves the focus, which is JUCE's doing; while
    /// nothing has the focus it enters the view.
    bool keyPressed(const juce::KeyPress& key) override {
        if (key.isKeyCode(juce::KeyPress::tabKey) && view_.hasKeyboardFocus(true)) {
            return false;
        }
        const bool isUsed = HostKeyboard::mayUse(*getPeer(), key) && view_.keyPressed(key);
        if (!isUsed && keyboard_) {
            keyboard_->handOn(key);
        }
        return true;
    }

private:
    /// How many pixels JUCE takes for one unit of length.
    [[nodiscard]] double juceScale() const {
        return getPeer() != nullptr ? getPeer()->getPlatformScaleFactor() : 1.0;
    }

    EditorShell shell_;
    QuilloView& view_ = shell_.view();
    double scale_;
    std::optional<HostKeyboard> keyboard_;
};

}  // namespace

class EmbeddedEditor::Implementation {
public:
    Implementation(EditorUnit& unit, double scale) : window_(unit, scale) {}

    [[nodiscard]] Window& window() { return window_; }

private:
    juce::ScopedJuceInitialiser_GUI juce_;
    Window window_;
};

std::optional<std::string> EmbeddedEditor::whyNot() {
    const juce::ScopedJuceInitialiser_GUI juceRuntime;
    const Turn turn;
    if (juce::Desktop::getInstance().getDisplays().displays.isEmpty()) {
        return "There is no display to open the editor on.";
    }
    if (const auto missing = requireTypefaces(); missing.isNotEmpty()) {
        return missing.toStdString();
    }
    return std::nullopt;
}

EmbeddedEditor::EmbeddedEditor(EditorUnit& unit, double scale) {
    const Turn turn;
    implementation_ = std::make_unique<Implementation>(unit, scale);
}

EmbeddedEditor::~EmbeddedEditor() {
    const Turn turn;
    implementation_.reset();
}

void EmbeddedEditor::attachTo(std::uintptr_t parentWindow) {
    const Turn turn;
    implementation_->window().attachTo(parentWindow);
}

std::uintptr_t EmbeddedEditor::window() const {
    return implementation_->window().handle();
}

void EmbeddedEditor::setVisible(bool visible) {
    const Turn turn;
    implementation_->window().setVisible(visible);
}

void EmbeddedEditor::setScale(double scale) {
    const Turn turn;
    auto& window = implementation_->window();
    const auto [width, height] = window.size();
    const auto factor = scale / window.scale();
    window.setScale(scale);
    window.setSize(nearestTo({pixels(width, factor), pixels(height, factor)}));
}

EmbeddedEditor::Size EmbeddedEditor::size() const {
    return implementation_->window().size();
}

void EmbeddedEditor::setSize(Size size) {
    const Turn turn;
    implementation_->window().setSize(size);
}

EmbeddedEditor::Size EmbeddedEditor::nearestTo(Size size) const {
    const auto least = pixels(EditorShell::leastLength, implementation_->window().scale());
    return {std::clamp(size.width, least, greatestLength), std::clamp(size.height, least, greatestLength)};
}

void EmbeddedEditor::idle() {
    const Turn turn;
    HostKeyboard::noteOwner();
    implementation_->window().shell().attempt(dispatchJUCEEvents);
    HostKeyboard::settle();
}

}  // namespace quillo
