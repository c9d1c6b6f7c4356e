// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillo {

/// Around every use of JUCE inside somebody else's process. What the X server refuses to JUCE's own
/// connection, as it does when a host destroys its window before the editor in it, would end the process:
/// while a shield is up it is passed over, also when the whole connection breaks. Errors of other connections
/// go where they went before, and when the shield comes down the host's handlers are back, or those stay that
/// the host has set meanwhile.
///
/// Shields may stand inside one another. The thread that uses JUCE.
class XErrorShield {
public:
    XErrorShield();
    /// Waits until the server has answered all that JUCE has asked for.
    ~XErrorShield();
    XErrorShield(const XErrorShield&) = delete;
    XErrorShield& operator=(const XErrorShield&) = delete;

    /// JUCE's connection, a `Display*`; null while it has none.
    [[nodiscard]] static void* juceConnection();
};

}  // namespace quillo
