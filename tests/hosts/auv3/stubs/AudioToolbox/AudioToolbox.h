// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#import <AVFAudio/AVFAudio.h>
#import <Foundation/Foundation.h>

struct AudioComponentDescription {
    std::uint32_t componentType;
    std::uint32_t componentSubType;
    std::uint32_t componentManufacturer;
    std::uint32_t componentFlags;
    std::uint32_t componentFlagsMask;
};
typedef std::uint32_t AudioComponentInstantiationOptions;

struct AudioTimeStamp {
    double mSampleTime;
    std::uint64_t mHostTime;
    double mRateScalar;
    std::uint64_t mWordClockTime;
    std::byte mSMPTETime[24];
    std::uint32_t mFlags;
    std::uint32_t mReserved;
};
struct AudioBuffer {
    std::uint32_t mNumberChannels;
    std::uint32_t mDataByteSize;
    void* mData;
};
struct AudioBufferList {
    std::uint32_t mNumberBuffers;
    AudioBuffer mBuffers[1];
};
typedef std::uint32_t AudioUnitRenderActionFlags;

typedef OSStatus AUAudioUnitStatus;
typedef std::int64_t AUEventSampleTime;
typedef std::uint32_t AUAudioFrameCount;
typedef std::uint32_t AUAudioChannelCount;
typedef NSUInteger AUHostTransportStateFlags;
enum AUAudioUnitBusType : NSInteger { AUAudioUnitBusTypeInput = 1, AUAudioUnitBusTypeOutput = 2 };

typedef BOOL (^AUHostTransportStateBlock)(AUHostTransportStateFlags* transportStateFlags,
                                          double* currentSamplePosition, double* cycleStartBeatPosition,
                                          double* cycleEndBeatPosition);
typedef OSStatus (^AUMIDIOutputEventBlock)(AUEventSampleTime eventSampleTime, std::uint8_t cable,
                                           NSInteger length, const std::uint8_t* midiBytes);

#pragma pack(push, 4)
struct MIDIEventPacket {
    std::uint64_t timeStamp;
    std::uint32_t wordCount;
    std::uint32_t words[64];
};
struct MIDIEventList {
    std::int32_t protocol;
    std::uint32_t numPackets;
    MIDIEventPacket packet[1];
};
union AURenderEvent;
struct AURenderEventHeader {
    AURenderEvent* next;
    AUEventSampleTime eventSampleTime;
    std::uint8_t eventType;
    std::uint8_t reserved;
};
struct AUMIDIEvent {
    AURenderEvent* next;
    AUEventSampleTime eventSampleTime;
    std::uint8_t eventType;
    std::uint8_t reserved;
    std::uint16_t length;
    std::uint8_t cable;
    std::uint8_t data[3];
};
struct AUMIDIEventList {
    AURenderEvent* next;
    AUEventSampleTime eventSampleTime;
    std::uint8_t eventType;
    std::uint8_t reserved;
    std::uint8_t cable;
    MIDIEventList eventList;
};
union AURenderEvent {
    AURenderEventHeader head;
    AUMIDIEvent MIDI;
    AUMIDIEventList MIDIEventsList;
};
#pragma pack(pop)

typedef AUAudioUnitStatus (^AURenderPullInputBlock)(AudioUnitRenderActionFlags* actionFlags,
                                                    const AudioTimeStamp* timestamp,
                                                    AUAudioFrameCount frameCount, NSInteger inputBusNumber,
                                                    AudioBufferList* inputData);
typedef AUAudioUnitStatus (^AUInternalRenderBlock)(AudioUnitRenderActionFlags* actionFlags,
                                                   const AudioTimeStamp* timestamp,
                                                   AUAudioFrameCount frameCount, NSInteger outputBusNumber,
                                                   AudioBufferList* outputData,
                                                   const AURenderEvent* realtimeEventListHead,
                                                   AURenderPullInputBlock pullInputBlock);

@class AUAudioUnit;

@interface AUAudioUnitBus : NSObject
- (instancetype)initWithFormat:(AVAudioFormat*)format error:(NSError**)outError;
@property(readonly) AVAudioFormat* format;
- (BOOL)setFormat:(AVAudioFormat*)format error:(NSError**)outError;
@end

@interface AUAudioUnitBusArray : NSObject
- (instancetype)initWithAudioUnit:(AUAudioUnit*)owner
                          busType:(AUAudioUnitBusType)busType
                           busses:(NSArray<AUAudioUnitBus*>*)busArray;
- (AUAudioUnitBus*)objectAtIndexedSubscript:(NSUInteger)index;
@property(readonly) NSUInteger count;
@property(readonly) AUAudioUnitBusType busType;
@property(readonly, unsafe_unretained) AUAudioUnit* ownerAudioUnit;
@end

@interface AUParameterNode : NSObject
@end

@interface AUParameterTree : NSObject
+ (AUParameterTree*)createTreeWithChildren:(NSArray<AUParameterNode*>*)children;
@end

@interface AUAudioUnit : NSObject
- (instancetype)initWithComponentDescription:(AudioComponentDescription)componentDescription
                                     options:(AudioComponentInstantiationOptions)options
                                       error:(NSError**)outError;
- (BOOL)allocateRenderResourcesAndReturnError:(NSError**)outError;
- (void)deallocateRenderResources;
@property(readonly) BOOL renderResourcesAllocated;
@property(readonly) AUAudioUnitBusArray* inputBusses;
@property(readonly) AUAudioUnitBusArray* outputBusses;
@property AUAudioFrameCount maximumFramesToRender;
@property(strong) AUParameterTree* parameterTree;
@property(readonly, copy) NSArray<NSString*>* MIDIOutputNames;
@property(copy) AUMIDIOutputEventBlock MIDIOutputEventBlock;
@property(copy) AUHostTransportStateBlock transportStateBlock;
@property(copy) NSDictionary<NSString*, id>* fullState;
@end
