// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#import <Foundation/Foundation.h>

@interface UTType : NSObject
@end

extern UTType* const UTTypeJSON;
