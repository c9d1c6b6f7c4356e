// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/platform/AUAudioUnit.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace quillo {
namespace {

constexpr AudioComponentDescription processorDescription{0x61756d69, 0x71756c6c, 0x51756c6f};
constexpr AVAudioFormat stereo{AVAudioCommonFormat::pcmFormatFloat32, 44100.0, 2, false};

/// The least that a unit can be: one bus each way, and a render block that does nothing.
class PlainUnit : public AUAudioUnit {
public:
    using AUAudioUnit::initialize;

    AUAudioUnitBusArray& inputBusses() override { return inputs_; }
    AUAudioUnitBusArray& outputBusses() override { return outputs_; }
    std::shared_ptr<AUParameterTree> parameterTree() override { return AUParameterTree::createTree({}); }
    std::vector<std::string> MIDIOutputNames() const override { return {}; }
    AUInternalRenderBlock internalRenderBlock() override {
        return
            [](const AudioTimeStamp&, AUAudioFrameCount, const AURenderEvent*)
                QUILLO_REALTIME { return noErr; };
    }
    std::vector<std::size_t> supportedViewConfigurations(
        std::span<const AUAudioUnitViewConfiguration> /*available*/) const override {
        return {};
    }

private:
    AUAudioUnitBusArray inputs_{*this, AUAudioUnitBusType::input, {AUAudioUnitBus::withFormat(stereo)}};
    AUAudioUnitBusArray outputs_{*this,
                                 AUAudioUnitBusType::output,
                                 {AUAudioUnitBus::withFormat(stereo), AUAudioUnitBus::withFormat(stereo)}};
};

class AUAudioUnitTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(unit.initialize(processorDescription, 0), std::nullopt); }

    /// The value that the unit would save under `key`; absent when it would save none.
    std::optional<StateValue> saved(const std::string& key) const {
        const auto state = unit.fullState();
        const auto found = state->find(key);
        return found == state->end() ? std::nullopt : std::optional(found->second);
    }

    PlainUnit unit;
};

TEST(AUAudioUnit, IsNotMadeWithoutAComponentType) {
    PlainUnit unit;
    const NSError expected{"NSOSStatusErrorDomain", kAudioComponentErr_InvalidComponentID};
    EXPECT_EQ(unit.initialize({0, 1, 2}, 0), expected);
    EXPECT_EQ(unit.componentDescription(), AudioComponentDescription{});
}

TEST_F(AUAudioUnitTest, KnowsItsComponent) {
    EXPECT_EQ(unit.componentDescription(), processorDescription);
}

TEST_F(AUAudioUnitTest, ItsBusArraysKnowOwnerSideAndBusses) {
    EXPECT_EQ(&unit.inputBusses().owner(), &unit);
    EXPECT_EQ(unit.inputBusses().type(), AUAudioUnitBusType::input);
    EXPECT_EQ(unit.inputBusses().count(), 1U);
    EXPECT_EQ(unit.outputBusses().type(), AUAudioUnitBusType::output);
    EXPECT_EQ(unit.outputBusses().count(), 2U);
    EXPECT_NE(&unit.outputBusses()[0], &unit.outputBusses()[1]);
}

TEST_F(AUAudioUnitTest, HostOffersNothingUntilItSaysSo) {
    EXPECT_FALSE(unit.transportStateBlock);
    EXPECT_FALSE(unit.MIDIOutputEventBlock);
    EXPECT_EQ(unit.maximumFramesToRender, 512U);
}

TEST_F(AUAudioUnitTest, AllocatesAndDeallocatesRenderResources) {
    EXPECT_FALSE(unit.renderResourcesAllocated());
    EXPECT_EQ(unit.allocateRenderResources(), std::nullopt);
    EXPECT_TRUE(unit.renderResourcesAllocated());
    unit.deallocateRenderResources();
    EXPECT_FALSE(unit.renderResourcesAllocated());
}

TEST_F(AUAudioUnitTest, RejectsCyclesOfNoFrames) {
    unit.maximumFramesToRender = 0;
    const NSError expected{"NSOSStatusErrorDomain", kAudioUnitErr_InvalidPropertyValue};
    EXPECT_EQ(unit.allocateRenderResources(), expected);
    EXPECT_FALSE(unit.renderResourcesAllocated());
}

TEST_F(AUAudioUnitTest, SavesWhichComponentItIs) {
    EXPECT_EQ(saved("type"), StateValue(double{0x61756d69}));
    EXPECT_EQ(saved("subtype"), StateValue(double{0x71756c6c}));
    EXPECT_EQ(saved("manufacturer"), StateValue(double{0x51756c6f}));
    EXPECT_EQ(saved("version"), StateValue(0.0));
}

TEST_F(AUAudioUnitTest, SavesWhateverKeysTheLastStateHad) {
    unit.setFullState(
        StateDictionary{{"name", std::string("Lead")}, {"bytes", Data{1, 2, 3}}, {"number", 0.5}});
    EXPECT_EQ(saved("name"), StateValue(std::string("Lead")));
    EXPECT_EQ(saved("bytes"), StateValue(Data{1, 2, 3}));
    EXPECT_EQ(saved("number"), StateValue(0.5));
}

TEST_F(AUAudioUnitTest, ForgetsTheKeysOfTheStateBefore) {
    unit.setFullState(StateDictionary{{"name", std::string("Lead")}});
    unit.setFullState(StateDictionary{{"bytes", Data{1}}});
    EXPECT_EQ(saved("name"), std::nullopt);
    EXPECT_EQ(saved("bytes"), StateValue(Data{1}));
}

TEST_F(AUAudioUnitTest, StaysTheComponentThatItIsWhateverAStateSays) {
    unit.setFullState(StateDictionary{{"type", 1.0}, {"version", std::string("new")}});
    EXPECT_EQ(saved("type"), StateValue(double{0x61756d69}));
    EXPECT_EQ(saved("version"), StateValue(0.0));
}

TEST_F(AUAudioUnitTest, AnAbsentStateChangesNothingAndNotifiesNoObserver) {
    int notifications = 0;
    const auto observation = unit.observeAllParameterValues([&] { ++notifications; });
    unit.setFullState(StateDictionary{{"name", std::string("Lead")}});
    unit.setFullState(std::nullopt);
    EXPECT_EQ(saved("name"), StateValue(std::string("Lead")));
    EXPECT_EQ(notifications, 1);
}

TEST_F(AUAudioUnitTest, ObserversFindTheNewStateInPlace) {
    std::optional<StateValue> seen;
    const auto observation = unit.observeAllParameterValues([&] { seen = saved("name"); });
    unit.setFullState(StateDictionary{{"name", std::string("Lead")}});
    EXPECT_EQ(seen, StateValue(std::string("Lead")));
}

TEST_F(AUAudioUnitTest, NotifiesNoObserverOnceTheObservationIsDropped) {
    int notifications = 0;
    auto observation = unit.observeAllParameterValues([&] { ++notifications; });
    observation.reset();
    unit.setFullState(StateDictionary{});
    EXPECT_EQ(notifications, 0);
}

TEST_F(AUAudioUnitTest, RemembersTheViewConfigurationThatTheHostSelects) {
    EXPECT_EQ(unit.selectedViewConfiguration(), std::nullopt);
    unit.selectViewConfiguration({400.0, 300.0});
    EXPECT_EQ(unit.selectedViewConfiguration(), (AUAudioUnitViewConfiguration{400.0, 300.0}));
}

}  // namespace
}  // namespace quillo
