// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/UnitBridge.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "hosts/auv3/Failures.hpp"
#include "hosts/auv3/HostEventDouble.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::vector oneRule{rule(onNoteOn(), send(noteOn(1, 2, 3)), "one")};

AVAudioFormat stereo(double sampleRate, std::uint32_t channels = 2) {
    return {AVAudioCommonFormat::pcmFormatFloat32, sampleRate, channels, false};
}

Data dataOf(std::string_view text) {
    return {text.begin(), text.end()};
}

class UnitBridgeTest : public testing::Test {
protected:
    UnitBridgeTest() {
        bridge.setTellUser([this](std::string message) { told.push_back(std::move(message)); });
    }

    static HostBlocks hostBlocks() {
        return {[](AUHostTransportStateFlags*, double*, double*, double*) { return true; },
                [](AUEventSampleTime, std::uint8_t, std::span<const std::uint8_t>) { return noErr; }};
    }

    std::optional<Failure> allocate(const AVAudioFormat& input, const AVAudioFormat& output,
                                    AUAudioFrameCount maximumFrames = 512) {
        return bridge.allocateRenderResources(input, output, maximumFrames);
    }

    bool hasHostBlocks() const {
        return bool{bridge.unit()->transportStateBlock} && bool{bridge.unit()->MIDIOutputEventBlock};
    }

    void expectNothingAllocated() {
        EXPECT_FALSE(bridge.unit()->renderResourcesAllocated());
        EXPECT_EQ(bridge.unit()->processor->sampleRate, 44100U);
    }

    std::vector<std::string> told;
    UnitBridge bridge;
};

TEST_F(UnitBridgeTest, NamesTheUnitsMIDIOutput) {
    EXPECT_THAT(bridge.midiOutputNames(), ElementsAre("MIDIQuillo"));
}

