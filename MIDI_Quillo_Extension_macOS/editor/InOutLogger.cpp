// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/InOutLogger.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "editor/DecimalText.hpp"
#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/JuceText.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int labelWidth = 24;
constexpr int outLabelWidth = 32;
constexpr int loggerTitleHeight = 18;
/// A title that is a button begins where one that is not does.
constexpr int titleShift = 4;
constexpr int loggerGap = 8;
/// Where the entries and lists begin, beside the arrow; and what keeps the ring around that off them.
constexpr int contentLeft = style::barPadding + style::iconButtonSize;
constexpr int arrowMargin = 4;

/// In a narrower editor the opened lists stand one above the other: the titles of a place that two share, and
/// the button at its end, need that much.
constexpr int besideFrom = 460;
/// In a narrower one, two lists share a place.
constexpr int allBesideFrom = 640;
/// A narrower collapsed bar has no room for two entries and what waits.
constexpr int allCollapsedFrom = 280;
/// How much of the room the opened logs take before the user has chosen.
constexpr double shareBeside = 0.3;
constexpr double shareStacked = 0.5;
/// What the opened logs and the list of cards keep at least, where there is room for both.
constexpr int leastBeside = 78;
constexpr int leastStacked = 140;
constexpr int leastList = 60;

constexpr int edgeHeight = 7;
constexpr int edgeStep = 16;
constexpr int movementsPerSecond = 60;

juce::String newest(const QuilloModel::Log& log) {
    return log.empty() ? juce::String() : juceText(text(log[log.size() - 1]));
}

void paintLabel(juce::Graphics& graphics, const Palette& palette, const juce::String& label,
                juce::Rectangle<int> area) {
    graphics.setColour(displayColour(palette.secondaryText));
    graphics.setFont(textFont(style::valueText));
    graphics.drawText(label, area, juce::Justification::centredLeft, true);
}

void paintEntry(juce::Graphics& graphics, const Palette& palette, const juce::String& entry,
                juce::Rectangle<int> area) {
    graphics.setColour(displayColour(palette.primaryText));
    graphics.setFont(entryFont());
    graphics.drawText(entry, onBaseline(area, entryFont(), textFont(style::valueText)),
                      juce::Justification::centredLeft, true);
}

constexpr auto whatNowLabel = "What now?";

juce::String waitingWords(const QuilloModel& model) {
    return "Waiting: " + juceText(withCommas(model.waitingCount()));
}

/// Says that a list is held, and as much more as there is room for behind its title.
juce::String heldHint(const juce::String& title, juce::Rectangle<int> area) {
    for (const auto* hint : {" held while you read; End shows the newest", " held; End shows the newest"}) {
        if (textWidth(title + hint, style::valueText) <= area.getWidth()) {
            return hint;
        }
    }
    return " held";
}

juce::Rectangle<int> arrowArea(juce::Rectangle<int> bar) {
    return bar.removeFromLeft(contentLeft).reduced(arrowMargin, 0);
}

/// Slow at both ends.
double eased(double part) {
    return part * part * (3 - 2 * part);
}

}  // namespace

CollapesedLogger::CollapesedLogger(const QuilloModel& model, std::function<void()> toggle)
    : model_(model), arrow_("Open the logs", IconName::arrowUp, std::move(toggle)) {
    waiting_.setFont(textFont(style::valueText));
    waiting_.setColour(juce::Label::textColourId, displayColour(Palette().delayInput));
    waiting_.setJustificationType(juce::Justification::centredRight);
    waiting_.setBorderSize({});
    waiting_.setMinimumHorizontalScale(1);
    waiting_.setMouseClickGrabsKeyboardFocus(false);
    addAndMakeVisible(arrow_);
    addAndMakeVisible(waiting_);
}

void CollapesedLogger::refresh() {
    const auto words = model_.waitingCount() > 0 ? waitingWords(model_) : juce::String();
    if (words != waitingText()) {
        waiting_.setText(words, juce::dontSendNotification);
        resized();
    }
    repaint();
}

juce::String CollapesedLogger::inText() const {
    return shortened(newest(model_.inLog()));
}

juce::String CollapesedLogger::outText() const {
    return shortened(newest(model_.outLog()));
}

/// Where there is little width, the time would leave no room for the bytes.
juce::String CollapesedLogger::shortened(const juce::String& entry) const {
    return OpenedLogger::isStacked(getWidth()) ? entry.fromFirstOccurrenceOf("] ", false, false) : entry;
}

