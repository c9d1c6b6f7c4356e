// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "session/EditorUnit.hpp"

namespace quillo {

/// The editor in a window that a host gives, for formats whose host runs the event loop: X11. Editors come
/// and go over one unit, one at a time; the model, with its logs and alerts, stays with the unit. All
/// operations belong to the host's user-interface thread, and none of them waits for the user.
///
/// Lengths are in the pixels of the window system; a point is `scale` pixels.
class EmbeddedEditor {
public:
    struct Size {
        std::uint32_t width = 0;
        std::uint32_t height = 0;

        bool operator==(const Size&) const = default;
    };

    /// Why no editor can be shown here (no display, no typeface); nothing when one can.
    [[nodiscard]] static std::optional<std::string> whyNot();

    /// Makes the editor, out of sight, at its preferred size.
    explicit EmbeddedEditor(EditorUnit& unit, double scale = 1.0);
    ~EmbeddedEditor();
    EmbeddedEditor(const EmbeddedEditor&) = delete;
    EmbeddedEditor& operator=(const EmbeddedEditor&) = delete;

    /// Puts the editor into the host's window.
    void attachTo(std::uintptr_t parentWindow);

    /// The editor's own window, 0 before it is attached.
    [[nodiscard]] std::uintptr_t window() const;

    void setVisible(bool visible);

    /// The size in pixels stays in proportion: what had 500 points still has.
    void setScale(double scale);

    [[nodiscard]] Size size() const;
    void setSize(Size size);

    /// The nearest size that the editor can have: it has a least one, and a greatest, which is the window
    /// system's.
    [[nodiscard]] Size nearestTo(Size size) const;

    /// Does what there is to do, for the window and for the unit, and returns. At least 30 times a second.
    void idle();

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace quillo
