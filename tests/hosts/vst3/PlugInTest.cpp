// SPDX-License-Identifier: GPL-3.0-or-later
// The built plug-in as a host meets it: its class, its busses, its transport, its bypass.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <set>

#include <pluginterfaces/vst/ivstunits.h>

#include "hosts/vst3/VST3Host.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using namespace Steinberg;
using namespace Steinberg::Vst;

constexpr std::uint32_t plugInBlockLength = 512;

std::string hexadecimal(const TUID id) {
    std::string text;
    for (std::size_t i = 0; i < sizeof(TUID); ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(static_cast<uint8>(id[i])));
        text += digits;
    }
    return text;
}

std::vector<PClassInfo2> classes() {
    std::vector<PClassInfo2> infos(static_cast<std::size_t>(vst3Factory().countClasses()));
    for (int32 index = 0; index < vst3Factory().countClasses(); ++index) {
        EXPECT_EQ(vst3Factory().getClassInfo2(index, &infos[static_cast<std::size_t>(index)]), kResultOk);
    }
    return infos;
}

/// Projects know the plug-in by the identifier of its component: it never changes.
TEST(VST3Factory, NamesThePlugInForTheProjectsThatKnowIt) {
    const auto found = classes();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(hexadecimal(found[0].cid), "ABCDEF019182FAEB51756C6F51756C6C");
    EXPECT_EQ(hexadecimal(found[1].cid), "ABCDEF011234ABCD51756C6F51756C6C");
    for (const auto& info : found) {
        EXPECT_STREQ(info.name, "MIDI Quillo");
        EXPECT_STREQ(info.subCategories, "Fx|Tools");
        EXPECT_STREQ(info.version, QUILLO_VERSION);
    }
}

TEST(VST3Factory, MakesNothingOfAnotherClass) {
    TUID unknown{};
    void* object = nullptr;
    EXPECT_NE(vst3Factory().createInstance(unknown, IComponent::iid, &object), kResultOk);
    EXPECT_EQ(object, nullptr);
}

class VST3PlugIn : public testing::Test {
protected:
    void install(std::vector<Rule> rules) {
        ASSERT_EQ(plugIn.setState(PluginData{std::move(rules)}.write()), kResultOk);
        plugIn.activate();
    }

    std::vector<ScriptMessage> sentFor(const std::vector<ScriptMessage>& messages,
                                       std::uint32_t frames = plugInBlockLength) {
        input.clear();
        for (const auto& [offset, bytes] : messages) {
            EXPECT_TRUE(plugIn.give(input, static_cast<std::uint32_t>(offset), bytes));
        }
        EXPECT_EQ(plugIn.process(frames, input, context ? &*context : nullptr), kResultOk);
        return plugIn.sent();
    }

    /// The controllers that rules send in a block in which the host says this of its transport.
    std::vector<ScriptMessage> sentWhen(uint32 state, TSamples position) {
        context = ProcessContext{};
        context->state = state;
        context->sampleRate = scriptSampleRate;
        context->projectTimeSamples = position;
        return sentFor({});
    }

    void bypass(bool bypassed) {
        int32 index = 0;
        input.clear();
        auto* queue = input.parameters.addParameterData(bypassParameter(), index);
        queue->addPoint(0, bypassed ? 1.0 : 0.0, index);
        EXPECT_EQ(plugIn.process(0, input, nullptr), kResultOk);
    }

    ParamID bypassParameter() {
        ParameterInfo info{};
        EXPECT_EQ(plugIn.controller().getParameterInfo(0, info), kResultOk);
        EXPECT_NE(info.flags & ParameterInfo::kIsBypass, 0);
        return info.id;
    }

    BusInfo bus(MediaType media, BusDirection direction) {
        EXPECT_EQ(plugIn.component().getBusCount(media, direction), 1);
        BusInfo info{};
        EXPECT_EQ(plugIn.component().getBusInfo(media, direction, 0, info), kResultOk);
        EXPECT_EQ(info.flags & BusInfo::kDefaultActive, static_cast<uint32>(BusInfo::kDefaultActive));
        return info;
    }

