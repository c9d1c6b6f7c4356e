// SPDX-License-Identifier: GPL-3.0-or-later
// What the toolkit's wrapper calls for each instance.
#include <memory>

#include "hosts/vst3/QuilloProcessor.hpp"

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter() {
    return std::make_unique<quillo::QuilloProcessor>().release();
}
