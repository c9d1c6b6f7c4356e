// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/MyTextButton.hpp"
#include "editor/PopupMenuOverlay.hpp"
#include "hosts/jack/ServerStatus.hpp"

namespace quillo {

/// What a port is called where there is little room: its client, or the device where the client is only the
/// way to it.
[[nodiscard]] std::string shortName(const PortDescription& port);

/// The line about the server: "JACK default · 48,000 Hz · hears nanoKEY · sends to synth".
[[nodiscard]] std::string inWords(const std::optional<ServerStatus>& status);

/// The stand-alone's line about its server, with "Connect": a menu of all that can be heard and sent to, with
/// ticks at what is. Picking a row connects it, or takes its connection down; the menu stays open and follows
/// the server. [main]
class ServerBar final : public juce::Component, public juce::SettableTooltipClient {
public:
    struct Actions {
        std::function<std::optional<ServerStatus>()> status;  ///< nothing while there is no server
        std::function<void(const PortDescription& port, bool connected)> setConnected;
        std::function<bool()> isAwaited = [] { return true; };  ///< whether there shall be a server
    };

    explicit ServerBar(Actions actions);

    /// What `status` says may be something else.
    void refresh();

    [[nodiscard]] const juce::String& text() const { return text_; }
    [[nodiscard]] MyTextButton& connectButton() { return connect_; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    void openMenu();
    void pick(std::size_t row);
    MenuContents menuContents();
    void addRows(MenuContents& menu, const char* title, const std::vector<ServerStatus::Port>& ports);

    Actions actions_;
    std::optional<ServerStatus> status_;
    juce::String text_;
    MyTextButton connect_;
    SafePointer<PopupMenuOverlay> menu_;
    std::vector<std::optional<ServerStatus::Port>> rows_;  ///< of the menu; nothing where a row is a title
};

}  // namespace quillo
