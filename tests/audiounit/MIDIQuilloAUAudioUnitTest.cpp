// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/MIDIQuilloAUAudioUnit.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/FatalError.hpp"
#include "support/TestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

Data dataOf(std::string_view text) {
    return {text.begin(), text.end()};
}

std::string documentOf(const StateDictionary& state) {
    const auto& data = std::get<Data>(state.at(stateKey));
    return {data.begin(), data.end()};
}

const std::vector oneRule{rule(onNoteOn(), send(noteOn(1, 2, 3)), "one")};

class UnitTest : public testing::Test {
protected:
    void setFormat(AUAudioUnitBus& bus, double sampleRate, std::uint32_t channels) {
        auto format = bus.format();
        format.sampleRate = sampleRate;
        format.channelCount = channels;
        ASSERT_EQ(bus.setFormat(format), noErr);
    }

    void setRate(double sampleRate) { setFormat(unit->outputBusses()[0], sampleRate, 2); }

    std::shared_ptr<MIDIQuilloAUAudioUnit> unit = makeUnit();
};

TEST_F(UnitTest, ThePlatformsErrorIsHandedBackByTheFactory) {
    const auto result = MIDIQuilloAUAudioUnit::create(AudioComponentDescription{});
    EXPECT_EQ(std::get<NSError>(result), (NSError{"NSOSStatusErrorDomain", -3000}));
}

TEST_F(UnitTest, DeclaresOneBusEachWay) {
    for (auto* busses : {&unit->inputBusses(), &unit->outputBusses()}) {
        ASSERT_EQ(busses->count(), 1U);
        EXPECT_EQ(&busses->owner(), unit.get());
        EXPECT_EQ((*busses)[0].format(),
                  (AVAudioFormat{AVAudioCommonFormat::pcmFormatFloat32, 44100.0, 2, false}));
        EXPECT_EQ((*busses)[0].maximumChannelCount(), 8U);
    }
    EXPECT_EQ(unit->inputBusses().type(), AUAudioUnitBusType::input);
    EXPECT_EQ(unit->outputBusses().type(), AUAudioUnitBusType::output);
    EXPECT_NE(&unit->inputBusses()[0], &unit->outputBusses()[0]);
    EXPECT_EQ(&unit->inputBusses(), &unit->inputBusses());
}

TEST_F(UnitTest, DeclaresOneMIDIOutputAndNoParameters) {
    EXPECT_EQ(unit->MIDIOutputNames(), std::vector<std::string>{"MIDIQuillo"});
    ASSERT_NE(unit->parameterTree(), nullptr);
    EXPECT_TRUE(unit->parameterTree()->allParameters().empty());
}

TEST_F(UnitTest, AllocationHandsTheOutputsTruncatedSampleRateToTheProcessor) {
    setFormat(unit->inputBusses()[0], 8000.0, 2);
    setRate(47999.9);
    EXPECT_EQ(unit->allocateRenderResources(), std::nullopt);
    EXPECT_TRUE(unit->renderResourcesAllocated());
    EXPECT_EQ(unit->processor->sampleRate, 47999U);
}

TEST_F(UnitTest, AllocationFailsWhenTheBussesDifferInChannels) {
    setFormat(unit->inputBusses()[0], 48000.0, 1);
    setRate(48000.0);
    EXPECT_EQ(unit->allocateRenderResources(), (NSError{"NSOSStatusErrorDomain", -10875}));
    EXPECT_FALSE(unit->renderResourcesAllocated());
    EXPECT_EQ(unit->processor->sampleRate, 44100U);
}

TEST_F(UnitTest, ThePlatformsFailureToAllocateIsHandedBackUnchanged) {
    unit->maximumFramesToRender = 0;
    setRate(48000.0);
    EXPECT_EQ(unit->allocateRenderResources(), (NSError{"NSOSStatusErrorDomain", -10851}));
    EXPECT_EQ(unit->processor->sampleRate, 44100U);
}

TEST_F(UnitTest, ASampleRateThatIsNoUnsignedIntegerIsFatal) {
    for (const double rate : {-1.0, -48000.0, 18446744073709551616.0, 1e300,
                              std::numeric_limits<double>::infinity(), std::nan("")}) {
        setRate(rate);
        EXPECT_THROW(static_cast<void>(unit->allocateRenderResources()), FatalError) << rate;
        EXPECT_FALSE(unit->renderResourcesAllocated()) << rate;
    }
    EXPECT_EQ(unit->processor->sampleRate, 44100U);
}

TEST_F(UnitTest, TheExtremesOfTheSampleRateAreTaken) {
    setRate(-0.5);
    EXPECT_EQ(unit->allocateRenderResources(), std::nullopt);
    EXPECT_EQ(unit->processor->sampleRate, 0U);
    setRate(18446744073709549568.0);
    EXPECT_EQ(unit->allocateRenderResources(), std::nullopt);
    EXPECT_EQ(unit->processor->sampleRate, 18446744073709549568U);
}

TEST_F(UnitTest, DeallocationChangesNothingInTheProcessor) {
    unit->processor->setRules(oneRule);
    unit->processor->send(noteOn(0, 1, 1));
    EXPECT_EQ(unit->allocateRenderResources(), std::nullopt);
    unit->deallocateRenderResources();
    EXPECT_FALSE(unit->renderResourcesAllocated());
    EXPECT_EQ(unit->processor->rules(), oneRule);
    EXPECT_EQ(unit->processor->pendingInstantMessages(), 1U);
}

