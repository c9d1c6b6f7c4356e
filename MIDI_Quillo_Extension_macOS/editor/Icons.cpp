// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/Icons.hpp"

#include <map>
#include <memory>

#include "QuilloAssets.h"

namespace quillo {
namespace {

constexpr float iconEdge = 16;

struct Asset {
    const char* data;
    int size;
};

Asset asset(IconName icon) {
    using namespace assets;
    switch (icon) {
    case IconName::dragHandle: return {icondraghandle_svg, icondraghandle_svgSize};
    case IconName::pickerOpen: return {iconpickeropen_svg, iconpickeropen_svgSize};
    case IconName::arrowDown: return {iconarrowdown_svg, iconarrowdown_svgSize};
    case IconName::arrowUp: return {iconarrowup_svg, iconarrowup_svgSize};
    case IconName::clear: return {iconclear_svg, iconclear_svgSize};
    case IconName::search: return {iconsearch_svg, iconsearch_svgSize};
    case IconName::oneLine: return {icononeline_svg, icononeline_svgSize};
    case IconName::fields: return {iconfields_svg, iconfields_svgSize};
    case IconName::more: return {iconmore_svg, iconmore_svgSize};
    case IconName::exportFile: return {iconexport_svg, iconexport_svgSize};
    case IconName::importFile: return {iconimport_svg, iconimport_svgSize};
    case IconName::folder: return {iconfolder_svg, iconfolder_svgSize};
    case IconName::preset: return {iconpreset_svg, iconpreset_svgSize};
    case IconName::undo: return {iconundo_svg, iconundo_svgSize};
    case IconName::redo: return {iconredo_svg, iconredo_svgSize};
    case IconName::logo: return {logo_svg, logo_svgSize};
    }
    return {};
}

std::unique_ptr<juce::Drawable> drawable(IconName icon) {
    const auto [data, size] = asset(icon);
    return juce::Drawable::createFromImageData(data, static_cast<std::size_t>(size));
}

/// The icon's outline on its own square. Each drawing is read once.
const juce::Path& outline(IconName icon) {
    static std::map<IconName, juce::Path> outlines;
    const auto found = outlines.find(icon);
    return found != outlines.end() ? found->second
                                   : outlines.emplace(icon, drawable(icon)->getOutlineAsPath()).first->second;
}

}  // namespace

void drawIcon(juce::Graphics& graphics, IconName icon, juce::Rectangle<float> area, juce::Colour colour) {
    if (icon == IconName::logo) {
        drawable(icon)->drawWithin(graphics, area, juce::RectanglePlacement::centred, 1);
        return;
    }
    const auto fit = juce::RectanglePlacement(juce::RectanglePlacement::centred)
                         .getTransformToFit({iconEdge, iconEdge}, area);
    graphics.setColour(colour);
    graphics.fillPath(outline(icon), fit);
}

}  // namespace quillo
