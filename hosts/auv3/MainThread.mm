// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/MainThread.hpp"

#import <Foundation/Foundation.h>

#include <utility>

namespace quillo {

bool isMainThread() {
    return [NSThread isMainThread];
}

void runOnMainThread(std::function<void()> block) {
    const auto kept = std::move(block);
    dispatch_async(dispatch_get_main_queue(), ^{
        kept();
    });
}

}  // namespace quillo
