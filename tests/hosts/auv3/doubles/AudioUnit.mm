// SPDX-License-Identifier: GPL-3.0-or-later
#import <CoreAudioKit/CoreAudioKit.h>

#import "hosts/auv3/doubles/PlatformDoubles.h"

using quillo::test::platformDouble;

namespace quillo::test {

PlatformDouble& platformDouble() {
    static PlatformDouble behaviour;
    return behaviour;
}

}  // namespace quillo::test

namespace {

/// Whether the platform does what it is asked; an error says that it does not.
BOOL does(bool willing, NSError** error) {
    if (!willing && error != nullptr) {
        *error = [NSError errorWithDomain:@"double" code:-1 userInfo:nil];
    }
    return willing;
}

}  // namespace

@implementation AVAudioFormat {
    AVAudioCommonFormat _commonFormat;
    AVAudioChannelCount _channelCount;
    double _sampleRate;
    BOOL _interleaved;
}
- (instancetype)initWithCommonFormat:(AVAudioCommonFormat)format
                          sampleRate:(double)sampleRate
                            channels:(AVAudioChannelCount)channels
                         interleaved:(BOOL)interleaved {
    self = [super init];
    _commonFormat = format;
    _sampleRate = sampleRate;
    _channelCount = channels;
    _interleaved = interleaved;
    return self;
}
- (AVAudioCommonFormat)commonFormat {
    return _commonFormat;
}
- (AVAudioChannelCount)channelCount {
    return _channelCount;
}
- (double)sampleRate {
    return _sampleRate;
}
- (BOOL)isInterleaved {
    return _interleaved;
}
@end

@implementation AUAudioUnitBus {
    AVAudioFormat* _format;
    AUAudioChannelCount _maximumChannelCount;
}
- (instancetype)initWithFormat:(AVAudioFormat*)format error:(NSError**)outError {
    self = [super init];
    _format = format;
    return does(platformDouble().makesBusses, outError) ? self : nil;
}
- (AVAudioFormat*)format {
    return _format;
}
- (BOOL)setFormat:(AVAudioFormat*)format error:(NSError**)outError {
    _format = format;
    return YES;
}
- (AUAudioChannelCount)maximumChannelCount {
    return _maximumChannelCount;
}
- (void)setMaximumChannelCount:(AUAudioChannelCount)count {
    _maximumChannelCount = count;
}
@end

@implementation AUAudioUnitBusArray {
    NSArray<AUAudioUnitBus*>* _busses;
    AUAudioUnitBusType _busType;
    __unsafe_unretained AUAudioUnit* _ownerAudioUnit;
}
- (instancetype)initWithAudioUnit:(AUAudioUnit*)owner
                          busType:(AUAudioUnitBusType)busType
                           busses:(NSArray<AUAudioUnitBus*>*)busArray {
    self = [super init];
    _ownerAudioUnit = owner;
    _busType = busType;
    _busses = busArray;
    return self;
}
- (AUAudioUnitBus*)objectAtIndexedSubscript:(NSUInteger)index {
    return _busses[index];
}
- (NSUInteger)count {
    return _busses.count;
}
- (AUAudioUnitBusType)busType {
    return _busType;
}
- (AUAudioUnit*)ownerAudioUnit {
    return _ownerAudioUnit;
}
@end

@implementation AUParameterTree
+ (AUParameterTree*)createTreeWithChildren:(NSArray<AUParameterNode*>*)children {
    return [[self alloc] init];
}
@end

@implementation AUAudioUnitViewConfiguration {
    double _width;
    double _height;
}
- (instancetype)initWithWidth:(double)width height:(double)height hostHasController:(BOOL)hostHasController {
    self = [super init];
    _width = width;
    _height = height;
    return self;
}
- (double)width {
    return _width;
}
- (double)height {
    return _height;
}
@end

/// Answers, where a subclass must answer in its place, with nothing.
@implementation AUAudioUnit {
    NSDictionary<NSString*, id>* _state;
}
- (instancetype)initWithComponentDescription:(AudioComponentDescription)componentDescription
                                     options:(AudioComponentInstantiationOptions)options
                                       error:(NSError**)outError {
    self = [super init];
    self.maximumFramesToRender = 512;
    _state = @{@"type" : @"aumi"};
    return does(platformDouble().makesUnits, outError) ? self : nil;
}
- (BOOL)allocateRenderResourcesAndReturnError:(NSError**)outError {
    platformDouble().calls.emplace_back("allocate");
    _renderResourcesAllocated = does(platformDouble().allocates, outError);
    return _renderResourcesAllocated;
}
- (void)deallocateRenderResources {
    platformDouble().calls.emplace_back("deallocate");
    _renderResourcesAllocated = NO;
}
- (AUAudioUnitBusArray*)inputBusses {
    return nil;
}
- (AUAudioUnitBusArray*)outputBusses {
    return nil;
}
- (NSArray<NSString*>*)MIDIOutputNames {
    return @[];
}
- (AUInternalRenderBlock)internalRenderBlock {
    return nil;
}
- (NSDictionary<NSString*, id>*)fullState {
    return platformDouble().keepsState ? _state : nil;
}
- (void)setFullState:(NSDictionary<NSString*, id>*)fullState {
    platformDouble().calls.emplace_back("setFullState");
    _state = fullState;
}
- (NSIndexSet*)supportedViewConfigurations:(NSArray<AUAudioUnitViewConfiguration*>*)available {
    return nil;
}
@end

@implementation AUViewController
@end