    static std::vector<Rule> transportRules() {
        const auto onEach = [](HostTransportTriggerVariantsV2 trigger, std::uint8_t controller) {
            return rule(onHost(trigger), send(controlChange(0, controller, 1)));
        };
        return {onEach(HostTransportTriggerVariantsV2::Start, 20),
                onEach(HostTransportTriggerVariantsV2::Continue, 21),
                onEach(HostTransportTriggerVariantsV2::Stop, 22)};
    }

    VST3Instance plugIn;
    VST3Input input;
    std::optional<ProcessContext> context;
};

TEST_F(VST3PlugIn, HasOneStereoBusAndOneOfSixteenMIDIChannelsEachWay) {
    for (const auto direction : {kInput, kOutput}) {
        EXPECT_EQ(bus(kAudio, direction).channelCount, 2);
        EXPECT_EQ(bus(kEvent, direction).channelCount, 16);
    }
}

TEST_F(VST3PlugIn, AsksToBeRunWithoutEndAndAddsNoDelay) {
    EXPECT_EQ(plugIn.processor().getTailSamples(), kInfiniteTail);
    EXPECT_EQ(plugIn.processor().getLatencySamples(), 0U);
}

TEST_F(VST3PlugIn, AudioComesOutAsItWentIn) {
    install({});
    plugIn.audio[0].assign(plugInBlockLength, 0.25F);
    plugIn.audio[1].assign(plugInBlockLength, -0.5F);
    sentFor({{3, {0x90, 60, 1}}});
    EXPECT_EQ(plugIn.audio[0], std::vector<float>(plugInBlockLength, 0.25F));
    EXPECT_EQ(plugIn.audio[1], std::vector<float>(plugInBlockLength, -0.5F));
}

TEST_F(VST3PlugIn, WithoutABusForWhatComesInTheOutputIsSilent) {
    plugIn.activate();
    ASSERT_EQ(plugIn.component().setActive(0), kResultOk);
    ASSERT_EQ(plugIn.component().activateBus(kAudio, kInput, 0, 0), kResultOk);
    ASSERT_EQ(plugIn.component().setActive(1), kResultOk);
    for (const bool isBypassed : {false, true}) {
        bypass(isBypassed);
        plugIn.audio[0].assign(plugInBlockLength, 0.25F);
        sentFor({});
        EXPECT_EQ(plugIn.audio[0], std::vector<float>(plugInBlockLength, 0.0F)) << isBypassed;
    }
}

TEST_F(VST3PlugIn, AHostThatTellsNothingOfItsTransportLeavesItAsItWas) {
    install(transportRules());
    const auto started = sentWhen(ProcessContext::kPlaying, 0);
    EXPECT_EQ(started, (std::vector<ScriptMessage>{{0, {0xB0, 20, 1}}}));
    context.reset();
    EXPECT_EQ(sentFor({}), std::vector<ScriptMessage>());
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 2 * plugInBlockLength), std::vector<ScriptMessage>());
    EXPECT_EQ(sentWhen(0, 3 * plugInBlockLength), (std::vector<ScriptMessage>{{0, {0xB0, 22, 1}}}));
}

TEST_F(VST3PlugIn, AHostThatRoundsItsPositionByAFrameDoesNotJump) {
    install(transportRules());
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000).size(), 1U);
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000 + plugInBlockLength + 1), std::vector<ScriptMessage>());
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000 + 2 * plugInBlockLength), std::vector<ScriptMessage>());
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000 + 3 * plugInBlockLength + 2),
              (std::vector<ScriptMessage>{{0, {0xB0, 21, 1}}}));
}

TEST_F(VST3PlugIn, ThePositionIsFoundAnewWithoutAJumpAfterItWasInactive) {
    install(transportRules());
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000), (std::vector<ScriptMessage>{{0, {0xB0, 21, 1}}}));
    plugIn.deactivate();
    plugIn.activate();
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 50000), std::vector<ScriptMessage>());
}

