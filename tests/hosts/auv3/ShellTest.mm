// SPDX-License-Identifier: GPL-3.0-or-later
#import "hosts/auv3/MIDIQuilloAUAudioUnit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#import "hosts/auv3/AudioUnitViewController.h"
#import "hosts/auv3/doubles/PlatformDoubles.h"

#include "hosts/auv3/EditorBridge.hpp"
#include "hosts/auv3/EditorDouble.hpp"
#include "hosts/auv3/HostEventChain.hpp"
#include "hosts/auv3/doubles/ObjectiveCRuntime.hpp"
#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

/// The shell in Objective-C++, run against doubles of the platform's classes.
namespace {

using namespace quillo::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr AudioComponentDescription component{0x61756D69, 0x51756C6C, 0x51756C6F, 0, 0};

const std::vector oneRule{rule(onNoteOn(), send(noteOn(1, 2, 3)), "one")};

/// A message that the host was handed: time, cable and bytes.
struct Handed {
    AUEventSampleTime time;
    int cable;
    Bytes bytes;

    bool operator==(const Handed&) const = default;
};

/// A host with a controller of the extension. Nothing of the platform is left when it is gone.
class ShellTest : public testing::Test {
protected:
    ShellTest() {
        platformDouble() = {};
        editorDouble() = {};
    }
    ~ShellTest() override {
        unit = nil;
        controller = nil;
        objc_autoreleasePoolPop(pool);
        runDispatchedBlocks();
        EXPECT_EQ(livingObjects(), before);
        EXPECT_FALSE(editorDouble().open);
    }

    MIDIQuilloAUAudioUnit* create(NSError** error = nullptr) {
        unit = (MIDIQuilloAUAudioUnit*)[controller createAudioUnitWithComponentDescription:component
                                                                                     error:error];
        return unit;
    }

    void createElsewhere() {
        std::thread([this] {
            @autoreleasepool {
                create();
            }
        }).join();
    }

    quillo::RuleProcessor& processor() { return *[unit bridge].unit()->processor; }

    void offerOutput(OSStatus status = quillo::noErr) {
        unit.MIDIOutputEventBlock = ^OSStatus(AUEventSampleTime time, std::uint8_t cable, NSInteger length,
                                              const std::uint8_t* bytes) {
            handed.push_back({time, cable, Bytes(bytes, bytes + length)});
            return status;
        };
    }

    void offerTransport() {
        unit.transportStateBlock =
            ^BOOL(AUHostTransportStateFlags* given, double* givenPosition, double* start, double* end) {
                *given = flags;
                *givenPosition = position;
                EXPECT_EQ(start, nullptr);
                EXPECT_EQ(end, nullptr);
                return YES;
            };
    }

    BOOL allocate(NSError** error = nullptr) { return [unit allocateRenderResourcesAndReturnError:error]; }

    void setFormat(AUAudioUnitBusArray* busses, double sampleRate, AVAudioChannelCount channels) {
        [busses[0] setFormat:[[AVAudioFormat alloc] initWithCommonFormat:AVAudioPCMFormatFloat32
                                                              sampleRate:sampleRate
                                                                channels:channels
                                                             interleaved:NO]
                       error:nil];
    }

    static OSStatus render(AUInternalRenderBlock block, double time, const AURenderEvent* events) {
        AudioTimeStamp timestamp{};
        timestamp.mSampleTime = time;
        return block(nullptr, &timestamp, 512, 0, nullptr, events, nil);
    }

    OSStatus render(double time, const AURenderEvent* events = nullptr) {
        return render(unit.internalRenderBlock, time, events);
    }

    std::string documentOf(NSDictionary<NSString*, id>* state) {
        NSData* data = state[@"midi-quillo-state"];
        return {static_cast<const char*>(data.bytes), data.length};
    }

    static NSData* dataOf(const std::string& text) {
        return [NSData dataWithBytes:text.data() length:text.size()];
    }

    /// What the editor's user has been told since the last time.
    std::string told() {
        static_cast<void>(controller.view);
        runDispatchedBlocks();
        auto& model = *editorDouble().controller->model();
        const auto text = model.alertErrorMessage().value_or("nothing");
        model.dismissAlert();
        return text;
    }

