// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

#include "audiounit/QuilloModel.hpp"
#include "editor/EntryList.hpp"
#include "editor/MyIconButton.hpp"
#include "platform/Observers.hpp"

namespace quillo {

/// The collapsed form of the logs: the newest entry of each, in one line. An entry that is too long for its half
/// ends with an ellipsis and is shown whole as a tooltip. [main] only.
class CollapesedLogger final : public juce::Component, public juce::TooltipClient {
public:
    CollapesedLogger(const QuilloModel& model, std::function<void()> toggle);

    /// The newest entries' texts; empty for an empty log.
    [[nodiscard]] juce::String inText() const;
    [[nodiscard]] juce::String outText() const;
    [[nodiscard]] MyIconButton& arrow() { return arrow_; }
    /// The whole of the entry under this point, if it was cut.
    [[nodiscard]] juce::String tooltipAt(juce::Point<int> point) const;

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    juce::String getTooltip() override { return tooltipAt(getMouseXYRelative()); }

private:
    [[nodiscard]] juce::Rectangle<int> inArea() const;
    [[nodiscard]] juce::Rectangle<int> outArea() const;

    const QuilloModel& model_;
    MyIconButton arrow_;
};

/// The opened form: all kept entries of both logs, and a button that empties them. [main] only.
class OpenedLogger final : public juce::Component {
public:
    OpenedLogger(QuilloModel& model, std::function<void()> toggle);

    void refresh();

    [[nodiscard]] EntryList& inList() { return in_; }
    [[nodiscard]] EntryList& outList() { return out_; }
    [[nodiscard]] MyIconButton& arrow() { return arrow_; }
    [[nodiscard]] MyIconButton& clearButton() { return clear_; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;

private:
    MyIconButton arrow_;
    MyIconButton clear_;
    EntryList in_;
    EntryList out_;
};

/// Both logs at the bottom of the editor, collapsed at first. [main] only.
class InOutLogger final : public juce::Component {
public:
    /// `onToggle` runs when the form, and with it the height, has changed.
    InOutLogger(std::shared_ptr<QuilloModel> model, std::function<void()> onToggle);

    [[nodiscard]] bool collapsed() const { return collapsed_; }
    void toggle();

    [[nodiscard]] int preferredHeight() const;
    [[nodiscard]] CollapesedLogger& collapsedForm() { return collapsedForm_; }
    [[nodiscard]] OpenedLogger& openedForm() { return openedForm_; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;

private:
    void refresh();

    std::shared_ptr<QuilloModel> model_;
    std::function<void()> onToggle_;
    bool collapsed_ = true;
    CollapesedLogger collapsedForm_;
    OpenedLogger openedForm_;
    Observation inObservation_;
    Observation outObservation_;
};

}  // namespace quillo
