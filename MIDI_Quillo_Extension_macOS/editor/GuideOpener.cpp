// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/GuideOpener.hpp"

#include "editor/InstalledFiles.hpp"

namespace quillo {

namespace {

constexpr int looksPerSecond = 10;
constexpr int longestOpening = 10;  // seconds

/// Empty when there is neither a guide nor a page of the makers'.
std::string pageToOpen() {
    const auto binary = juce::File::getSpecialLocation(juce::File::currentExecutableFile);
    const auto guide = firstFile(guidePlaces(binary.getFullPathName().toStdString(), dataFolders()));
    return guide ? fileAddress(*guide) : QUILLO_HOMEPAGE;
}

}  // namespace

void GuideOpener::open() {
    page_ = pageToOpen();
    if (page_.empty()) {
        onProblem_("The guide is not installed. It comes with the package of MIDI Quillo.");
        return;
    }
#if JUCE_MAC
    juce::URL::createWithoutParsing(page_).launchInDefaultBrowser();
#else
    launch_.emplace(page_);
    looksLeft_ = longestOpening * looksPerSecond;
    startTimerHz(looksPerSecond);
#endif
}

void GuideOpener::timerCallback() {
#if !JUCE_MAC
    const auto state = launch_->state();
    if (state == BrowserLaunch::State::opening && --looksLeft_ > 0) {
        return;
    }
    stopTimer();
    launch_.reset();
    if (state == BrowserLaunch::State::failed) {
        onProblem_("No browser opens " + page_);
    }
#endif
}

}  // namespace quillo