    std::size_t before = livingObjects();
    std::size_t pool = objc_autoreleasePoolPush();
    AudioUnitViewController* controller = [[AudioUnitViewController alloc] init];
    MIDIQuilloAUAudioUnit* unit = nil;
    std::vector<Handed> handed;
    AUHostTransportStateFlags flags = 0;
    double position = 0.0;
};

TEST_F(ShellTest, AUnitDeclaresOneBusEachWay) {
    create();
    EXPECT_EQ(unit.inputBusses.busType, AUAudioUnitBusTypeInput);
    EXPECT_EQ(unit.outputBusses.busType, AUAudioUnitBusTypeOutput);
    for (AUAudioUnitBusArray* busses : {unit.inputBusses, unit.outputBusses}) {
        EXPECT_EQ(busses.ownerAudioUnit, unit);
        ASSERT_EQ(busses.count, 1U);
        EXPECT_EQ(busses[0].format.commonFormat, AVAudioPCMFormatFloat32);
        EXPECT_EQ(busses[0].format.sampleRate, 44100.0);
        EXPECT_EQ(busses[0].format.channelCount, 2U);
        EXPECT_FALSE(busses[0].format.interleaved);
        EXPECT_EQ(busses[0].maximumChannelCount, 8U);
    }
    EXPECT_EQ(unit.inputBusses, unit.inputBusses);
    EXPECT_NE(unit.inputBusses, unit.outputBusses);
    EXPECT_NE(unit.inputBusses[0], unit.outputBusses[0]);
}

TEST_F(ShellTest, AUnitHasAParameterTreeAndOneMIDIOutput) {
    create();
    EXPECT_NE(unit.parameterTree, nil);
    EXPECT_EQ(unit.parameterTree, unit.parameterTree);
    ASSERT_EQ(unit.MIDIOutputNames.count, 1U);
    EXPECT_STREQ(unit.MIDIOutputNames[0].UTF8String, "MIDIQuillo");
}

TEST_F(ShellTest, AUnitThatThePlatformRefusesIsNoneAndItsErrorIsHandedOn) {
    platformDouble().makesUnits = false;
    NSError* error = nil;
    EXPECT_EQ(create(&error), nil);
    EXPECT_STREQ(error.domain.UTF8String, "double");
    static_cast<void>(controller.view);
    EXPECT_EQ(editorDouble().controller->audioUnit(), nullptr);
}

TEST_F(ShellTest, BussesThatThePlatformDoesNotMakeCannotBeAllocated) {
    platformDouble().makesBusses = false;
    create();
    NSError* error = nil;
    EXPECT_FALSE(allocate(&error));
    EXPECT_EQ(error.code, quillo::kAudioUnitErr_FormatNotSupported);
    EXPECT_THAT(platformDouble().calls, IsEmpty());
}

TEST_F(ShellTest, AllocationTakesTheOutputsSampleRateAndAsksThePlatform) {
    create();
    setFormat(unit.inputBusses, 8000.0, 2);
    setFormat(unit.outputBusses, 47999.9, 2);
    EXPECT_TRUE(allocate());
    EXPECT_EQ(processor().sampleRate, 47999U);
    EXPECT_THAT(platformDouble().calls, ElementsAre("allocate"));
    [unit deallocateRenderResources];
    EXPECT_THAT(platformDouble().calls, ElementsAre("allocate", "deallocate"));
}

TEST_F(ShellTest, AllocationWithDifferentChannelsFailsWithoutWordsAndThePlatformIsNotAsked) {
    create();
    setFormat(unit.inputBusses, 48000.0, 1);
    setFormat(unit.outputBusses, 48000.0, 2);
    NSError* error = nil;
    EXPECT_FALSE(allocate(&error));
    EXPECT_STREQ(error.domain.UTF8String, "NSOSStatusErrorDomain");
    EXPECT_EQ(error.code, -10875);
    EXPECT_EQ(error.userInfo, nil);
    EXPECT_FALSE(allocate(nullptr));
    EXPECT_THAT(platformDouble().calls, IsEmpty());
    EXPECT_EQ(processor().sampleRate, 44100U);
}

TEST_F(ShellTest, ThePlatformsFailureToAllocateIsHandedOnAndNothingIsAllocated) {
    create();
    offerOutput();
    platformDouble().allocates = false;
    setFormat(unit.inputBusses, 48000.0, 2);
    setFormat(unit.outputBusses, 48000.0, 2);
    NSError* error = nil;
    EXPECT_FALSE(allocate(&error));
    EXPECT_STREQ(error.domain.UTF8String, "double");
    EXPECT_EQ(processor().sampleRate, 44100U);
    EXPECT_FALSE([unit bridge].unit()->renderResourcesAllocated());
}

TEST_F(ShellTest, AfterAnAllocationThatFailsNothingOfAnEarlierOneIsLeft) {
    create();
    ASSERT_TRUE(allocate());
    setFormat(unit.inputBusses, 48000.0, 1);
    EXPECT_FALSE(allocate());
    EXPECT_FALSE(unit.renderResourcesAllocated);
    EXPECT_FALSE([unit bridge].unit()->renderResourcesAllocated());
    EXPECT_THAT(platformDouble().calls, ElementsAre("allocate", "deallocate"));
}

TEST_F(ShellTest, ASampleRateThatIsNoneIsAnErrorAndTheUserIsTold) {
    create();
    setFormat(unit.inputBusses, std::numeric_limits<double>::infinity(), 2);
    setFormat(unit.outputBusses, std::numeric_limits<double>::infinity(), 2);
    NSError* error = nil;
    EXPECT_FALSE(allocate(&error));
    EXPECT_EQ(error.code, -10875);
    EXPECT_THAT(error.localizedDescription.UTF8String, HasSubstr("The sample rate is not"));
    EXPECT_THAT(told(), HasSubstr("The sample rate is not"));
}

TEST_F(ShellTest, MIDIOfBothFormsIsRenderedAndHandedToTheHost) {
    create();
    processor().setRules(oneRule);
    offerOutput();
    ASSERT_TRUE(allocate());
    HostEventChain<AURenderEvent> events;
    events.addOther(1);
    events.addMIDI(100, {0x90, 60, 100}, 2);
    events.addOther(9);
    events.addEventList(200, {{0x20C50700U, 0x10F80000U}, {0x20903C64U}});
    EXPECT_EQ(render(0.0, events.head()), quillo::noErr);
    EXPECT_THAT(handed, ElementsAre(Handed{100, 0, {0x91, 2, 3}}, Handed{100, 0, {0x90, 60, 100}},
                                    Handed{200, 0, {0xC5, 7}}, Handed{200, 0, {0xF8}},
                                    Handed{200, 0, {0x91, 2, 3}}, Handed{200, 0, {0x90, 60, 100}}));
}

TEST_F(ShellTest, TheHostsRefusalIsTheStatusOfTheCycle) {
    create();
    offerOutput(-7);
    ASSERT_TRUE(allocate());
    HostEventChain<AURenderEvent> events;
    events.addMIDI(1, {0x90, 1, 1});
    events.addMIDI(2, {0x90, 2, 2});
    EXPECT_EQ(render(0.0, events.head()), -7);
    EXPECT_EQ(handed.size(), 1U);
}

TEST_F(ShellTest, TheHostsTransportFiresItsRules) {
    create();
    using Trigger = quillo::HostTransportTriggerVariantsV2;
    processor().setRules({rule(onHost(Trigger::Start), send(noteOn(0, 1, 1)), ""),
                          rule(onHost(Trigger::Continue), send(noteOn(0, 2, 1)), ""),
                          rule(onHost(Trigger::Stop), send(noteOn(0, 3, 1)), "")});
    offerOutput();
    offerTransport();
    ASSERT_TRUE(allocate());
    AUInternalRenderBlock block = unit.internalRenderBlock;
    flags = 2;
    EXPECT_EQ(render(block, 0.0, nullptr), quillo::noErr);
    flags = 6;
    position = 4096.0;
    EXPECT_EQ(render(block, 512.0, nullptr), quillo::noErr);
    flags = 0;
    EXPECT_EQ(render(block, 1024.0, nullptr), quillo::noErr);
    EXPECT_THAT(handed, ElementsAre(Handed{0, 0, {0x90, 1, 1}}, Handed{512, 0, {0x90, 2, 1}},
                                    Handed{1024, 0, {0x90, 3, 1}}));
}

TEST_F(ShellTest, BlocksThatTheHostSetsAfterAllocationAreUsedFromTheNextCycle) {
    create();
    processor().setRules(
        {rule(onHost(quillo::HostTransportTriggerVariantsV2::Start), send(noteOn(0, 1, 1)), "")});
    ASSERT_TRUE(allocate());
    AUInternalRenderBlock block = unit.internalRenderBlock;
    flags = 2;
    EXPECT_EQ(render(block, 0.0, nullptr), quillo::noErr);
    offerOutput();
    offerTransport();
    EXPECT_EQ(render(block, 512.0, nullptr), quillo::noErr);
    EXPECT_THAT(handed, ElementsAre(Handed{512, 0, {0x90, 1, 1}}));
    flags = 0;
    unit.transportStateBlock = nil;
    EXPECT_EQ(render(block, 1024.0, nullptr), quillo::noErr);
    flags = 2;
    unit.MIDIOutputEventBlock = nil;
    offerTransport();
    EXPECT_EQ(render(block, 1536.0, nullptr), quillo::noErr);
    EXPECT_EQ(handed.size(), 1U);
}

TEST_F(ShellTest, BlocksOfTheHostGoWhenItTakesThemAway) {
    create();
    const auto living = livingObjects();
    @autoreleasepool {
        NSObject* hosts = [[NSObject alloc] init];
        unit.transportStateBlock = ^BOOL(AUHostTransportStateFlags*, double*, double*, double*) {
            return hosts != nil;
        };
        hosts = nil;
        EXPECT_GT(livingObjects(), living);
        unit.transportStateBlock = nil;
    }
    EXPECT_EQ(livingObjects(), living);
}

TEST_F(ShellTest, TheHostsBuffersAndFlagsStayAsTheyAreAndItsInputIsNotPulled) {
    create();
    ASSERT_TRUE(allocate());
    AudioUnitRenderActionFlags actions = 0x10;
    AudioTimeStamp timestamp{};
    AudioBufferList buffers{1, {{2, 4096, nullptr}}};
    bool pulled = false;
    auto* wasPulled = &pulled;
    AURenderPullInputBlock pull = ^AUAudioUnitStatus(AudioUnitRenderActionFlags*, const AudioTimeStamp*,
                                                     AUAudioFrameCount, NSInteger, AudioBufferList*) {
        *wasPulled = true;
        return quillo::noErr;
    };
    EXPECT_EQ(unit.internalRenderBlock(&actions, &timestamp, 512, 0, &buffers, nullptr, pull), quillo::noErr);
    EXPECT_EQ(actions, 0x10U);
    EXPECT_EQ(buffers.mNumberBuffers, 1U);
    EXPECT_EQ(buffers.mBuffers[0].mDataByteSize, 4096U);
    EXPECT_EQ(buffers.mBuffers[0].mData, nullptr);
    EXPECT_FALSE(pulled);
}

TEST_F(ShellTest, TheBlockForInputIsNotRetainedWhileACycleRuns) {
    create();
    NSObject* hosts = [[NSObject alloc] init];
    AURenderPullInputBlock pull = ^AUAudioUnitStatus(AudioUnitRenderActionFlags*, const AudioTimeStamp*,
                                                     AUAudioFrameCount, NSInteger, AudioBufferList*) {
        return hosts == nil ? -1 : 0;
    };
    const void* watched = (__bridge void*)pull;
    const auto before = blockReferences(watched);
    std::vector<std::size_t> during;
    auto* seen = &during;
    unit.MIDIOutputEventBlock = ^OSStatus(AUEventSampleTime, std::uint8_t, NSInteger, const std::uint8_t*) {
        seen->push_back(blockReferences(watched));
        return quillo::noErr;
    };
    ASSERT_TRUE(allocate());
    HostEventChain<AURenderEvent> events;
    events.addMIDI(1, {0x90, 1, 1});
    AudioTimeStamp timestamp{};
    EXPECT_EQ(unit.internalRenderBlock(nullptr, &timestamp, 512, 0, nullptr, events.head(), pull),
              quillo::noErr);
    EXPECT_THAT(during, ElementsAre(before));
}

TEST_F(ShellTest, WithoutTheHostsBlocksMIDIIsTakenAndGoesNowhere) {
    create();
    ASSERT_TRUE(allocate());
    HostEventChain<AURenderEvent> events;
    events.addMIDI(1, {0x90, 1, 1});
    EXPECT_EQ(render(0.0, events.head()), quillo::noErr);
}

TEST_F(ShellTest, ARenderBlockThatOutlivesTheUnitDoesNothing) {
    create();
    offerOutput();
    ASSERT_TRUE(allocate());
    AUInternalRenderBlock block = unit.internalRenderBlock;
    unit = nil;
    controller = nil;
    objc_autoreleasePoolPop(pool);
    EXPECT_EQ(livingObjects(), before);
    HostEventChain<AURenderEvent> events;
    events.addMIDI(1, {0x90, 1, 1});
    EXPECT_EQ(render(block, 0.0, events.head()), quillo::noErr);
    EXPECT_THAT(handed, IsEmpty());
}

TEST_F(ShellTest, TheControllerKeepsTheUnitThatItHasMade) {
    create();
    unit = nil;
    objc_autoreleasePoolPop(pool);
    const std::size_t controllerAlone = before + 1;
    EXPECT_GT(livingObjects(), controllerAlone);
}

TEST_F(ShellTest, ATimeOffTheTimelineEndsTheCycleAndTheUserIsToldAfterwards) {
    create();
    ASSERT_TRUE(allocate());
    EXPECT_EQ(render(std::numeric_limits<double>::infinity()), quillo::kQuilloErr_FatalError);
    EXPECT_EQ(told(), "nothing");
    [unit deallocateRenderResources];
    EXPECT_THAT(told(), HasSubstr("The cycle's sample time is not"));
}

TEST_F(ShellTest, TheStateIsThePlatformsWithTheDocumentInIt) {
    create();
    NSDictionary* state = unit.fullState;
    EXPECT_EQ(state.count, 2U);
    NSString* type = state[@"type"];
    EXPECT_STREQ(type.UTF8String, "aumi");
    EXPECT_EQ(documentOf(state), R"({"rules":[]})");
}

TEST_F(ShellTest, ASavedStateRestoresTheRulesAndEveryOtherKey) {
    create();
    processor().setRules(oneRule);
    NSMutableDictionary* state = [unit.fullState mutableCopy];
    state[@"host"] = @"its own";
    processor().setRules({});
    unit.fullState = state;
    EXPECT_EQ(processor().rules(), oneRule);
    EXPECT_THAT(platformDouble().calls, ElementsAre("setFullState"));
    NSString* kept = unit.fullState[@"host"];
    EXPECT_STREQ(kept.UTF8String, "its own");
}

TEST_F(ShellTest, ADamagedDocumentEmptiesTheListAndIsReplacedInTheNextState) {
    create();
    processor().setRules(oneRule);
    unit.fullState = @{@"midi-quillo-state" : dataOf("{")};
    EXPECT_THAT(processor().rules(), IsEmpty());
    EXPECT_EQ(documentOf(unit.fullState), R"({"rules":[]})");
    EXPECT_EQ(told(), "nothing");
}

TEST_F(ShellTest, AnAbsentStateChangesNothing) {
    create();
    processor().setRules(oneRule);
    unit.fullState = nil;
    EXPECT_EQ(processor().rules(), oneRule);
    EXPECT_EQ(told(), "nothing");
    EXPECT_THAT(platformDouble().calls, IsEmpty());
}

TEST_F(ShellTest, AStateThatIsRefusedLeavesTheRulesAndThePlatformIsNotTold) {
    create();
    processor().setRules(oneRule);
    for (NSDictionary* state : { @{}, @{@"midi-quillo-state" : @"text"} }) {
        unit.fullState = state;
        EXPECT_THAT(told(), HasSubstr("What the host has saved is not taken"));
    }
    EXPECT_EQ(processor().rules(), oneRule);
    EXPECT_THAT(platformDouble().calls, IsEmpty());
}

TEST_F(ShellTest, WithoutAStateOfThePlatformsThereIsNoneAndTheUserIsTold) {
    create();
    platformDouble().keepsState = false;
    EXPECT_EQ(unit.fullState, nil);
    EXPECT_THAT(told(), HasSubstr("The platform keeps no state"));
}

TEST_F(ShellTest, ViewsOfAtLeastTwoHundredPointsAndUnconstrainedOnesAreSupported) {
    create();
    const auto view = [](double width, double height) {
        return [[AUAudioUnitViewConfiguration alloc] initWithWidth:width height:height hostHasController:NO];
    };
    NSIndexSet* supported =
        [unit supportedViewConfigurations:@[ view(150, 300), view(200, 200), view(0, 0), view(0, 500) ]];
    EXPECT_EQ(supported.count, 2U);
    EXPECT_TRUE([supported containsIndex:1]);
    EXPECT_TRUE([supported containsIndex:2]);
}

TEST_F(ShellTest, TheViewOpensInItsPreferredSizeWithTheEditorInIt) {
    NSView* view = controller.view;
    EXPECT_EQ(view.bounds.size.width, 500.0);
    EXPECT_EQ(view.bounds.size.height, 250.0);
    EXPECT_EQ(controller.preferredContentSize.width, 500.0);
    EXPECT_EQ(controller.preferredContentSize.height, 250.0);
    EXPECT_EQ(editorDouble().parentView, (__bridge void*)view);
    view.bounds = NSMakeRect(0, 0, 640, 480);
    [controller viewDidLayout];
    EXPECT_EQ(editorDouble().width, 640);
    EXPECT_EQ(editorDouble().height, 480);
}

TEST_F(ShellTest, AUnitMadeAfterTheViewOnTheMainThreadIsConnectedAtOnce) {
    static_cast<void>(controller.view);
    create();
    EXPECT_FALSE(editorDouble().controller->needsConnection());
}

TEST_F(ShellTest, AUnitMadeElsewhereAfterTheViewIsConnectedByTheMainThread) {
    static_cast<void>(controller.view);
    createElsewhere();
    EXPECT_TRUE(editorDouble().controller->needsConnection());
    EXPECT_TRUE(runDispatchedBlocks());
    EXPECT_FALSE(editorDouble().controller->needsConnection());
}

TEST_F(ShellTest, AUnitMadeElsewhereBeforeTheViewIsConnectedWhenTheViewLoads) {
    createElsewhere();
    EXPECT_TRUE(runDispatchedBlocks());
    static_cast<void>(controller.view);
    EXPECT_FALSE(editorDouble().controller->needsConnection());
}

TEST_F(ShellTest, ARestoredStateReachesTheEditor) {
    create();
    processor().setRules(oneRule);
    NSDictionary* state = unit.fullState;
    processor().setRules({});
    static_cast<void>(controller.view);
    EXPECT_THAT(editorDouble().controller->model()->rules(), IsEmpty());
    unit.fullState = state;
    EXPECT_TRUE(runDispatchedBlocks());
    ASSERT_EQ(editorDouble().controller->model()->rules().size(), 1U);
    EXPECT_EQ(editorDouble().controller->model()->rules()[0].rule.name, "one");
}

TEST_F(ShellTest, AControllerThatGoesOnAnotherThreadLeavesItsEditorToTheMainThread) {
    static_cast<void>(controller.view);
    std::thread([this] { controller = nil; }).join();
    EXPECT_TRUE(editorDouble().open);
    EXPECT_TRUE(runDispatchedBlocks());
    EXPECT_FALSE(editorDouble().open);
    EXPECT_TRUE(editorDouble().diedOnMainThread);
}

}  // namespace
