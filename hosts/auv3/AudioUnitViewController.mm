// SPDX-License-Identifier: GPL-3.0-or-later
#import "hosts/auv3/AudioUnitViewController.h"

#include "hosts/auv3/EditorBridge.hpp"
#import "hosts/auv3/MIDIQuilloAUAudioUnit.h"

@interface AudioUnitViewController ()
/// The factory may run on any thread.
@property(atomic, strong) MIDIQuilloAUAudioUnit* audioUnit;
@end

@implementation AudioUnitViewController {
    quillo::EditorBridge _bridge;
}

- (AUAudioUnit*)createAudioUnitWithComponentDescription:(AudioComponentDescription)description
                                                  error:(NSError**)error {
    MIDIQuilloAUAudioUnit* unit = [[MIDIQuilloAUAudioUnit alloc] initWithComponentDescription:description
                                                                                      options:0
                                                                                        error:error];
    if (unit != nil) {
        self.audioUnit = unit;
        _bridge.adopt([unit bridge]);
    }
    return unit;
}

- (void)loadView {
    const NSSize size = NSMakeSize(quillo::AudioUnitViewController::preferredWidth,
                                   quillo::AudioUnitViewController::preferredHeight);
    self.view = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
    self.preferredContentSize = size;
}

- (void)viewDidLoad {
    [super viewDidLoad];
    _bridge.viewDidLoad((__bridge void*)self.view);
}

- (void)viewDidLayout {
    [super viewDidLayout];
    _bridge.viewDidLayout(self.view.bounds.size.width, self.view.bounds.size.height);
}

@end
