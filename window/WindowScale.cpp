// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/WindowScale.hpp"

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillo {

namespace {

constexpr double commonDPI = 96;

/// The number that follows the name of a resource; 0 where there is none.
double resource(const std::string& resources, const juce::String& name) {
    for (const auto& line : juce::StringArray::fromLines(resources)) {
        if (line.upToFirstOccurrenceOf(":", false, false).trim() == name) {
            return line.fromFirstOccurrenceOf(":", false, false).trim().getDoubleValue();
        }
    }
    return 0;
}

double withinLimits(double scale) {
    return std::clamp(scale, 1.0, 4.0);
}

#if JUCE_LINUX || JUCE_BSD
std::string serverResources() {
    auto* display = juce::XWindowSystem::getInstance()->getDisplay();
    const juce::XWindowSystemUtilities::GetXProperty property(
        display, juce::X11Symbols::getInstance()->xDefaultRootWindow(display), XA_RESOURCE_MANAGER, 0,
        std::numeric_limits<long>::max() / 4, false, XA_STRING);
    const bool isText = property.success && property.actualFormat == 8 && property.data != nullptr;
    return isText ? std::string(reinterpret_cast<const char*>(property.data), property.numItems) : "";
}
#endif

}  // namespace

double windowScale(const ScaleSettings& settings) {
    if (settings.asked) {
        return *settings.asked;
    }
    if (const auto scale = juce::String(settings.gdkScale).getIntValue(); scale > 0) {
        return withinLimits(scale);
    }
    if (const auto dpi = resource(settings.resources, "Xft.dpi"); dpi > 0) {
        return withinLimits(std::round(dpi / commonDPI * 4) / 4);
    }
    return withinLimits(std::floor(settings.screenDPI / commonDPI * 2) / 2);
}

#if JUCE_LINUX || JUCE_BSD
void useWindowScale(std::optional<double> asked) {
    auto& desktop = juce::Desktop::getInstance();
    const auto* screen = desktop.getDisplays().getPrimaryDisplay();
    if (screen == nullptr) {
        return;
    }
    const auto gdkScale = juce::SystemStats::getEnvironmentVariable("GDK_SCALE", {}).toStdString();
    const auto scale = windowScale({asked, gdkScale, serverResources(), screen->dpi});
    // JUCE has a scale of its own, from settings of some desktops; ours is on top of it.
    desktop.setGlobalScaleFactor(static_cast<float>(scale / screen->scale));
}
#else
/// Elsewhere the system scales windows by itself.
void useWindowScale(std::optional<double> asked) {
    juce::Desktop::getInstance().setGlobalScaleFactor(static_cast<float>(asked.value_or(1)));
}
#endif

}  // namespace quillo
