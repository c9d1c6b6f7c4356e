// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/EditorLookAndFeel.hpp"
#include "editor/Environment.hpp"
#include "editor/OverlayHost.hpp"

namespace quillo::test {

/// The place of a window on a machine without a screen: events reach it exactly as from a desktop, and it
/// always has the keyboard when it asks for it.
class OffscreenPeer final : public juce::ComponentPeer {
public:
    using ComponentPeer::ComponentPeer;

    void* getNativeHandle() const override { return const_cast<OffscreenPeer*>(this); }
    void setVisible(bool /*visible*/) override {}
    void setTitle(const juce::String& /*title*/) override {}
    void setBounds(const juce::Rectangle<int>& bounds, bool /*fullScreen*/) override {
        bounds_ = bounds;
        handleMovedOrResized();
    }
    juce::Rectangle<int> getBounds() const override { return bounds_; }
    juce::Point<float> localToGlobal(juce::Point<float> point) override {
        return point + bounds_.getPosition().toFloat();
    }
    juce::Point<float> globalToLocal(juce::Point<float> point) override {
        return point - bounds_.getPosition().toFloat();
    }
    void setMinimised(bool /*minimised*/) override {}
    bool isMinimised() const override { return false; }
    void setFullScreen(bool /*fullScreen*/) override {}
    bool isFullScreen() const override { return false; }
    void setIcon(const juce::Image& /*icon*/) override {}
    bool contains(juce::Point<int> point, bool /*inChildren*/) const override {
        return bounds_.withZeroOrigin().contains(point);
    }
    OptionalBorderSize getFrameSizeIfPresent() const override { return {}; }
    juce::BorderSize<int> getFrameSize() const override { return {}; }
    bool setAlwaysOnTop(bool /*onTop*/) override { return true; }
    void toFront(bool /*takeFocus*/) override {}
    void toBehind(ComponentPeer* /*other*/) override {}
    bool isFocused() const override { return focused_; }
    void grabFocus() override { focused_ = true; }
    /// As when the user turns to another window.
    void letGo() {
        focused_ = false;
        handleFocusLoss();
    }
    /// As when the user comes back.
    void comeBack() {
        focused_ = true;
        handleFocusGain();
    }
    void repaint(const juce::Rectangle<int>& /*area*/) override {}
    void performAnyPendingRepaintsNow() override {}
    void setAlpha(float /*alpha*/) override {}
    juce::StringArray getAvailableRenderingEngines() override { return {"none"}; }
    void textInputRequired(juce::Point<int> /*position*/, juce::TextInputTarget& /*target*/) override {}

private:
    juce::Rectangle<int> bounds_;
    bool focused_ = true;
};

/// A window without a screen around the views of a test, which may open overlays in it. It remembers the keys
/// that nothing in it has used.
class OffscreenWindow final : public juce::Component, public EnvironmentScope, public OverlayHost {
public:
    OffscreenWindow(int width, int height) : OverlayHost(static_cast<juce::Component&>(*this)) {
        setLookAndFeel(&look_);
        setOpaque(true);
        setBounds(0, 0, width, height);
        setVisible(true);
        addToDesktop(0);
    }

    ~OffscreenWindow() override {
        closeOverlay();
        juce::Component::unfocusAllComponents();
        removeFromDesktop();
        setLookAndFeel(nullptr);
    }

    /// Shows a view at a place.
    template <class View>
    View& show(View& view, juce::Rectangle<int> place) {
        addAndMakeVisible(view);
        view.setBounds(place);
        return view;
    }

    [[nodiscard]] const std::vector<juce::KeyPress>& unusedKeys() const { return unusedKeys_; }

    void paint(juce::Graphics& graphics) override {
        graphics.fillAll(displayColour(environment<PaletteKey>(*this).background));
    }

    bool keyPressed(const juce::KeyPress& key) override {
        unusedKeys_.push_back(key);
        return false;
    }

    juce::ComponentPeer* createNewPeer(int style, void* /*parent*/) override {
        return new OffscreenPeer(*this, style);
    }

private:
    EditorLookAndFeel look_;
    std::vector<juce::KeyPress> unusedKeys_;
};

}  // namespace quillo::test
