// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#import <Foundation/Foundation.h>

typedef std::uint32_t AVAudioChannelCount;

enum AVAudioCommonFormat : NSUInteger { AVAudioOtherFormat = 0, AVAudioPCMFormatFloat32 = 1 };

@interface AVAudioFormat : NSObject
- (instancetype)initWithCommonFormat:(AVAudioCommonFormat)format
                          sampleRate:(double)sampleRate
                            channels:(AVAudioChannelCount)channels
                         interleaved:(BOOL)interleaved;
@property(readonly) AVAudioCommonFormat commonFormat;
@property(readonly) AVAudioChannelCount channelCount;
@property(readonly) double sampleRate;
@property(readonly, getter=isInterleaved) BOOL interleaved;
@end
