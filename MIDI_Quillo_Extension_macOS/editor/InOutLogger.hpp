// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/EntryList.hpp"
#include "editor/MyIconButton.hpp"
#include "editor/MyWordButton.hpp"
#include "editor/WaitingList.hpp"
#include "platform/Observers.hpp"
#include "session/EditorUnit.hpp"

namespace quillo {

/// The collapsed form of the logs: the newest entry of each, in one line; without its time where there is
/// little width. An entry that is too long for its half ends with an ellipsis. One that is not shown whole is
/// its half's tooltip. At the right stands how much waits to be sent, while anything does; in the narrowest
/// editor in the place of the newest entry of "Out:". [main] only.
class CollapesedLogger final : public juce::Component, public juce::TooltipClient {
public:
    CollapesedLogger(const QuilloModel& model, std::function<void()> toggle);

    /// What is shown of the newest entries; empty for an empty log.
    [[nodiscard]] juce::String inText() const;
    [[nodiscard]] juce::String outText() const;
    /// "Waiting: 3", or empty.
    [[nodiscard]] juce::String waitingText() const { return waiting_.getText(); }
    [[nodiscard]] MyIconButton& arrow() { return arrow_; }

    /// A log, or what waits, has changed.
    void refresh();
    /// The whole of the entry under this point, if not all of it is shown.
    [[nodiscard]] juce::String tooltipAt(juce::Point<int> point) const;

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    juce::String getTooltip() override { return tooltipAt(getMouseXYRelative()); }

private:
    [[nodiscard]] juce::Rectangle<int> entriesArea() const;
    [[nodiscard]] juce::Rectangle<int> inArea() const;
    [[nodiscard]] juce::Rectangle<int> outArea() const;
    [[nodiscard]] bool showsOut() const;
    [[nodiscard]] juce::String shortened(const juce::String& entry) const;

    const QuilloModel& model_;
    MyIconButton arrow_;
    juce::Label waiting_;
};

/// The opened form: all kept entries of both logs and what waits to be sent, beside each other. Where there
/// is less width, what went out and what waits share a place, and their titles are buttons that choose
/// between them; where there is little, that place is below what came in. A button empties the logs, another
/// one cancels all that waits. What waits is there only if the unit tells it.
///
/// A button asks what the events of the logs would do now: then what went out is marked, and the sum of it
/// stands above. It stays as it was when it was asked for, or when the rules have changed since, until the
/// same button ends it, or the logs are emptied or collapsed. [main] only.
class OpenedLogger final : public juce::Component {
public:
    OpenedLogger(EditorUnit& unit, std::function<void()> toggle);
    ~OpenedLogger() override;

    void refresh();
    void showNewest();
    /// Whether the form is in sight in the editor.
    void setInSight(bool inSight);
    /// Tells the unit whether what waits is seen, where that has changed: of the window nobody hears it.
    void watch();

    /// Whether what went out is marked.
    [[nodiscard]] bool isAskingWhatNow() const { return asksWhatNow_; }
    /// The rules have changed.
    void askWhatNowAgain();
    void endWhatNow();

    /// Whether the lists stand one above the other in this width.
    [[nodiscard]] static bool isStacked(int width);

    [[nodiscard]] EntryList& inList() { return in_; }
    [[nodiscard]] EntryList& outList() { return out_; }
    [[nodiscard]] WaitingList& waitingList() { return waiting_; }
    /// The titles above the place that two lists share.
    [[nodiscard]] MyWordButton& outTitle() { return outTitle_; }
    [[nodiscard]] MyWordButton& waitingTitle() { return waitingTitle_; }
    [[nodiscard]] MyWordButton& cancelAllButton() { return cancelAll_; }
    [[nodiscard]] MyWordButton& whatNowButton() { return whatNow_; }
    /// What stands above what went out while that is marked.
    [[nodiscard]] const juce::Label& sum() const { return sum_; }
    [[nodiscard]] MyIconButton& arrow() { return arrow_; }
    [[nodiscard]] MyIconButton& clearButton() { return clear_; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;

private:
    [[nodiscard]] bool sharesPlace() const;
    [[nodiscard]] bool showsWaiting() const;
    [[nodiscard]] juce::Rectangle<int> titleArea(juce::Rectangle<int> list) const;
    [[nodiscard]] juce::Rectangle<int> outTitleArea() const;
    void askWhatNow();
    void showWhatNow();
    void layOutSum();
    void choose(bool waiting);
    void layOutBeside(juce::Rectangle<int> area);
    void layOutStacked(juce::Rectangle<int> area);
    void layOutTitles();
    void colourTitles();
    void paintTitle(juce::Graphics& graphics, juce::Rectangle<int> area, const juce::String& title,
                    bool held) const;

    EditorUnit& unit_;
    QuilloModel& model_;
    MyIconButton arrow_;
    MyIconButton clear_;
    EntryList in_;
    MyWordButton outTitle_;
    MyWordButton waitingTitle_;
    MyWordButton cancelAll_;
    MyWordButton whatNow_;
    juce::Label sum_;
    EntryList out_;
    WaitingList waiting_;
    bool waitingChosen_ = false;  ///< where it shares its place
    bool inSight_ = false;
    bool watched_ = false;  ///< what the unit was told
    bool asksWhatNow_ = false;
    juce::Rectangle<int> outPlace_;  ///< of what went out, with the sum
    Observation inObservation_;
};

/// Both logs and what waits to be sent, at the bottom of the editor, collapsed at first. They open and
/// collapse in a short movement. Opened they take a share of the editor's height, which is changed by
/// dragging their upper edge, or by Up and Down while that has the keyboard focus. [main] only.
class InOutLogger final : public juce::Component, private juce::Timer {
public:
    /// How long opening and collapsing take, in seconds.
    static constexpr double movement = 0.25;

    /// `onHeight` runs whenever the height that they want has changed.
    InOutLogger(EditorUnit& unit, std::function<void()> onHeight);
    ~InOutLogger() override;

    [[nodiscard]] bool collapsed() const { return collapsed_; }
    /// Begins to open or to collapse; without a window around it, it is done at once.
    void toggle();
    /// Lets so many seconds of a movement pass. The clock of the window does so by itself.
    void advance(double seconds);

    /// How much there is for them and the list of cards together.
    void setRoom(juce::Rectangle<int> room) { room_ = room; }
    /// The height that they want of that room.
    [[nodiscard]] int preferredHeight() const;

    [[nodiscard]] CollapesedLogger& collapsedForm() { return collapsedForm_; }
    [[nodiscard]] OpenedLogger& openedForm() { return openedForm_; }
    /// What the opened logs are resized by.
    [[nodiscard]] juce::Component& upperEdge();

    void resized() override;
    void paint(juce::Graphics& graphics) override;

private:
    class UpperEdge;

    void timerCallback() override;
    void refresh();
    void showForm();
    [[nodiscard]] int withinRoom(int height) const;
    [[nodiscard]] int openedHeight() const;
    void setOpenedHeight(int height);

    std::function<void()> onHeight_;
    bool collapsed_ = true;
    juce::Rectangle<int> room_;
    std::optional<double> share_;  ///< of the room's height, once the user has chosen one
    double openness_ = 0;          ///< from 0, collapsed, to 1, opened
    double lastTick_ = 0;          ///< in milliseconds
    CollapesedLogger collapsedForm_;
    OpenedLogger openedForm_;
    std::unique_ptr<UpperEdge> upperEdge_;
    Observation inObservation_;
    Observation outObservation_;
    Observation waitingObservation_;
};

}  // namespace quillo