TEST_F(UnitBridgeTest, AllocationTakesTheHostsFormatsAndFrames) {
    EXPECT_EQ(allocate(stereo(8000.0), stereo(47999.9), 64), std::nullopt);
    EXPECT_TRUE(bridge.unit()->renderResourcesAllocated());
    EXPECT_EQ(bridge.unit()->processor->sampleRate, 47999U);
    EXPECT_EQ(bridge.unit()->maximumFramesToRender, 64U);
    EXPECT_EQ(bridge.unit()->inputBusses()[0].format(), stereo(8000.0));
    bridge.deallocateRenderResources();
    EXPECT_FALSE(bridge.unit()->renderResourcesAllocated());
    EXPECT_EQ(bridge.unit()->processor->sampleRate, 47999U);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(UnitBridgeTest, DifferentChannelsFailWithTheCodeAloneAndNobodyIsTold) {
    EXPECT_EQ(allocate(stereo(48000.0, 1), stereo(48000.0, 2)), failed(-10875));
    expectNothingAllocated();
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(UnitBridgeTest, AFormatThatNoBusCanHaveIsRefusedOnEitherSide) {
    const auto refused = failed(kAudioUnitErr_FormatNotSupported);
    EXPECT_EQ(allocate(stereo(48000.0, 9), stereo(48000.0, 2)), refused);
    EXPECT_EQ(allocate(stereo(48000.0, 2), stereo(48000.0, 0)), refused);
    EXPECT_EQ(allocate({}, {}), refused);
    expectNothingAllocated();
}

TEST_F(UnitBridgeTest, NoFramesAtAllAreRefused) {
    EXPECT_EQ(allocate(stereo(48000.0), stereo(48000.0), 0), failed(kAudioUnitErr_InvalidPropertyValue));
    expectNothingAllocated();
}

TEST_F(UnitBridgeTest, ASampleRateThatIsNoneIsAnErrorAndTheUserIsTold) {
    const auto failure = allocate(stereo(48000.0), stereo(std::numeric_limits<double>::infinity()));
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->error.code, -10875);
    EXPECT_THAT(told, ElementsAre("The host cannot start MIDI Quillo. " + failure->text));
    expectNothingAllocated();
}

TEST_F(UnitBridgeTest, TheHostsBlocksAreTakenWheneverItSetsThem) {
    EXPECT_EQ(allocate(stereo(48000.0), stereo(48000.0)), std::nullopt);
    EXPECT_FALSE(hasHostBlocks());
    bridge.takeHostBlocks(hostBlocks);
    EXPECT_TRUE(hasHostBlocks());
    bridge.takeHostBlocks([] { return HostBlocks(); });
    EXPECT_FALSE(bridge.unit()->transportStateBlock);
    EXPECT_FALSE(bridge.unit()->MIDIOutputEventBlock);
}

TEST_F(UnitBridgeTest, TheHostsBlocksOutliveItsRenderResources) {
    bridge.takeHostBlocks(hostBlocks);
    EXPECT_EQ(allocate(stereo(48000.0), stereo(48000.0)), std::nullopt);
    bridge.deallocateRenderResources();
    EXPECT_TRUE(hasHostBlocks());
}

TEST_F(UnitBridgeTest, WhenBlocksCannotBeHadTheUserIsToldAndTheOldOnesStay) {
    bridge.takeHostBlocks(hostBlocks);
    bridge.takeHostBlocks([]() -> HostBlocks { throw std::runtime_error("no memory"); });
    EXPECT_THAT(told, ElementsAre("MIDI Quillo cannot use what the host offers. no memory"));
    EXPECT_TRUE(hasHostBlocks());
}

TEST_F(UnitBridgeTest, AnAllocationCanBeUndone) {
    EXPECT_EQ(allocate(stereo(48000.0), stereo(48000.0)), std::nullopt);
    bridge.undoAllocation();
    expectNothingAllocated();
}

TEST_F(UnitBridgeTest, AFatalErrorOfACycleIsToldOnceAfterRendering) {
    EXPECT_EQ(allocate(stereo(48000.0), stereo(48000.0)), std::nullopt);
    EXPECT_EQ(bridge.renderCycle()->render<HostEvent>(std::numeric_limits<double>::infinity(), 64, nullptr),
              kQuilloErr_FatalError);
    EXPECT_THAT(told, IsEmpty());
    bridge.deallocateRenderResources();
    EXPECT_THAT(told, ElementsAre(HasSubstr("MIDI Quillo could not go on. The cycle's sample time")));
    bridge.deallocateRenderResources();
    EXPECT_EQ(told.size(), 1U);
}

TEST_F(UnitBridgeTest, TheRenderCycleIsOneAndDoesNotHoldTheUnit) {
    EXPECT_EQ(bridge.renderCycle(), bridge.renderCycle());
    EXPECT_EQ(bridge.unit().use_count(), 1);
}

TEST_F(UnitBridgeTest, TheStateDocumentIsTheUnits) {
    bridge.unit()->processor->setRules(oneRule);
    EXPECT_EQ(bridge.stateDocument(true), std::get<Data>(bridge.unit()->fullState()->at(stateKey)));
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(UnitBridgeTest, WithoutAStateOfThePlatformsThereIsNoDocumentAndTheUserIsTold) {
    EXPECT_EQ(bridge.stateDocument(false), std::nullopt);
    EXPECT_THAT(told, ElementsAre(HasSubstr(
                          "The rules cannot be saved with the host's project. The platform keeps no state")));
}

TEST_F(UnitBridgeTest, ARestoredDocumentReplacesTheRules) {
    bridge.unit()->processor->setRules(oneRule);
    const auto document = bridge.stateDocument(true).value();
    UnitBridge other;
    EXPECT_TRUE(other.restore([&] { return StateDictionary{{stateKey, document}}; }));
    EXPECT_EQ(other.unit()->processor->rules(), oneRule);
}

TEST_F(UnitBridgeTest, ADamagedDocumentIsTakenAndEmptiesTheList) {
    bridge.unit()->processor->setRules(oneRule);
    EXPECT_TRUE(bridge.restore([] { return StateDictionary{{stateKey, dataOf("{")}}; }));
    EXPECT_THAT(bridge.unit()->processor->rules(), IsEmpty());
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(UnitBridgeTest, AStateWithoutADocumentIsRefusedAndTheRulesStay) {
    bridge.unit()->processor->setRules(oneRule);
    EXPECT_FALSE(bridge.restore([] { return StateDictionary(); }));
    EXPECT_FALSE(bridge.restore([] { return StateDictionary{{stateKey, std::string("text")}}; }));
    EXPECT_FALSE(bridge.restore([]() -> StateDictionary { throw std::bad_alloc(); }));
    EXPECT_EQ(bridge.unit()->processor->rules(), oneRule);
    EXPECT_EQ(told.size(), 3U);
    EXPECT_THAT(told[0], HasSubstr("the rules stay as they are. The restored state has no"));
}

TEST_F(UnitBridgeTest, AnErrorOfTheOneWhoTellsTheUserGoesNoFurther) {
    bridge.setTellUser([](const std::string&) { throw std::runtime_error("nobody"); });
    EXPECT_FALSE(bridge.restore([] { return StateDictionary(); }));
}

TEST_F(UnitBridgeTest, BeforeThereIsAnEditorFailuresAreOnlyReported) {
    UnitBridge other;
    EXPECT_FALSE(other.restore([] { return StateDictionary(); }));
}

TEST_F(UnitBridgeTest, ViewsOfAtLeastTwoHundredPointsAndUnconstrainedOnesAreSupported) {
    EXPECT_FALSE(bridge.supportsView(150.0, 300.0));
    EXPECT_TRUE(bridge.supportsView(200.0, 200.0));
    EXPECT_TRUE(bridge.supportsView(0.0, 0.0));
    EXPECT_FALSE(bridge.supportsView(0.0, 500.0));
}

}  // namespace
}  // namespace quillo
