// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ServerBar.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "editor/DecimalText.hpp"
#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/JuceText.hpp"
#include "editor/OverlayHost.hpp"
#include "editor/Style.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr auto noServer = "No JACK server. MIDI Quillo waits for one.";
constexpr auto noProject = "No project is open.";
constexpr int buttonHeight = 22;

/// A sound card's ports have numbers; their alias says which device they are.
const std::string& nameToShow(const PortDescription& port) {
    return port.name.starts_with("system:") && !port.aliases.empty() ? port.aliases.front() : port.name;
}

juce::String rowLabel(const PortDescription& port) {
    const auto& name = nameToShow(port);
    return juceText(escaped(name == port.name ? name : name + " (" + port.name + ")"));
}

/// "fluidsynth, Piano", each once.
std::string shortNames(const std::vector<ServerStatus::Port>& ports) {
    std::vector<std::string> names;
    for (const auto& [port, isConnected] : ports) {
        if (const auto name = shortName(port); isConnected && std::ranges::find(names, name) == names.end()) {
            names.push_back(name);
        }
    }
    std::string text;
    for (const auto& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text.empty() ? "nothing" : escaped(text);
}

}  // namespace

std::string shortName(const PortDescription& port) {
    constexpr std::array<std::string_view, 4> waysToDevices{"system", "alsa_pcm", "a2j", "Midi-Bridge"};
    const auto& name = nameToShow(port);
    const auto colon = name.find(':');
    auto client = name.substr(0, colon);
    if (colon == std::string::npos || std::ranges::find(waysToDevices, client) == waysToDevices.end()) {
        return client;
    }
    const auto device = name.substr(colon + 1, name.find_first_of("/[:", colon + 1) - colon - 1);
    return device.substr(0, device.find_last_not_of(' ') + 1);
}

std::string inWords(const std::optional<ServerStatus>& status) {
    if (!status) {
        return noServer;
    }
    const std::string dot = " \u00b7 ";
    return "JACK " + escaped(status->server) + dot + withCommas(status->sampleRate) + " Hz" + dot + "hears " +
           shortNames(status->sources) + dot + "sends to " + shortNames(status->targets);
}

ServerBar::ServerBar(Actions actions)
    : actions_(std::move(actions)), connect_("Connect", [this] { openMenu(); }) {
    addAndMakeVisible(connect_);
    setSize(0, style::logBarHeight);
    refresh();
}

void ServerBar::refresh() {
    status_ = actions_.status();
    text_ = juceText(status_ || actions_.isAwaited() ? inWords(status_) : noProject);
    setTitle(text_);
    setTooltip(text_);
    connect_.setEnabled(status_.has_value());
    if (menu_ != nullptr && status_) {
        menu_->refresh(menuContents());
    } else if (menu_ != nullptr) {
        OverlayHost::find(*menu_)->closeOverlay();
    }
    repaint();
}

void ServerBar::openMenu() {
    menu_ = PopupMenuOverlay::open(connect_, connect_.getLocalBounds(), menuContents(),
                                   [this](std::size_t row) { pick(row); });
}

MenuContents ServerBar::menuContents() {
    MenuContents menu{"Connect", {}, {}};
    menu.staysOpen = true;
    rows_.clear();
    addRows(menu, "Hear:", status_->sources);
    addRows(menu, "Send to:", status_->targets);
    return menu;
}

void ServerBar::addRows(MenuContents& menu, const char* title, const std::vector<ServerStatus::Port>& ports) {
    const auto add = [&](const juce::String& label, std::optional<ServerStatus::Port> port) {
        auto& rows = port ? menu.ticked : menu.disabled;
        if (!port || port->isConnected) {
            rows.insert(menu.labels.size());
        }
        menu.labels.push_back(label);
        rows_.push_back(std::move(port));
    };
    add(title, {});
    for (const auto& port : ports) {
        add(rowLabel(port.port), port);
    }
    if (ports.empty()) {
        add("nothing is there", {});
    }
}

/// What comes of it is seen when the server says so.
void ServerBar::pick(std::size_t row) {
    const auto picked = *rows_[row];
    actions_.setConnected(picked.port, !picked.isConnected);
}

void ServerBar::resized() {
    auto area = getLocalBounds().reduced(style::barPadding, 0);
    connect_.setBounds(area.removeFromRight(connect_.preferredWidth())
                           .withSizeKeepingCentre(connect_.preferredWidth(), buttonHeight));
}

void ServerBar::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto area = getLocalBounds().withTrimmedLeft(style::barPadding).withRight(connect_.getX() - 8);
    drawLine(graphics, text_, area, style::valueText,
             displayColour(status_ ? palette.secondaryText : style::alarmText));
    graphics.setColour(displayColour(style::edge(palette)));
    graphics.fillRect(getLocalBounds().removeFromBottom(1));
}

std::unique_ptr<juce::AccessibilityHandler> ServerBar::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::group);
}

}  // namespace quillo
