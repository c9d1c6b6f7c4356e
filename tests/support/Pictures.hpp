// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>

#include "editor/Environment.hpp"

/// What a view looks like on the editor's background.
namespace quillo::test {

inline juce::Image picture(juce::Component& view, float scale = 1) {
    const auto drawn = view.createComponentSnapshot(view.getLocalBounds(), true, scale);
    juce::Image image(juce::Image::RGB, drawn.getWidth(), drawn.getHeight(), false);
    juce::Graphics graphics(image);
    graphics.fillAll(displayColour(Palette().background));
    graphics.drawImageAt(drawn, 0, 0);
    return image;
}

/// How many pixels of a part of the picture have nearly this colour.
inline int pixelsLike(const juce::Image& image, MyRGB colour, juce::Rectangle<int> area) {
    const auto near = [](std::uint8_t left, std::uint8_t right) { return std::abs(left - right) <= 6; };
    int count = 0;
    for (int y = area.getY(); y < area.getBottom(); ++y) {
        for (int x = area.getX(); x < area.getRight(); ++x) {
            const auto pixel = image.getPixelAt(x, y);
            count += near(pixel.getRed(), colour.r) && near(pixel.getGreen(), colour.g) &&
                     near(pixel.getBlue(), colour.b);
        }
    }
    return count;
}

/// The smallest rectangle around these pixels; empty without any.
inline juce::Rectangle<int> boundsOfPixelsLike(const juce::Image& image, MyRGB colour,
                                               juce::Rectangle<int> area) {
    juce::RectangleList<int> pixels;
    for (int y = area.getY(); y < area.getBottom(); ++y) {
        for (int x = area.getX(); x < area.getRight(); ++x) {
            if (pixelsLike(image, colour, {x, y, 1, 1}) > 0) {
                pixels.addWithoutMerging({x, y, 1, 1});
            }
        }
    }
    return pixels.getBounds();
}

inline int pixelsLike(const juce::Image& image, MyRGB colour) {
    return pixelsLike(image, colour, image.getBounds());
}

inline bool sameSight(const juce::Image& left, const juce::Image& right) {
    if (left.getBounds() != right.getBounds()) {
        return false;
    }
    for (int y = 0; y < left.getHeight(); ++y) {
        for (int x = 0; x < left.getWidth(); ++x) {
            if (left.getPixelAt(x, y) != right.getPixelAt(x, y)) {
                return false;
            }
        }
    }
    return true;
}

inline double luminance(MyRGB colour) {
    const auto linear = [](std::uint8_t part) {
        const auto value = part / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.r) + 0.7152 * linear(colour.g) + 0.0722 * linear(colour.b);
}

/// From 1, the same, to 21, black and white.
inline double contrast(MyRGB left, MyRGB right) {
    const auto [darker, lighter] = std::minmax({luminance(left), luminance(right)});
    return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace quillo::test
