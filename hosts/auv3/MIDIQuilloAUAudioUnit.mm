// SPDX-License-Identifier: GPL-3.0-or-later
#import "hosts/auv3/MIDIQuilloAUAudioUnit.h"

#import <AVFAudio/AVFAudio.h>
#import <AudioToolbox/AUAudioUnitImplementation.h>
#import <CoreAudioKit/CoreAudioKit.h>

namespace {

/// An array with one bus; with none when the platform makes none, which allocating then refuses.
AUAudioUnitBusArray* makeBusses(AUAudioUnit* owner, AUAudioUnitBusType type,
                                const quillo::AUAudioUnitBus& declared) {
    const auto& format = declared.format();
    AVAudioFormat* busFormat =
        [[AVAudioFormat alloc] initWithCommonFormat:static_cast<AVAudioCommonFormat>(format.commonFormat)
                                         sampleRate:format.sampleRate
                                           channels:format.channelCount
                                        interleaved:format.interleaved];
    AUAudioUnitBus* bus =
        busFormat == nil ? nil : [[AUAudioUnitBus alloc] initWithFormat:busFormat error:nil];
    bus.maximumChannelCount = declared.maximumChannelCount();
    return [[AUAudioUnitBusArray alloc] initWithAudioUnit:owner
                                                  busType:type
                                                   busses:bus == nil ? @[] : @[ bus ]];
}

/// The format of the array's bus; one that no bus can have when there is none.
quillo::AVAudioFormat formatOf(AUAudioUnitBusArray* busses) {
    AVAudioFormat* format = busses.count == 0 ? nil : busses[0].format;
    return {static_cast<quillo::AVAudioCommonFormat>(format.commonFormat), format.sampleRate,
            format.channelCount, static_cast<bool>(format.interleaved)};
}

NSString* stateKey() {
    return [NSString stringWithUTF8String:quillo::stateKey];
}

/// What the unit looks at in a state dictionary. What is no data stays something else than data.
quillo::StateDictionary portableState(NSDictionary<NSString*, id>* state) {
    id value = state[stateKey()];
    if (value == nil) {
        return {};
    }
    if (![value isKindOfClass:[NSData class]]) {
        return {{quillo::stateKey, std::string()}};
    }
    NSData* data = value;
    const auto* bytes = static_cast<const std::uint8_t*>(data.bytes);
    return {{quillo::stateKey, quillo::Data(bytes, bytes + data.length)}};
}

NSError* errorOf(const quillo::Failure& failure) {
    NSDictionary* words = failure.text.empty() ? nil : @{NSLocalizedDescriptionKey : @(failure.text.c_str())};
    return [NSError errorWithDomain:@(failure.error.domain.c_str()) code:failure.error.code userInfo:words];
}

}  // namespace

@implementation MIDIQuilloAUAudioUnit {
    quillo::UnitBridge _bridge;
    AUAudioUnitBusArray* _inputBusses;
    AUAudioUnitBusArray* _outputBusses;
    AUParameterTree* _parameterTree;
}

- (instancetype)initWithComponentDescription:(AudioComponentDescription)componentDescription
                                     options:(AudioComponentInstantiationOptions)options
                                       error:(NSError**)outError {
    self = [super initWithComponentDescription:componentDescription options:options error:outError];
    if (self != nil) {
        _inputBusses = makeBusses(self, AUAudioUnitBusTypeInput, _bridge.unit()->inputBusses()[0]);
        _outputBusses = makeBusses(self, AUAudioUnitBusTypeOutput, _bridge.unit()->outputBusses()[0]);
        _parameterTree = [AUParameterTree createTreeWithChildren:@[]];
    }
    return self;
}

- (quillo::UnitBridge&)bridge {
    return _bridge;
}

- (AUAudioUnitBusArray*)inputBusses {
    return _inputBusses;
}

- (AUAudioUnitBusArray*)outputBusses {
    return _outputBusses;
}

- (AUParameterTree*)parameterTree {
    return _parameterTree;
}

- (NSArray<NSString*>*)MIDIOutputNames {
    NSMutableArray<NSString*>* names = [NSMutableArray array];
    for (const auto& name : _bridge.midiOutputNames()) {
        [names addObject:@(name.c_str())];
    }
    return names;
}

- (void)setTransportStateBlock:(AUHostTransportStateBlock)block {
    [super setTransportStateBlock:block];
    [self takeHostBlocks];
}

- (void)setMIDIOutputEventBlock:(AUMIDIOutputEventBlock)block {
    [super setMIDIOutputEventBlock:block];
    [self takeHostBlocks];
}

- (void)takeHostBlocks {
    _bridge.takeHostBlocks([self] {
        return quillo::HostBlocks{
            quillo::transportStateBlock<AUHostTransportStateFlags>(self.transportStateBlock),
            quillo::midiOutputEventBlock(self.MIDIOutputEventBlock)};
    });
}

- (BOOL)allocateRenderResourcesAndReturnError:(NSError**)outError {
    [self takeHostBlocks];
    const auto failure = _bridge.allocateRenderResources(formatOf(_inputBusses), formatOf(_outputBusses),
                                                         self.maximumFramesToRender);
    if (failure) {
        [self failToAllocate:*failure error:outError];
        return NO;
    }
    if (![super allocateRenderResourcesAndReturnError:outError]) {
        _bridge.undoAllocation();
        return NO;
    }
    return YES;
}

/// Where render resources were allocated before, the platform's go as well.
- (void)failToAllocate:(const quillo::Failure&)failure error:(NSError**)outError {
    if (self.renderResourcesAllocated) {
        [super deallocateRenderResources];
    }
    if (outError != nullptr) {
        *outError = errorOf(failure);
    }
}

- (void)deallocateRenderResources {
    [super deallocateRenderResources];
    _bridge.deallocateRenderResources();
}

/// Audio does not pass: the output buffers stay as the host gives them, null or not, and the host's block for
/// input is neither called nor, which an unoptimised build would do with an argument, retained.
- (AUInternalRenderBlock)internalRenderBlock {
    const auto cycle = _bridge.renderCycle();
    return ^AUAudioUnitStatus(AudioUnitRenderActionFlags* /*actionFlags*/, const AudioTimeStamp* timestamp,
                              AUAudioFrameCount frameCount, NSInteger /*outputBusNumber*/,
                              AudioBufferList* /*outputData*/, const AURenderEvent* realtimeEventListHead,
                              AURenderPullInputBlock __unsafe_unretained /*pullInputBlock*/) QUILLO_REALTIME {
        return cycle->render(timestamp->mSampleTime, frameCount, realtimeEventListHead);
    };
}

- (NSDictionary<NSString*, id>*)fullState {
    NSMutableDictionary<NSString*, id>* state = [[super fullState] mutableCopy];
    const auto document = _bridge.stateDocument(state != nil);
    if (!document) {
        return nil;
    }
    state[stateKey()] = [NSData dataWithBytes:document->data() length:document->size()];
    return state;
}

- (void)setFullState:(NSDictionary<NSString*, id>*)fullState {
    if (fullState != nil && _bridge.restore([&] { return portableState(fullState); })) {
        [super setFullState:fullState];
    }
}

- (NSIndexSet*)supportedViewConfigurations:(NSArray<AUAudioUnitViewConfiguration*>*)available {
    return [available indexesOfObjectsPassingTest:^BOOL(AUAudioUnitViewConfiguration* view,
                                                        NSUInteger /*index*/, BOOL* /*stop*/) {
        return self->_bridge.supportsView(view.width, view.height);
    }];
}

@end
