// SPDX-License-Identifier: GPL-3.0-or-later
#import <CoreAudioKit/CoreAudioKit.h>

/// The extension's principal class: the factory of the audio unit, and the
/// controller of the editor's view.
@interface AudioUnitViewController : AUViewController <AUAudioUnitFactory>
@end