TEST_F(VST3PlugIn, ThePositionIsFoundAnewWithoutAJumpAfterTheHostHasStoppedProcessing) {
    install(transportRules());
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000), (std::vector<ScriptMessage>{{0, {0xB0, 21, 1}}}));
    ASSERT_EQ(plugIn.processor().setProcessing(0), kResultOk);
    ASSERT_EQ(plugIn.processor().setProcessing(1), kResultOk);
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 50000), std::vector<ScriptMessage>());
}

TEST_F(VST3PlugIn, ABypassOfARollingTransportIsNoJump) {
    install(transportRules());
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000), (std::vector<ScriptMessage>{{0, {0xB0, 21, 1}}}));
    bypass(true);
    for (TSamples blocks = 1; blocks <= 3; ++blocks) {
        EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000 + blocks * plugInBlockLength),
                  std::vector<ScriptMessage>());
    }
    bypass(false);
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000 + 4 * plugInBlockLength), std::vector<ScriptMessage>());
}

TEST_F(VST3PlugIn, AStopAndAJumpDuringABypassAreHeardBehindIt) {
    install(transportRules());
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000), (std::vector<ScriptMessage>{{0, {0xB0, 21, 1}}}));
    bypass(true);
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 50000), std::vector<ScriptMessage>());
    bypass(false);
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 50000 + plugInBlockLength),
              (std::vector<ScriptMessage>{{0, {0xB0, 21, 1}}}));
    bypass(true);
    EXPECT_EQ(sentWhen(0, 51024), std::vector<ScriptMessage>());
    bypass(false);
    EXPECT_EQ(sentWhen(0, 51024), (std::vector<ScriptMessage>{{0, {0xB0, 22, 1}}}));
}

TEST_F(VST3PlugIn, RecordingAndLoopingAreChangesOfTheTransport) {
    install(transportRules());
    const std::vector<ScriptMessage> continued{{0, {0xB0, 21, 1}}};
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 1000), continued);
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying | ProcessContext::kRecording, 1512), continued);
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying | ProcessContext::kRecording, 2024),
              std::vector<ScriptMessage>());
    EXPECT_EQ(
        sentWhen(ProcessContext::kPlaying | ProcessContext::kRecording | ProcessContext::kCycleActive, 2536),
        continued);
}

TEST_F(VST3PlugIn, BypassedItPassesEverythingAndSendsWhatIsStillDue) {
    install({rule(onNoteOn(any, any, eatMatching), send(noteOn(1, 61, 5), 20))});
    EXPECT_EQ(sentFor({{0, {0x90, 60, 1}}, {9, {0x90, 60, 1}}}), std::vector<ScriptMessage>());
    bypass(true);
    EXPECT_EQ(sentFor({{448, {0x90, 62, 1}}, {450, {0x80, 62, 1}}}),
              (std::vector<ScriptMessage>{
                  {448, {0x91, 61, 5}}, {448, {0x90, 62, 1}}, {450, {0x80, 62, 1}}, {457, {0x91, 61, 5}}}));
    bypass(false);
    EXPECT_EQ(sentFor({{5, {0x90, 60, 1}}}), (std::vector<ScriptMessage>{{0, {0x81, 61, 64}}}));
}

TEST_F(VST3PlugIn, NotesThatSoundEndWhenItIsBypassedAndWhenItIsBypassedNoMore) {
    install({rule(onNoteOn(exactly(60), any, eatMatching), send(noteOn(1, 61, 5)))});
    sentFor({{0, {0x90, 60, 1}}, {3, {0xB1, 64, 127}}});
    bypass(true);
    EXPECT_EQ(sentFor({{0, {0x80, 60, 64}}, {5, {0x92, 70, 1}}}),
              (std::vector<ScriptMessage>{
                  {0, {0x81, 61, 64}}, {0, {0xB1, 64, 0}}, {0, {0x80, 60, 64}}, {5, {0x92, 70, 1}}}));
    EXPECT_EQ(sentFor({}), std::vector<ScriptMessage>());
    bypass(false);
    EXPECT_EQ(sentFor({}), (std::vector<ScriptMessage>{{0, {0x82, 70, 64}}}));
    EXPECT_EQ(sentFor({}), std::vector<ScriptMessage>());
}