void CollapesedLogger::resized() {
    arrow_.setBounds(arrowArea(getLocalBounds()));
    const auto width = waitingText().isEmpty() ? 0 : textWidth(waitingText(), style::valueText);
    waiting_.setBounds(getLocalBounds().withTrimmedRight(style::barPadding).removeFromRight(width));
}

/// In the narrowest editor its place is taken.
bool CollapesedLogger::showsOut() const {
    return waitingText().isEmpty() || getWidth() >= allCollapsedFrom;
}

/// Where there is enough of it, the room for what waits is kept free: entries do not move when it comes and
/// goes.
juce::Rectangle<int> CollapesedLogger::entriesArea() const {
    const auto area = getLocalBounds().withTrimmedLeft(contentLeft).withTrimmedRight(style::barPadding);
    const auto kept = textWidth("Waiting: 99", style::valueText);
    const auto taken = std::max(waiting_.getWidth(), OpenedLogger::isStacked(getWidth()) ? 0 : kept);
    return area.withTrimmedRight(taken > 0 ? taken + loggerGap : 0);
}

juce::Rectangle<int> CollapesedLogger::inArea() const {
    const auto area = entriesArea();
    return area.withWidth(showsOut() ? area.getWidth() / 2 : area.getWidth())
        .withTrimmedLeft(labelWidth)
        .withTrimmedRight(showsOut() ? loggerGap : 0);
}

juce::Rectangle<int> CollapesedLogger::outArea() const {
    const auto area = entriesArea();
    return showsOut() ? area.withTrimmedLeft(area.getWidth() / 2 + outLabelWidth) : juce::Rectangle<int>();
}

juce::String CollapesedLogger::tooltipAt(juce::Point<int> point) const {
    const bool in = point.x < inArea().getRight() || !showsOut();
    const auto shown = in ? inText() : outText();
    const auto entry = newest(in ? model_.inLog() : model_.outLog());
    const auto room = (in ? inArea() : outArea()).getWidth();
    return shown != entry || entryFont().getStringWidth(shown) > room ? entry : juce::String();
}

void CollapesedLogger::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto in = inArea();
    const auto out = outArea();
    paintLabel(graphics, palette, "In:", in.withLeft(in.getX() - labelWidth).withWidth(labelWidth));
    paintEntry(graphics, palette, inText(), in);
    if (showsOut()) {
        paintLabel(graphics, palette,
                   "Out:", out.withLeft(out.getX() - outLabelWidth).withWidth(outLabelWidth));
        paintEntry(graphics, palette, outText(), out);
    }
}

OpenedLogger::OpenedLogger(EditorUnit& unit, std::function<void()> toggle)
    : unit_(unit),
      model_(*unit.model()),
      arrow_("Collapse the logs", IconName::arrowDown, std::move(toggle)),
      clear_("Empty the logs", IconName::clear,
             [this] {
                 model_.clearInLog();
                 model_.clearOutLog();
             }),
      in_(
          "In:", [this]() -> const QuilloModel::Log& { return model_.inLog(); }, [this] { repaint(); }),
      outTitle_("Out:", [this] { choose(false); }),
      waitingTitle_(waitingWords(model_), [this] { choose(true); }),
      cancelAll_("Cancel all", [this] { unit_.cancelAllWaiting(); }),
      whatNow_(whatNowLabel, [this] { asksWhatNow_ ? endWhatNow() : askWhatNow(); }),
      out_(
          "Out:", [this]() -> const QuilloModel::Log& { return model_.outLog(); }, [this] { repaint(); }),
      waiting_(model_, [this](std::uint64_t number) { unit_.cancelWaiting(number); }),
      inObservation_(model_.observeInLog([this] {
          if (model_.inLog().empty()) {
              endWhatNow();
          }
      })) {
    int order = 0;
    for (auto* part : std::initializer_list<juce::Component*>{
             &arrow_, &in_, &outTitle_, &waitingTitle_, &whatNow_, &out_, &cancelAll_, &waiting_, &clear_}) {
        addAndMakeVisible(*part);
        part->setExplicitFocusOrder(++order);
    }
    sum_.setFont(textFont(style::captionText));
    sum_.setColour(juce::Label::textColourId, displayColour(Palette().primaryText));
    sum_.setBorderSize({});
    sum_.setMouseClickGrabsKeyboardFocus(false);
    addChildComponent(sum_);
    showWhatNow();
}

OpenedLogger::~OpenedLogger() {
    setInSight(false);
}

void OpenedLogger::refresh() {
    in_.refresh();
    out_.refresh();
    waiting_.refresh();
    if (const auto words = waitingWords(model_); words != waitingTitle_.getButtonText()) {
        waitingTitle_.setLabel(words);
        layOutTitles();
        repaint();
    }
    colourTitles();
}

