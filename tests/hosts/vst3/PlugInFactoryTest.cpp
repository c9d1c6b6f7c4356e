// SPDX-License-Identifier: GPL-3.0-or-later
// JUCE's wrapper around a processor that cannot be made.
#include "hosts/vst3/PlugInFactory.hpp"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include <juce_audio_processors/juce_audio_processors.h>
#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstcomponent.h>

#include "hosts/vst3/QuilloProcessor.hpp"

extern "C" Steinberg::IPluginFactory* PLUGIN_API quilloWrappersFactory();

namespace {

/// What the wrapper meets when it makes a processor.
void (*meet)() = nullptr;

}  // namespace

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter() {
    meet();
    return new quillo::QuilloProcessor();
}

namespace quillo {
namespace {

using namespace Steinberg;

class PlugInFactoryTest : public testing::Test {
protected:
    tresult make(const FUID& id) {
        PClassInfo component;
        EXPECT_EQ(factory->getClassInfo(0, &component), kResultOk);
        return factory->createInstance(component.cid, id, &object);
    }

    IPtr<PlugInFactory> factory =
        owned(new PlugInFactory(owned(static_cast<IPluginFactory3*>(quilloWrappersFactory()))));
    void* object = nullptr;
};

TEST_F(PlugInFactoryTest, AnInstanceThatCannotBeMadeIsAnErrorCodeAndNoException) {
    meet = [] { throw std::bad_alloc(); };
    EXPECT_EQ(make(Vst::IComponent::iid), kOutOfMemory);
    EXPECT_EQ(object, nullptr);
    meet = [] { throw std::runtime_error("no unit"); };
    EXPECT_EQ(make(Vst::IComponent::iid), kInternalError);
    EXPECT_EQ(object, nullptr);
}

TEST_F(PlugInFactoryTest, AnInstanceIsMadeByAnyOfItsInterfacesAndGoesWithItsLastReference) {
    meet = [] {};
    for (const auto& id : {Vst::IComponent::iid, Vst::IAudioProcessor::iid, FUnknown::iid}) {
        ASSERT_EQ(make(id), kResultOk);
        EXPECT_EQ(static_cast<FUnknown*>(object)->release(), 0U);
    }
}

TEST_F(PlugInFactoryTest, AQuestionWithoutAnAddressIsInvalid) {
    EXPECT_EQ(factory->createInstance(nullptr, nullptr, nullptr), kInvalidArgument);
}

}  // namespace
}  // namespace quillo
