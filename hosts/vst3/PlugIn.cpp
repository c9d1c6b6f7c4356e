// SPDX-License-Identifier: GPL-3.0-or-later
// What a host looks for in the binary, and what JUCE's wrapper calls for each instance.
#include <memory>

#include <pluginterfaces/base/ipluginbase.h>

#include "hosts/vst3/PlugInFactory.hpp"
#include "hosts/vst3/QuilloProcessor.hpp"

/// The wrapper's own factory, under the name that it is compiled with.
extern "C" Steinberg::IPluginFactory* PLUGIN_API quilloWrappersFactory();

extern "C" SMTG_EXPORT_SYMBOL Steinberg::IPluginFactory* PLUGIN_API GetPluginFactory() try {
    auto* wrappers = static_cast<Steinberg::IPluginFactory3*>(quilloWrappersFactory());
    return new quillo::PlugInFactory(Steinberg::owned(wrappers));
} catch (const std::exception&) {
    return nullptr;
}

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter() {
    return std::make_unique<quillo::QuilloProcessor>().release();
}