TEST_F(VST3PlugIn, NotesThatSoundWhenTheHostStopsListeningEndInItsNextBlock) {
    install({});
    sentFor({{0, {0x90, 60, 1}}});
    ASSERT_EQ(plugIn.component().setActive(0), kResultOk);
    ASSERT_EQ(plugIn.component().setActive(1), kResultOk);
    EXPECT_EQ(sentFor({{0, {0x90, 61, 1}}}),
              (std::vector<ScriptMessage>{{0, {0x80, 60, 64}}, {0, {0x90, 61, 1}}}));
    ASSERT_EQ(plugIn.processor().setProcessing(0), kResultOk);
    ASSERT_EQ(plugIn.processor().setProcessing(1), kResultOk);
    EXPECT_EQ(sentFor({}), (std::vector<ScriptMessage>{{0, {0x80, 61, 64}}}));
}

/// Some hosts hand system exclusive over with its ends, some without.
TEST_F(VST3PlugIn, BypassedItGivesSystemExclusiveBackAsItCame) {
    install({});
    bypass(true);
    for (const auto& body : {Bytes{0xF0, 0x7E, 1, 2, 0xF7}, Bytes{0x7E, 1, 2}, Bytes{0xF0, 0xF7}, Bytes{5}}) {
        input.clear();
        Event event{};
        event.sampleOffset = 9;
        event.type = Event::kDataEvent;
        event.data = {static_cast<uint32>(body.size()), DataEvent::kMidiSysEx, body.data()};
        input.events.addEvent(event);
        ASSERT_EQ(plugIn.process(plugInBlockLength, input, nullptr), kResultOk);
        ASSERT_EQ(plugIn.sentEvents().size(), 1U);
        const auto& sent = plugIn.sentEvents().front().data;
        EXPECT_EQ(Bytes(sent.bytes, sent.bytes + sent.size), body);
    }
}

TEST_F(VST3PlugIn, BypassedFromTheStartItLoadsItsRulesWhenItIsBypassedNoMore) {
    install({rule(onLoad(), send(controlChange(0, 7, 1)))});
    bypass(true);
    EXPECT_EQ(sentFor({{5, {0x90, 60, 1}}}), (std::vector<ScriptMessage>{{5, {0x90, 60, 1}}}));
    bypass(false);
    EXPECT_EQ(sentFor({}), (std::vector<ScriptMessage>{{0, {0x80, 60, 64}}, {0, {0xB0, 7, 1}}}));
}

TEST_F(VST3PlugIn, BypassedItHearsNothingOfTheTransportUntilItIsBypassedNoMore) {
    install(transportRules());
    EXPECT_EQ(sentFor({}), std::vector<ScriptMessage>());
    bypass(true);
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, 0), std::vector<ScriptMessage>());
    bypass(false);
    EXPECT_EQ(sentWhen(ProcessContext::kPlaying, plugInBlockLength),
              (std::vector<ScriptMessage>{{0, {0xB0, 21, 1}}}));
}

TEST_F(VST3PlugIn, WhatComesWithoutFramesGoesThroughTheRules) {
    install({rule(onControlChange(1, any, any, eatMatching), send(noteOn(1, 61, 5))),
             rule(onNoteOn(exactly(60), any, eatMatching), send(noteOn(1, 62, 5)))});
    EXPECT_EQ(sentFor({{0, {0xB0, 1, 2}}, {0, {0x90, 60, 1}}, {0, {0x90, 70, 1}}}, 0),
              (std::vector<ScriptMessage>{{0, {0x91, 61, 5}}, {0, {0x91, 62, 5}}, {0, {0x90, 70, 1}}}));
    bypass(true);
    EXPECT_EQ(sentFor({}),
              (std::vector<ScriptMessage>{{0, {0x80, 70, 64}}, {0, {0x81, 61, 64}}, {0, {0x81, 62, 64}}}));
}