TEST_F(UnitTest, ItsStateIsThePlatformsWithTheDocumentAsData) {
    const auto state = unit->fullState();
    ASSERT_TRUE(state.has_value());
    EXPECT_EQ(documentOf(*state), R"({"rules":[]})");
    EXPECT_EQ(std::get<double>(state->at("type")), midiQuilloComponent.componentType);
    EXPECT_EQ(std::get<double>(state->at("subtype")), midiQuilloComponent.componentSubType);
    EXPECT_EQ(std::get<double>(state->at("manufacturer")), midiQuilloComponent.componentManufacturer);
}

TEST_F(UnitTest, AStateThatWasSavedRestoresTheSameRules) {
    unit->processor->setRules(oneRule);
    const auto state = unit->fullState();
    const auto other = makeUnit();
    other->setFullState(state);
    EXPECT_EQ(other->processor->rules(), oneRule);
    EXPECT_EQ(other->fullState(), state);
}

TEST_F(UnitTest, AStateKeepsTheRulesThatAreSwitchedOff) {
    unit->install(oneRule, {{1, oneRule[0]}});
    const auto state = unit->fullState();
    const auto other = makeUnit();
    other->setFullState(state);
    EXPECT_EQ(other->processor->rules(), oneRule);
    EXPECT_EQ(other->fullState(), state);
    other->setFullState(StateDictionary{{stateKey, dataOf("damaged")}});
    EXPECT_EQ(documentOf(*other->fullState()), R"({"rules":[]})");
}

TEST_F(UnitTest, OtherKeysOfARestoredStateAreKept) {
    unit->setFullState(StateDictionary{{stateKey, dataOf(R"({"rules":[]})")}, {"host", std::string("x")}});
    EXPECT_EQ(std::get<std::string>(unit->fullState()->at("host")), "x");
}

TEST_F(UnitTest, AnAbsentStateLeavesTheRulesAloneAndNotifiesNoObserver) {
    unit->processor->setRules(oneRule);
    int told = 0;
    const auto observation = unit->observeAllParameterValues([&told] { ++told; });
    unit->setFullState(std::nullopt);
    EXPECT_EQ(unit->processor->rules(), oneRule);
    EXPECT_EQ(told, 0);
}

TEST_F(UnitTest, ARestoredStateNotifiesItsObserversOnceTheRulesAreThere) {
    const auto state = [&] {
        const auto source = makeUnit();
        source->processor->setRules(oneRule);
        return source->fullState();
    }();
    std::vector<Rule> seen;
    const auto observation = unit->observeAllParameterValues([&] { seen = unit->processor->rules(); });
    unit->setFullState(state);
    EXPECT_EQ(seen, oneRule);
}

TEST_F(UnitTest, ADamagedDocumentLeavesNoRulesAtAll) {
    for (const auto* damaged : {"", "{", R"({"rules":[{}]})", "\xFF\xFE", "null", R"({"rules":3})"}) {
        unit->processor->setRules(oneRule);
        unit->setFullState(StateDictionary{{stateKey, dataOf(damaged)}});
        EXPECT_EQ(unit->processor->rules(), std::vector<Rule>{}) << damaged;
        EXPECT_EQ(documentOf(*unit->fullState()), R"({"rules":[]})");
    }
}

TEST_F(UnitTest, AStateWithoutTheKeyIsFatalAndChangesNothing) {
    unit->processor->setRules(oneRule);
    EXPECT_THROW(unit->setFullState(StateDictionary{}), FatalError);
    EXPECT_THROW(unit->setFullState(StateDictionary{{"other", 1.0}}), FatalError);
    EXPECT_EQ(unit->processor->rules(), oneRule);
}

TEST_F(UnitTest, AStateWhoseValueIsNoDataIsFatalAndChangesNothing) {
    unit->processor->setRules(oneRule);
    EXPECT_THROW(unit->setFullState(StateDictionary{{stateKey, std::string(R"({"rules":[]})")}}), FatalError);
    EXPECT_THROW(unit->setFullState(StateDictionary{{stateKey, 1.0}}), FatalError);
    EXPECT_EQ(unit->processor->rules(), oneRule);
}

TEST_F(UnitTest, AStateWhoseRulesCannotBeCompiledIsFatalAndChangesNothing) {
    const auto* document =
        R"({"rules":[{"output":{"message":{"SystemExclusive":{"_0":[]}},"delay":{"ms":-1}},)"
        R"("trigger":{"OnLoad":{}},"name":"late"}]})";
    unit->processor->setRules(oneRule);
    const auto before = unit->fullState();
    EXPECT_THROW(unit->setFullState(StateDictionary{{stateKey, dataOf(document)}, {"host", 1.0}}),
                 FatalError);
    EXPECT_EQ(unit->fullState(), before);
}

TEST_F(UnitTest, ViewsOfAtLeast200By200AndTheUnconstrainedOneAreSupported) {
    const std::vector<AUAudioUnitViewConfiguration> offered{{150, 300}, {200, 200},   {0, 0},  {0, 500},
                                                            {500, 250}, {199.9, 400}, {400, 0}};
    EXPECT_EQ(unit->supportedViewConfigurations(offered), (std::vector<std::size_t>{1, 2, 4}));
}

TEST_F(UnitTest, ASelectedViewIsKept) {
    unit->selectViewConfiguration({500, 250});
    EXPECT_EQ(unit->selectedViewConfiguration(), (AUAudioUnitViewConfiguration{500, 250}));
}

}  // namespace
}  // namespace quillo