void OpenedLogger::colourTitles() {
    const Palette palette;
    const bool waits = model_.waitingCount() > 0;
    outTitle_.setColour(waitingChosen_ ? palette.secondaryText : palette.primaryText);
    const auto notChosen = waits ? palette.delayInput : palette.secondaryText;
    waitingTitle_.setColour(waitingChosen_ ? palette.primaryText : notChosen);
    cancelAll_.setColour(waits ? style::alarmText : palette.secondaryText);
}

void OpenedLogger::askWhatNow() {
    auto log = unit_.whatNow();
    asksWhatNow_ = true;
    sum_.setText(juceText(sumText(log)), juce::dontSendNotification);
    sum_.setTooltip(sum_.getText());
    showWhatNow();
    out_.showMarked(std::move(log.entries));
}

void OpenedLogger::askWhatNowAgain() {
    if (asksWhatNow_) {
        askWhatNow();
    }
}

void OpenedLogger::endWhatNow() {
    if (std::exchange(asksWhatNow_, false)) {
        showWhatNow();
        out_.showMarked(std::nullopt);
    }
}

void OpenedLogger::showWhatNow() {
    constexpr auto question = "What would the last 100 events do now?";
    whatNow_.setLabel(asksWhatNow_ ? "Close" : whatNowLabel);
    whatNow_.setTitle(asksWhatNow_ ? "Close" : question);
    whatNow_.setTooltip(asksWhatNow_ ? "" : question);
    resized();
    repaint();
}

void OpenedLogger::showNewest() {
    in_.showNewest();
    out_.showNewest();
}

void OpenedLogger::setInSight(bool inSight) {
    endWhatNow();
    inSight_ = inSight;
    watch();
}

/// The unit makes the list only for those who see it. A host may hide the window.
void OpenedLogger::watch() {
    const bool isHidden = getPeer() != nullptr && !isShowing();
    const bool seen = inSight_ && showsWaiting() && !isHidden;
    if (std::exchange(watched_, seen) != seen) {
        unit_.watchWaiting(seen);
    }
}

void OpenedLogger::choose(bool waiting) {
    waitingChosen_ = waiting;
    resized();
    repaint();
}

bool OpenedLogger::sharesPlace() const {
    return unit_.tellsWhatItDoes() && getWidth() < allBesideFrom;
}

bool OpenedLogger::showsWaiting() const {
    return unit_.tellsWhatItDoes() && (waitingChosen_ || !sharesPlace());
}

bool OpenedLogger::isStacked(int width) {
    return width < besideFrom;
}

void OpenedLogger::resized() {
    const auto area = getLocalBounds();
    arrow_.setBounds(arrowArea(area).removeFromTop(style::iconButtonSize));
    clear_.setBounds(area.withTrimmedRight(loggerGap / 2)
                         .removeFromRight(style::iconButtonSize)
                         .removeFromTop(style::iconButtonSize));
    waiting_.setVisible(showsWaiting());
    out_.setVisible(!sharesPlace() || !waitingChosen_);
    if (isStacked(getWidth())) {
        layOutStacked(area);
    } else {
        layOutBeside(area);
    }
    layOutSum();
    layOutTitles();
    watch();
}

/// The sum takes its line from the list below it.
void OpenedLogger::layOutSum() {
    outPlace_ = out_.getBounds();
    sum_.setVisible(asksWhatNow_ && out_.isVisible());
    if (asksWhatNow_) {
        sum_.setBounds(outPlace_.withHeight(loggerTitleHeight));
        out_.setBounds(outPlace_.withTrimmedTop(loggerTitleHeight));
    }
}

void OpenedLogger::layOutBeside(juce::Rectangle<int> area) {
    area.setLeft(contentLeft);
    area.setRight(clear_.getX());
    area.removeFromTop(loggerTitleHeight);
    area.removeFromBottom(loggerGap / 2);
    const bool three = showsWaiting() && !sharesPlace();
    const auto lists = three ? 3 : 2;
    const auto width = (area.getWidth() - (lists - 1) * loggerGap) / lists;
    in_.setBounds(area.removeFromLeft(width));
    area.removeFromLeft(loggerGap);
    out_.setBounds(three ? area.removeFromLeft(width) : area);
    waiting_.setBounds(three ? area.withTrimmedLeft(loggerGap) : area);
}