TEST_F(VST3PlugIn, WhatIsDueWaitsForABlockWithFrames) {
    install({rule(onNoteOn(any, any, eatMatching), send(noteOn(1, 61, 5), 10)),
             rule(onLoad(), send(controlChange(0, 7, 1)))});
    EXPECT_EQ(sentFor({}, 0), std::vector<ScriptMessage>());
    EXPECT_EQ(sentFor({{32, {0x90, 60, 1}}}), (std::vector<ScriptMessage>{{0, {0xB0, 7, 1}}}));
    EXPECT_EQ(sentFor({}, 0), std::vector<ScriptMessage>());
    EXPECT_EQ(sentFor({}), (std::vector<ScriptMessage>{{0, {0x91, 61, 5}}}));
}

TEST_F(VST3PlugIn, WithoutFramesAndAnybodyWhoTakesEventsNothingIsRendered) {
    install({rule(onLoad(), send(controlChange(0, 7, 1)))});
    plugIn.takesEvents = false;
    EXPECT_EQ(sentFor({{0, {0xB0, 1, 2}}}, 0), std::vector<ScriptMessage>());
    plugIn.takesEvents = true;
    EXPECT_EQ(sentFor({{0, {0x90, 60, 1}}}),
              (std::vector<ScriptMessage>{{0, {0xB0, 7, 1}}, {0, {0x90, 60, 1}}}));
    plugIn.deactivate();
    EXPECT_EQ(sentFor({{0, {0xB0, 1, 2}}}, 0), std::vector<ScriptMessage>());
    plugIn.activate();
    EXPECT_EQ(sentFor({}), (std::vector<ScriptMessage>{{0, {0x80, 60, 64}}}));
}

TEST_F(VST3PlugIn, MessagesWithoutFramesFollowWhatIsDueBeforeThem) {
    install({rule(onLoad(), send(controlChange(0, 7, 1)))});
    EXPECT_EQ(sentFor({{0, {0xB0, 1, 2}}}, 0),
              (std::vector<ScriptMessage>{{0, {0xB0, 7, 1}}, {0, {0xB0, 1, 2}}}));
}

TEST_F(VST3PlugIn, ABlockThatIsLongerThanAnnouncedIsRenderedUpToAUsualLength) {
    ASSERT_EQ(plugIn.setState(PluginData{}.write()), kResultOk);
    plugIn.activate(scriptSampleRate, 64);
    plugIn.audio[0].assign(8192, 0.25F);
    plugIn.audio[1].assign(8192, 0.25F);
    EXPECT_EQ(sentFor({{8191, {0x90, 60, 1}}}, 8192), (std::vector<ScriptMessage>{{8191, {0x90, 60, 1}}}));
    EXPECT_EQ(plugIn.audio[1], std::vector<float>(8192, 0.25F));
}

TEST_F(VST3PlugIn, ABlockForWhichThereIsNoRoomIsRefusedAndTheNotesEndInTheNext) {
    EXPECT_EQ(plugIn.process(1, input, nullptr), kInvalidArgument) << "before any was announced";
    install({rule(onLoad(), send(noteOn(1, 61, 5)))});
    EXPECT_EQ(sentFor({}), (std::vector<ScriptMessage>{{0, {0x91, 61, 5}}}));
    for (const auto frames : {8193U, 1U << 31U, 0xFFFFFFFFU}) {
        EXPECT_EQ(plugIn.process(frames, input, nullptr), kInvalidArgument) << frames;
        EXPECT_TRUE(plugIn.sent().empty());
    }
    EXPECT_EQ(sentFor({}), (std::vector<ScriptMessage>{{0, {0x81, 61, 64}}}));
}

