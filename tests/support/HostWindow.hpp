// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace quillo::test {

/// A window of a host that knows nothing of JUCE, on the display that the environment names, with a
/// connection of its own. Windows are X's; lengths are pixels.
class HostWindow {
public:
    using Handle = std::uintptr_t;

    struct Geometry {
        int x = 0;
        int y = 0;
        unsigned width = 0;
        unsigned height = 0;

        bool operator==(const Geometry&) const = default;
    };

    /// On the screen, with the keyboard.
    HostWindow(int x, int y, unsigned width, unsigned height);
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    [[nodiscard]] Handle handle() const;
    [[nodiscard]] std::vector<Handle> children() const;

    /// Within its parent.
    [[nodiscard]] Geometry geometryOf(Handle window) const;
    void resize(Handle window, unsigned width, unsigned height);

    using Colour = std::array<std::uint8_t, 3>;  ///< red, green, blue
    static constexpr Colour colour{255, 255, 255};

    /// The colour that the screen shows at a point of a window.
    [[nodiscard]] Colour colourAt(Handle window, int x, int y) const;

    [[nodiscard]] Handle keyboardOwner() const;
    void giveKeyboardTo(Handle window);

    /// The keys that were pressed in this window, as X's symbols; they are then forgotten.
    [[nodiscard]] std::vector<unsigned long> takeKeys();

    /// The window goes, and with it all that is in it.
    void destroy();

    /// Ends the connection to which a window belongs.
    void killOwnerOf(Handle window);

    /// Asks for what the server must refuse, and waits for the answer.
    void offend();

    /// How many refusals the process's handler, which a host window brings along, has heard of.
    [[nodiscard]] static int refusals();

private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace quillo::test