void OpenedLogger::layOutStacked(juce::Rectangle<int> area) {
    area.removeFromTop(style::iconButtonSize);
    area.removeFromBottom(loggerGap / 2);
    area.reduce(loggerGap / 2, 0);
    in_.setBounds(area.removeFromTop((area.getHeight() - loggerTitleHeight) / 2));
    out_.setBounds(area.withTrimmedTop(loggerTitleHeight));
    waiting_.setBounds(out_.getBounds());
}

/// Those of what waits and of what shares its place, and the button that cancels.
void OpenedLogger::layOutTitles() {
    const Palette palette;
    const bool shared = sharesPlace();
    outTitle_.setVisible(shared);
    waitingTitle_.setVisible(shared);
    cancelAll_.setVisible(showsWaiting());
    whatNow_.setVisible(out_.isVisible());
    whatNow_.setColour(asksWhatNow_ ? palette.primaryText : palette.secondaryText);
    const auto ofOut = titleArea(outPlace_);
    whatNow_.setBounds(ofOut.withTrimmedLeft(ofOut.getWidth() - whatNow_.preferredWidth()));
    auto area = titleArea(waiting_.getBounds());
    cancelAll_.setBounds(area.withTrimmedLeft(area.getWidth() - cancelAll_.preferredWidth()));
    area.setLeft(area.getX() - titleShift);
    outTitle_.setBounds(area.removeFromLeft(outTitle_.preferredWidth()));
    waitingTitle_.setBounds(area.removeFromLeft(waitingTitle_.preferredWidth()));
    colourTitles();
}

void OpenedLogger::paint(juce::Graphics& graphics) {
    const bool outHeld = out_.isVisible() && out_.isHeld() && !asksWhatNow_;
    paintTitle(graphics, titleArea(in_.getBounds()), "In:", in_.isHeld());
    if (sharesPlace()) {
        paintTitle(graphics, outTitleArea().withLeft(waitingTitle_.getRight()), {}, outHeld);
        return;
    }
    paintTitle(graphics, outTitleArea(), "Out:", outHeld);
    if (showsWaiting()) {
        paintTitle(graphics, titleArea(waiting_.getBounds()), waitingWords(model_), false);
    }
}

/// As far as the button at its end.
juce::Rectangle<int> OpenedLogger::outTitleArea() const {
    const auto area = titleArea(outPlace_);
    return whatNow_.isVisible() ? area.withRight(whatNow_.getX()) : area;
}

/// Above the list, and beside the arrow where that stands above the list too.
juce::Rectangle<int> OpenedLogger::titleArea(juce::Rectangle<int> list) const {
    const bool besideButtons =
        list.getY() >= arrow_.getBottom() && list.getY() < arrow_.getBottom() + loggerTitleHeight;
    return besideButtons ? arrow_.getBounds().withLeft(contentLeft).withRight(clear_.getX())
                         : list.withHeight(loggerTitleHeight).withBottomY(list.getY());
}

void OpenedLogger::paintTitle(juce::Graphics& graphics, juce::Rectangle<int> area, const juce::String& title,
                              bool held) const {
    paintLabel(graphics, environment<PaletteKey>(*this), held ? title + heldHint(title, area) : title, area);
}

/// The edge by which the opened logs are made higher and lower.
class InOutLogger::UpperEdge final : public juce::Component {
public:
    explicit UpperEdge(InOutLogger& logger) : logger_(logger) {
        setTitle("Height of the logs");
        setMouseCursor(juce::MouseCursor::UpDownResizeCursor);
        setWantsKeyboardFocus(true);
        setMouseClickGrabsKeyboardFocus(false);
        setRepaintsOnMouseActivity(true);
    }

    void mouseDown(const juce::MouseEvent& event) override { grip_ = event.y; }

    void mouseDrag(const juce::MouseEvent& event) override {
        logger_.setOpenedHeight(logger_.getHeight() + grip_ - event.y);
    }

    bool keyPressed(const juce::KeyPress& key) override {
        const bool up = key == juce::KeyPress::upKey;
        if (!up && key != juce::KeyPress::downKey) {
            return false;
        }
        logger_.setOpenedHeight(logger_.getHeight() + (up ? edgeStep : -edgeStep));
        return true;
    }

    void focusGained(FocusChangeType /*cause*/) override { repaint(); }
    void focusLost(FocusChangeType /*cause*/) override { repaint(); }

    void paint(juce::Graphics& graphics) override {
        constexpr int width = 36;
        constexpr int thickness = 3;
        const auto palette = environment<PaletteKey>(*this);
        const bool lit = isMouseOverOrDragging() || hasKeyboardFocus(false);
        const auto bar = getLocalBounds().withSizeKeepingCentre(width, thickness).toFloat();
        graphics.setColour(displayColour(lit ? palette.primaryText : style::edge(palette)));
        graphics.fillRoundedRectangle(bar, thickness / 2.0F);
        if (hasKeyboardFocus(false)) {
            graphics.drawRect(getLocalBounds(), 1);
        }
    }

private:
    InOutLogger& logger_;
    int grip_ = 0;  ///< where in its height the edge was taken
};