TEST_F(VST3PlugIn, BlocksOfALengthThatNobodyRendersAreNotSetUp) {
    constexpr auto longest = std::numeric_limits<int32>::max();
    for (const auto frames : {-1, longest}) {
        ProcessSetup setup{kRealtime, kSample32, frames, scriptSampleRate};
        EXPECT_EQ(plugIn.processor().setupProcessing(setup), kInvalidArgument) << frames;
    }
    install({});
    EXPECT_EQ(sentFor({{3, {0x90, 60, 1}}}), (std::vector<ScriptMessage>{{3, {0x90, 60, 1}}}));
}

/// A document may name a note without a velocity. JUCE makes a note-off of a velocity of 0.
TEST_F(VST3PlugIn, AMessageThatLacksDataIsTheSameEachTime) {
    const RuleOutputVariantsV2::Protocol noVelocity{StatusByteV2::JustStatus{StatusV2::noteOn},
                                                    GenericByteV2::Value{77}, std::nullopt};
    install({rule(onNoteOn(any, any, eatMatching), send(noVelocity))});
    EXPECT_EQ(sentFor({{0, {0x90, 1, 100}}, {1, {0x90, 2, 101}}}),
              (std::vector<ScriptMessage>{{0, {0x80, 77, 0}}, {1, {0x80, 77, 0}}}));
}

TEST_F(VST3PlugIn, ActivatedAtAnotherRateItKeepsItsMilliseconds) {
    install({rule(onNoteOn(any, any, eatMatching), send(noteOn(1, 61, 5), 1))});
    EXPECT_EQ(sentFor({{0, {0x90, 60, 1}}}), (std::vector<ScriptMessage>{{48, {0x91, 61, 5}}}));
    plugIn.deactivate();
    plugIn.activate(96000.0);
    EXPECT_EQ(sentFor({{0, {0x90, 60, 1}}}),
              (std::vector<ScriptMessage>{{0, {0x81, 61, 64}}, {96, {0x91, 61, 5}}}));
}

TEST_F(VST3PlugIn, AtARejectedSampleRateItIsNotActivatedAndRendersNothing) {
    install({rule(onLoad(), send(controlChange(0, 7, 1)))});
    plugIn.deactivate();
    for (const auto rate : {-1.0, 1e10, std::numeric_limits<double>::quiet_NaN()}) {
        ProcessSetup setup{kRealtime, kSample32, 512, rate};
        static_cast<void>(plugIn.processor().setupProcessing(setup));
        EXPECT_EQ(plugIn.component().setActive(1), kResultFalse) << rate;
        plugIn.audio[0].assign(plugInBlockLength, 0.25F);
        EXPECT_EQ(sentFor({{0, {0x90, 60, 1}}}), std::vector<ScriptMessage>()) << rate;
        EXPECT_EQ(plugIn.audio[0], std::vector<float>(plugInBlockLength, 0.25F));
    }
    plugIn.activate();
    EXPECT_EQ(sentFor({}), (std::vector<ScriptMessage>{{0, {0xB0, 7, 1}}}));
}

TEST_F(VST3PlugIn, AtARejectedSampleRateABypassPassesWhatComesInAndNothingElse) {
    install({rule(onNoteOn(any, any, eatMatching), send(noteOn(1, 61, 5), 10))});
    EXPECT_EQ(sentFor({{500, {0x90, 60, 1}}}), std::vector<ScriptMessage>());
    plugIn.deactivate();
    ProcessSetup setup{kRealtime, kSample32, 512, 1e10};
    static_cast<void>(plugIn.processor().setupProcessing(setup));
    EXPECT_EQ(plugIn.component().setActive(1), kResultFalse);
    bypass(true);
    EXPECT_EQ(sentFor({{3, {0x90, 70, 1}}}), (std::vector<ScriptMessage>{{3, {0x90, 70, 1}}}));
}

