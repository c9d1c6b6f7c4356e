// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillo {

/// An opaque colour.
struct MyRGB {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;

    bool operator==(const MyRGB&) const = default;
};

/// The editor's colours: a dark theme in which each kind of value has a main colour and a darker secondary
/// one. 2d and 3d stand for the second and the third byte of a MIDI message.
struct Palette {
    MyRGB background{30, 30, 30};
    MyRGB primaryText{221, 221, 221};
    MyRGB secondaryText{153, 153, 153};
    MyRGB borders{68, 68, 68};
    MyRGB typeInput{221, 221, 221};
    MyRGB typeInputSecondaryColor{153, 153, 153};
    MyRGB channelInput{117, 175, 243};
    MyRGB channelInputSecondaryColor{82, 132, 191};
    MyRGB midi2dByteInput{188, 243, 117};
    MyRGB midi2dByteInputSecondaryColor{156, 191, 82};
    MyRGB midi3dByteInput{243, 117, 185};
    MyRGB midi3dByteInputSecondaryColor{191, 82, 108};
    MyRGB triggerInput{180, 117, 243};
    MyRGB triggerInputSecondaryColor{143, 82, 191};
    MyRGB delayInput{117, 243, 213};
    MyRGB delayInputSecondaryColor{82, 191, 172};

    bool operator==(const Palette&) const = default;
};

}  // namespace quillo