InOutLogger::InOutLogger(EditorUnit& unit, std::function<void()> onHeight)
    : onHeight_(std::move(onHeight)),
      collapsedForm_(*unit.model(), [this] { toggle(); }),
      openedForm_(unit, [this] { toggle(); }),
      upperEdge_(std::make_unique<UpperEdge>(*this)),
      inObservation_(unit.model()->observeInLog([this] { refresh(); })),
      outObservation_(unit.model()->observeOutLog([this] { refresh(); })),
      waitingObservation_(unit.model()->observeWaiting([this] { refresh(); })) {
    collapsedForm_.refresh();
    addAndMakeVisible(collapsedForm_);
    addChildComponent(openedForm_);
    addChildComponent(*upperEdge_);
}

InOutLogger::~InOutLogger() = default;

juce::Component& InOutLogger::upperEdge() {
    return *upperEdge_;
}

void InOutLogger::toggle() {
    collapsed_ = !collapsed_;
    lastTick_ = juce::Time::getMillisecondCounterHiRes();
    startTimerHz(movementsPerSecond);
    advance(isShowing() ? 0 : movement);
}

void InOutLogger::timerCallback() {
    const auto now = juce::Time::getMillisecondCounterHiRes();
    advance((now - std::exchange(lastTick_, now)) / 1000);
}

void InOutLogger::advance(double seconds) {
    const auto way = seconds / movement;
    openness_ = std::clamp(openness_ + (collapsed_ ? -way : way), 0.0, 1.0);
    if (openness_ == (collapsed_ ? 0 : 1)) {
        stopTimer();
    }
    showForm();
    onHeight_();
}

/// The opened form is the one that is seen until it is wholly collapsed. The keyboard goes where it was: to
/// the arrow.
void InOutLogger::showForm() {
    const bool hasKeyboard = hasKeyboardFocus(true);
    const bool opened = !collapsed_ || openness_ > 0;
    if (opened == openedForm_.isVisible()) {
        return;
    }
    openedForm_.setVisible(opened);
    upperEdge_->setVisible(opened);
    collapsedForm_.setVisible(!opened);
    openedForm_.showNewest();
    openedForm_.setInSight(opened);
    refresh();
    if (hasKeyboard) {
        (opened ? openedForm_.arrow() : collapsedForm_.arrow()).grabKeyboardFocus();
    }
}

/// The nearest height that leaves something of both the logs and the list of cards.
int InOutLogger::withinRoom(int height) const {
    const auto most = std::max(room_.getHeight() - leastList, room_.getHeight() / 2);
    const auto least = OpenedLogger::isStacked(room_.getWidth()) ? leastStacked : leastBeside;
    return std::clamp(height, std::min(least, most), most);
}

int InOutLogger::openedHeight() const {
    const auto share = OpenedLogger::isStacked(room_.getWidth()) ? shareStacked : shareBeside;
    return withinRoom(static_cast<int>(std::lround(share_.value_or(share) * room_.getHeight())));
}

void InOutLogger::setOpenedHeight(int height) {
    share_ = static_cast<double>(withinRoom(height)) / std::max(1, room_.getHeight());
    onHeight_();
}

int InOutLogger::preferredHeight() const {
    const auto opened = std::max(style::logBarHeight, openedHeight());
    const auto more = (opened - style::logBarHeight) * eased(openness_);
    return style::logBarHeight + static_cast<int>(std::lround(more));
}

void InOutLogger::refresh() {
    if (openedForm_.isVisible()) {
        openedForm_.refresh();
    } else {
        collapsedForm_.refresh();
    }
}

/// While it opens and collapses, the opened form comes from below the editor's edge as it will be.
void InOutLogger::resized() {
    auto area = getLocalBounds();
    collapsedForm_.setBounds(area.withTrimmedTop(1));
    area.setHeight(std::max(area.getHeight(), openedHeight()));
    upperEdge_->setBounds(area.removeFromTop(edgeHeight));
    openedForm_.setBounds(area);
}

void InOutLogger::paint(juce::Graphics& graphics) {
    graphics.setColour(displayColour(style::edge(environment<PaletteKey>(*this))));
    graphics.fillRect(getLocalBounds().removeFromTop(1));
}

}  // namespace quillo