TEST_F(VST3PlugIn, WhatIsDueOutlivesADeactivation) {
    install({rule(onNoteOn(any, any, eatMatching), send(noteOn(1, 61, 5), 20))});
    EXPECT_EQ(sentFor({{0, {0x90, 60, 1}}}), std::vector<ScriptMessage>());
    plugIn.deactivate();
    plugIn.activate();
    EXPECT_EQ(sentFor({}), (std::vector<ScriptMessage>{{448, {0x91, 61, 5}}}));
}

/// What Steinberg's validator asks of units and of lists of programs.
TEST_F(VST3PlugIn, UnitsAndProgramsAreNamedAndReferToOneAnother) {
    void* found = nullptr;
    ASSERT_EQ(plugIn.controller().queryInterface(IUnitInfo::iid, &found), kResultOk);
    const auto units = owned(static_cast<IUnitInfo*>(found));
    std::set<ProgramListID> lists{kNoProgramListId};
    for (int32 index = 0; index < units->getProgramListCount(); ++index) {
        ProgramListInfo list{};
        ASSERT_EQ(units->getProgramListInfo(index, list), kResultOk);
        EXPECT_NE(list.name[0], 0);
        EXPECT_GT(list.programCount, 0);
        EXPECT_TRUE(lists.insert(list.id).second);
        for (int32 program = 0; program < list.programCount; ++program) {
            String128 name{};
            EXPECT_EQ(units->getProgramName(list.id, program, name), kResultOk);
            EXPECT_NE(name[0], 0) << "list " << index << ", program " << program;
        }
    }
    std::set<UnitID> ids;
    for (int32 index = 0; index < units->getUnitCount(); ++index) {
        UnitInfo unit{};
        ASSERT_EQ(units->getUnitInfo(index, unit), kResultOk);
        EXPECT_NE(unit.name[0], 0);
        EXPECT_TRUE(ids.insert(unit.id).second);
        EXPECT_TRUE(lists.contains(unit.programListId));
        EXPECT_TRUE(unit.parentUnitId == kNoParentUnitId || ids.contains(unit.parentUnitId));
    }
    EXPECT_TRUE(ids.contains(kRootUnitId));
}

/// Whatever a host asks first: the component is one object.
TEST_F(VST3PlugIn, TheComponentIsTheSameWhateverItIsAskedThrough) {
    for (const auto& id : {IComponent::iid, IPluginBase::iid, FUnknown::iid}) {
        void* found = nullptr;
        ASSERT_EQ(plugIn.processor().queryInterface(id, &found), kResultOk);
        EXPECT_EQ(found, &plugIn.component());
        plugIn.component().release();
    }
    void* unknown = nullptr;
    EXPECT_NE(plugIn.component().queryInterface(IPlugView::iid, &unknown), kResultOk);
}

/// Each has rules, rates and blocks of its own.
TEST(VST3Instances, ManyInOneProcessKnowNothingOfOneAnother) {
    constexpr std::size_t count = 16;
    std::deque<VST3Instance> instances(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto note = static_cast<std::uint8_t>(i);
        ASSERT_EQ(
            instances[i].setState(
                PluginData{{rule(onNoteOn(any, any, eatMatching), send(noteOn(note, note, 5), 1))}}.write()),
            kResultOk);
        instances[i].activate(1000.0 * static_cast<double>(i + 1));
    }
    VST3Input input;
    for (int round = 0; round < 3; ++round) {
        for (std::size_t i = 0; i < count; ++i) {
            const auto note = static_cast<std::uint8_t>(i);
            input.clear();
            instances[i].give(input, 2, Bytes{0x90, 60, 1});
            ASSERT_EQ(instances[i].process(64, input, nullptr), kResultOk);
            EXPECT_EQ(instances[i].sent(),
                      (std::vector<ScriptMessage>{{static_cast<SampleTime>(3 + i),
                                                   {static_cast<std::uint8_t>(0x90 | note), note, 5}}}));
        }
    }
}

}  // namespace
}  // namespace quillo
